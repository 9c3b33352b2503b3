// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/FrameDecoders/FrameDecoderCommon.h"

namespace DataObjects::FrameDecoder
{

/// Rgb24: 3 bytes of colour become a gray value of 0 to 25497, (b1 × 11.4 + b0 × 29.89) + b2 × 58.7.
///
/// Products and sums are rounded to single precision one by one in this order, the result is truncated. The
/// middle byte has the smallest weight and the last one the largest, and white is not scaled to the full
/// range: recorded images depend on it. Not in the registry.
class DATAOBJECTS_DATAOBJECTS_EXPORT Rgb24 : public FrameDecoderCommon
{
public:
    using FrameDecoderCommon::decode;
    using FrameDecoderCommon::encodedSize;

    /// The destination holds at least source / 3 pixels. Bytes that remain at the end make a last pixel, its
    /// missing bytes 0, if there is room for it.
    void decode(Zt::span<const unsigned char> source, const RTE::MemoryBlock& destination) const override;
    [[nodiscard]] QString id() const override;
    [[nodiscard]] QString label() const override;
    [[nodiscard]] QVersionNumber minimalOrvaneVersion() const override;
    [[nodiscard]] std::unique_ptr<I_FrameDecoder> clone() const override;
    [[nodiscard]] unsigned long long encodedSize(const unsigned long long& pixelCount) const override;
};

} // namespace DataObjects::FrameDecoder
