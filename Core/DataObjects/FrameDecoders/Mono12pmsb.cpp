// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/FrameDecoders/Mono12pmsb.h"

#include "Core/DataObjects/FrameDecoders/DecoderChecks.h"
#include "Core/DataObjects/FrameDecoders/PixelKernels.h"
#include "Core/DataObjects/FrameDecoders/Registration.h"

namespace DataObjects::FrameDecoder
{

void Mono12pmsb::decode(Zt::span<const unsigned char> source, const RTE::MemoryBlock& destination) const
{
    Private::checkSource(source);
    Private::checkMultiple(source.size(), 3);
    const unsigned long long capacity = destination.size();
    Private::checkCapacity(source.size() * 8 / 12 * 2, capacity);
    Private::checkPixelMultiple(capacity / 2, 2);
    Private::unpack(Private::Encoding::Mono12pmsb, source.data(), destination.data(), source.size() / 3);
}

QString Mono12pmsb::id() const
{
    return QStringLiteral("mono-12pmsb");
}

QString Mono12pmsb::label() const
{
    return QStringLiteral("Mono12pmsb to 16 bit");
}

QVersionNumber Mono12pmsb::minimalOrvaneVersion() const
{
    return {10, 2, 0};
}

std::unique_ptr<I_FrameDecoder> Mono12pmsb::clone() const
{
    return std::make_unique<Mono12pmsb>();
}

unsigned long long Mono12pmsb::encodedSize(const unsigned long long& pixelCount) const
{
    Private::checkNotEmpty(pixelCount);
    Private::checkDimensions(pixelCount, 2, QStringLiteral("Mono12pmsb: Invalid frame dimensions (%1)"));
    return pixelCount / 2 * 3;
}

DATAOBJECTS_REGISTER_DECODER(Mono12pmsb, 205)

} // namespace DataObjects::FrameDecoder
