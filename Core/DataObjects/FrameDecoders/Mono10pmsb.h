// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/FrameDecoders/FrameDecoderCommon.h"

namespace DataObjects::FrameDecoder
{

/// Mono10pmsb: 5 bytes hold four pixels of 10 bits, most significant bits first.
///
/// From the bytes b0, b1 … of a group: 4 × b0 + (b1 >> 6), 16 × (b1 & 63) + (b2 >> 4),
/// 64 × (b2 & 15) + (b3 >> 2), 256 × (b3 & 3) + b4.
class DATAOBJECTS_DATAOBJECTS_EXPORT Mono10pmsb : public FrameDecoderCommon
{
public:
    using FrameDecoderCommon::decode;
    using FrameDecoderCommon::encodedSize;

    /// The source is a multiple of 5 bytes and fits into the destination. The destination holds a multiple of
    /// 8 pixels.
    void decode(Zt::span<const unsigned char> source, const RTE::MemoryBlock& destination) const override;
    [[nodiscard]] QString id() const override;
    [[nodiscard]] QString label() const override;
    [[nodiscard]] QVersionNumber minimalOrvaneVersion() const override;
    [[nodiscard]] std::unique_ptr<I_FrameDecoder> clone() const override;
    /// A multiple of four pixels.
    [[nodiscard]] unsigned long long encodedSize(const unsigned long long& pixelCount) const override;
};

} // namespace DataObjects::FrameDecoder
