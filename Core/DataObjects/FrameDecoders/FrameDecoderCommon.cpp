// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/FrameDecoders/FrameDecoderCommon.h"

#include "Core/Common/Array.h"
#include "Core/Common/CacheSize.h"
#include "Core/Common/Raise.h"

namespace DataObjects::FrameDecoder
{

unsigned long long FrameDecoderCommon::encodedSize(const QSize& size) const
{
    if (!size.isValid()) {
        RTE::raise(RTE::InvalidArgumentError(QStringLiteral("Frame size is invalid")));
    }
    const unsigned int pixelCount =
        static_cast<unsigned int>(size.width()) * static_cast<unsigned int>(size.height());
    return encodedSize(static_cast<unsigned long long>(pixelCount));
}

FrameData FrameDecoderCommon::decode(Zt::span<const unsigned char> source, const QSize& size)
{
    FrameData frame(size);
    if (source.size() + frame.dataSize() > RTE::lastLevelCacheBytes()) {
        RTE::populatePages(frame.data(), frame.dataSize());
    }
    const RTE::UnmanagedMemory destination(frame.data(), frame.dataSize());
    decode(source, destination);
    return frame;
}

} // namespace DataObjects::FrameDecoder
