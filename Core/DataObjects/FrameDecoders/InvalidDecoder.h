// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/FrameDecoders/FrameDecoderCommon.h"

namespace DataObjects::FrameDecoder
{

/// Stands for a device that records no frame data: its frames have no bytes and cannot be decoded. Not in the
/// registry, as it has no id.
class DATAOBJECTS_DATAOBJECTS_EXPORT InvalidDecoder : public FrameDecoderCommon
{
public:
    using FrameDecoderCommon::decode;
    using FrameDecoderCommon::encodedSize;

    /// \throws RTE::LogicError always
    void decode(Zt::span<const unsigned char> source, const RTE::MemoryBlock& destination) const override;
    [[nodiscard]] QString id() const override;
    [[nodiscard]] QString label() const override;
    [[nodiscard]] QVersionNumber minimalOrvaneVersion() const override;
    [[nodiscard]] std::unique_ptr<I_FrameDecoder> clone() const override;
    /// 0 for any count, zero included.
    [[nodiscard]] unsigned long long encodedSize(const unsigned long long& pixelCount) const override;
};

} // namespace DataObjects::FrameDecoder
