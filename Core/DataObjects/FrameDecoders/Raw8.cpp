// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/FrameDecoders/Raw8.h"

#include "Core/DataObjects/FrameDecoders/DecoderChecks.h"
#include "Core/DataObjects/FrameDecoders/PixelKernels.h"
#include "Core/DataObjects/FrameDecoders/Registration.h"

namespace DataObjects::FrameDecoder
{

void Raw8::decode(Zt::span<const unsigned char> source, const RTE::MemoryBlock& destination) const
{
    Private::checkSource(source);
    Private::checkCapacity(2 * source.size(), destination.size());
    Private::unpack(Private::Encoding::Raw8, source.data(), destination.data(), source.size());
}

QString Raw8::id() const
{
    return QStringLiteral("raw-8-bit");
}

QString Raw8::label() const
{
    return QStringLiteral("8 to 16 bit");
}

QVersionNumber Raw8::minimalOrvaneVersion() const
{
    return {10, 2, 0};
}

std::unique_ptr<I_FrameDecoder> Raw8::clone() const
{
    return std::make_unique<Raw8>();
}

unsigned long long Raw8::encodedSize(const unsigned long long& pixelCount) const
{
    Private::checkNotEmpty(pixelCount);
    return pixelCount;
}

DATAOBJECTS_REGISTER_DECODER(Raw8, 207)

} // namespace DataObjects::FrameDecoder
