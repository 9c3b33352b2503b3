// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/FrameDecoders/InvalidDecoder.h"

#include "Core/Common/Raise.h"

namespace DataObjects::FrameDecoder
{

void InvalidDecoder::decode(Zt::span<const unsigned char>, const RTE::MemoryBlock&) const
{
    RTE::raise(RTE::LogicError(QStringLiteral("The associated device does not provide frame data")));
}

QString InvalidDecoder::id() const
{
    return {};
}

QString InvalidDecoder::label() const
{
    return QStringLiteral("INVALID");
}

QVersionNumber InvalidDecoder::minimalOrvaneVersion() const
{
    return {10, 2, 0};
}

std::unique_ptr<I_FrameDecoder> InvalidDecoder::clone() const
{
    return std::make_unique<InvalidDecoder>();
}

unsigned long long InvalidDecoder::encodedSize(const unsigned long long&) const
{
    return 0;
}

} // namespace DataObjects::FrameDecoder
