// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/FrameDecoders/Mono10pmsb.h"

#include "Core/DataObjects/FrameDecoders/DecoderChecks.h"
#include "Core/DataObjects/FrameDecoders/PixelKernels.h"
#include "Core/DataObjects/FrameDecoders/Registration.h"

namespace DataObjects::FrameDecoder
{

void Mono10pmsb::decode(Zt::span<const unsigned char> source, const RTE::MemoryBlock& destination) const
{
    Private::checkSource(source);
    Private::checkMultiple(source.size(), 5);
    const unsigned long long capacity = destination.size();
    Private::checkCapacity(source.size() * 8 / 10 * 2, capacity);
    Private::checkPixelMultiple(capacity / 2, 8);
    Private::unpack(Private::Encoding::Mono10pmsb, source.data(), destination.data(), source.size() / 5);
}

QString Mono10pmsb::id() const
{
    return QStringLiteral("mono-10pmsb");
}

QString Mono10pmsb::label() const
{
    return QStringLiteral("Mono10pmsb to 16 bit");
}

QVersionNumber Mono10pmsb::minimalOrvaneVersion() const
{
    return {10, 2, 0};
}

std::unique_ptr<I_FrameDecoder> Mono10pmsb::clone() const
{
    return std::make_unique<Mono10pmsb>();
}

unsigned long long Mono10pmsb::encodedSize(const unsigned long long& pixelCount) const
{
    Private::checkNotEmpty(pixelCount);
    Private::checkDimensions(pixelCount, 4, QStringLiteral("Mono10pmsb: Invalid frame dimensions (%1x%2)"));
    return pixelCount / 4 * 5;
}

DATAOBJECTS_REGISTER_DECODER(Mono10pmsb, 202)

} // namespace DataObjects::FrameDecoder
