// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/FrameDecoders/FrameDecoderCommon.h"

namespace DataObjects::FrameDecoder
{

/// Mono12packed: 3 bytes hold two pixels of 12 bits, which share the middle byte; the only packed format for
/// an odd number of pixels.
///
/// From the bytes b0, b1, b2 of a group: 16 × b0 + (b1 & 15), 16 × b2 + (b1 >> 4).
class DATAOBJECTS_DATAOBJECTS_EXPORT Mono12packed : public FrameDecoderCommon
{
public:
    using FrameDecoderCommon::decode;
    using FrameDecoderCommon::encodedSize;

    /// The source is a multiple of 3 bytes and fills the destination, which must hold a pixel; what is left
    /// of the source is ignored. Of an odd number of pixels the last group gives the first of its two.
    void decode(Zt::span<const unsigned char> source, const RTE::MemoryBlock& destination) const override;
    [[nodiscard]] QString id() const override;
    [[nodiscard]] QString label() const override;
    [[nodiscard]] QVersionNumber minimalOrvaneVersion() const override;
    [[nodiscard]] std::unique_ptr<I_FrameDecoder> clone() const override;
    /// The last group of an odd number of pixels is a whole one.
    [[nodiscard]] unsigned long long encodedSize(const unsigned long long& pixelCount) const override;
};

} // namespace DataObjects::FrameDecoder
