// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/FrameDecoders/I_FrameDecoder.h"

namespace DataObjects::FrameDecoder
{

/// What all decoders do alike.
class DATAOBJECTS_DATAOBJECTS_EXPORT FrameDecoderCommon : public I_FrameDecoder
{
public:
    using I_FrameDecoder::decode;
    using I_FrameDecoder::encodedSize;

    [[nodiscard]] unsigned long long encodedSize(const QSize& size) const override;
    [[nodiscard]] FrameData decode(Zt::span<const unsigned char> source, const QSize& size) override;

protected:
    /// Threads that a decoder may use; none of this library's uses more than one.
    [[nodiscard]] int threadCount() const noexcept { return 2; }
};

} // namespace DataObjects::FrameDecoder
