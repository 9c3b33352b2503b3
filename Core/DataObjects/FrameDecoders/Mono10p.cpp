// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/FrameDecoders/Mono10p.h"

#include "Core/DataObjects/FrameDecoders/DecoderChecks.h"
#include "Core/DataObjects/FrameDecoders/PixelKernels.h"
#include "Core/DataObjects/FrameDecoders/Registration.h"

namespace DataObjects::FrameDecoder
{

void Mono10p::decode(Zt::span<const unsigned char> source, const RTE::MemoryBlock& destination) const
{
    Private::checkSource(source);
    Private::checkMultiple(source.size(), 5);
    const unsigned long long capacity = destination.size();
    Private::checkCapacity(source.size() * 8 / 10 * 2, capacity);
    Private::unpack(Private::Encoding::Mono10p, source.data(), destination.data(), source.size() / 5);
}

QString Mono10p::id() const
{
    return QStringLiteral("mono-10p");
}

QString Mono10p::label() const
{
    return QStringLiteral("Mono10p to 16 bit");
}

QVersionNumber Mono10p::minimalOrvaneVersion() const
{
    return {10, 2, 0};
}

std::unique_ptr<I_FrameDecoder> Mono10p::clone() const
{
    return std::make_unique<Mono10p>();
}

unsigned long long Mono10p::encodedSize(const unsigned long long& pixelCount) const
{
    Private::checkNotEmpty(pixelCount);
    Private::checkDimensions(pixelCount, 4, QStringLiteral("Mono10p: Invalid frame dimensions (%1x%2)"));
    return pixelCount / 4 * 5;
}

DATAOBJECTS_REGISTER_DECODER(Mono10p, 201)

} // namespace DataObjects::FrameDecoder
