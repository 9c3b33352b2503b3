// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/FrameDecoders/FrameDecoderCommon.h"

namespace DataObjects::FrameDecoder
{

/// Mono12p: 3 bytes hold two pixels of 12 bits, least significant bits first.
///
/// From the bytes b0, b1 … of a group: b0 + 256 × (b1 & 15), (b1 >> 4) + 16 × b2.
class DATAOBJECTS_DATAOBJECTS_EXPORT Mono12p : public FrameDecoderCommon
{
public:
    using FrameDecoderCommon::decode;
    using FrameDecoderCommon::encodedSize;

    /// The source is a multiple of 3 bytes and fits into the destination.
    void decode(Zt::span<const unsigned char> source, const RTE::MemoryBlock& destination) const override;
    [[nodiscard]] QString id() const override;
    [[nodiscard]] QString label() const override;
    [[nodiscard]] QVersionNumber minimalOrvaneVersion() const override;
    [[nodiscard]] std::unique_ptr<I_FrameDecoder> clone() const override;
    /// An even number of pixels.
    [[nodiscard]] unsigned long long encodedSize(const unsigned long long& pixelCount) const override;
};

} // namespace DataObjects::FrameDecoder
