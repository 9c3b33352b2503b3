// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/FrameDecoders/Raw16.h"

#include "Core/DataObjects/FrameDecoders/DecoderChecks.h"
#include "Core/DataObjects/FrameDecoders/Registration.h"

#include <cstring>

namespace DataObjects::FrameDecoder
{

void Raw16::decode(Zt::span<const unsigned char> source, const RTE::MemoryBlock& destination) const
{
    Private::checkSource(source);
    Private::checkMultiple(source.size(), 2);
    Private::checkCapacity(source.size(), destination.size());
    if (!source.empty()) {
        std::memcpy(destination.data(), source.data(), source.size());
    }
}

QString Raw16::id() const
{
    return QStringLiteral("raw-16-bit");
}

QString Raw16::label() const
{
    return QStringLiteral("Raw 16 bit");
}

QVersionNumber Raw16::minimalOrvaneVersion() const
{
    return {10, 0, 3};
}

std::unique_ptr<I_FrameDecoder> Raw16::clone() const
{
    return std::make_unique<Raw16>();
}

unsigned long long Raw16::encodedSize(const unsigned long long& pixelCount) const
{
    Private::checkNotEmpty(pixelCount);
    return pixelCount * 2;
}

DATAOBJECTS_REGISTER_DECODER(Raw16, 206)

} // namespace DataObjects::FrameDecoder
