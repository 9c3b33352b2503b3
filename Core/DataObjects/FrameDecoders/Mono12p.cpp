// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/FrameDecoders/Mono12p.h"

#include "Core/DataObjects/FrameDecoders/DecoderChecks.h"
#include "Core/DataObjects/FrameDecoders/PixelKernels.h"
#include "Core/DataObjects/FrameDecoders/Registration.h"

namespace DataObjects::FrameDecoder
{

void Mono12p::decode(Zt::span<const unsigned char> source, const RTE::MemoryBlock& destination) const
{
    Private::checkSource(source);
    Private::checkMultiple(source.size(), 3);
    const unsigned long long capacity = destination.size();
    Private::checkCapacity(source.size() * 8 / 12 * 2, capacity);
    Private::unpack(Private::Encoding::Mono12p, source.data(), destination.data(), source.size() / 3);
}

QString Mono12p::id() const
{
    return QStringLiteral("mono-12p");
}

QString Mono12p::label() const
{
    return QStringLiteral("Mono12p to 16 bit");
}

QVersionNumber Mono12p::minimalOrvaneVersion() const
{
    return {10, 2, 0};
}

std::unique_ptr<I_FrameDecoder> Mono12p::clone() const
{
    return std::make_unique<Mono12p>();
}

unsigned long long Mono12p::encodedSize(const unsigned long long& pixelCount) const
{
    Private::checkNotEmpty(pixelCount);
    Private::checkDimensions(pixelCount, 2, QStringLiteral("Mono12p: Invalid frame dimensions (%1)"));
    return pixelCount / 2 * 3;
}

DATAOBJECTS_REGISTER_DECODER(Mono12p, 203)

} // namespace DataObjects::FrameDecoder
