// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/FrameDecoders/DecoderChecks.h"

#include "Core/Common/Raise.h"

namespace DataObjects::FrameDecoder::Private
{

namespace
{

[[noreturn]] void refuse(const QString& message, SourceLocation location)
{
    RTE::raise(RTE::InvalidArgumentError(message), location);
}

} // namespace

void checkSource(Zt::span<const unsigned char> source, SourceLocation location)
{
    if (source.data() == nullptr) {
        refuse(QStringLiteral("Null pointer for source"), location);
    }
}

void checkMultiple(unsigned long long sourceSize, unsigned int groupBytes, SourceLocation location)
{
    if (sourceSize % groupBytes != 0) {
        refuse(QStringLiteral("Source size %1 is not a multiple of %2 bytes").arg(sourceSize).arg(groupBytes),
               location);
    }
}

void checkCapacity(unsigned long long needed, unsigned long long capacity, SourceLocation location)
{
    if (capacity < needed) {
        refuse(QStringLiteral("Destination too small: need %1 bytes, but got %2 bytes")
                   .arg(needed)
                   .arg(capacity),
               location);
    }
}

void checkPixelMultiple(unsigned long long pixels, unsigned int multiple, SourceLocation location)
{
    if (pixels % multiple != 0) {
        refuse(QStringLiteral("Pixel count %1 is not a multiple of %2").arg(pixels).arg(multiple), location);
    }
}

void checkNotEmpty(unsigned long long pixelCount, SourceLocation location)
{
    if (pixelCount == 0) {
        refuse(QStringLiteral("Frame size is invalid"), location);
    }
}

void checkDimensions(unsigned long long pixelCount, unsigned int multiple, const QString& message,
                     SourceLocation location)
{
    if (pixelCount % multiple != 0) {
        refuse(message.arg(pixelCount), location);
    }
}

} // namespace DataObjects::FrameDecoder::Private
