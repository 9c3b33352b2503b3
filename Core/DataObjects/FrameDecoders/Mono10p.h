// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/FrameDecoders/FrameDecoderCommon.h"

namespace DataObjects::FrameDecoder
{

/// Mono10p: 5 bytes hold four pixels of 10 bits, least significant bits first.
///
/// From the bytes b0, b1 … of a group: b0 + 256 × (b1 & 3), (b1 >> 2) + 64 × (b2 & 15),
/// (b2 >> 4) + 16 × (b3 & 63), (b3 >> 6) + 4 × b4.
class DATAOBJECTS_DATAOBJECTS_EXPORT Mono10p : public FrameDecoderCommon
{
public:
    using FrameDecoderCommon::decode;
    using FrameDecoderCommon::encodedSize;

    /// The source is a multiple of 5 bytes and fits into the destination.
    void decode(Zt::span<const unsigned char> source, const RTE::MemoryBlock& destination) const override;
    [[nodiscard]] QString id() const override;
    [[nodiscard]] QString label() const override;
    [[nodiscard]] QVersionNumber minimalOrvaneVersion() const override;
    [[nodiscard]] std::unique_ptr<I_FrameDecoder> clone() const override;
    /// A multiple of four pixels.
    [[nodiscard]] unsigned long long encodedSize(const unsigned long long& pixelCount) const override;
};

} // namespace DataObjects::FrameDecoder
