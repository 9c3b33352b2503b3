// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/DataObjectFromBuffer.h"

#include "Core/Buffer/C_FrameAttributes.h"
#include "Core/Buffer/I_Buffer.h"
#include "Core/Buffer/I_FrameImage.h"
#include "Core/Common/AttributeNames.h"
#include "Core/DataObjects/ImageBufferFromBuffer.h"
#include "Core/DataObjects/RGBImageBufferFromBuffer.h"
#include "Core/DataObjects/RGBImageBufferToBuffer.h"
#include "Core/DataObjects/TypeIdentifier.h"

namespace DataObjects
{

namespace
{

using BufferApi::I_Buffer;

/// Null also without a buffer.
BufferApi::I_Frame* firstFrame(const I_Buffer* buffer)
{
    return buffer == nullptr ? nullptr : buffer->GetFrame(0);
}

bool isColour(const BufferApi::I_Frame* frame)
{
    return dynamic_cast<const BufferApi::I_FrameRGB32*>(frame) != nullptr;
}

bool isMarkedAsColour(BufferApi::I_Frame* frame)
{
    if (frame == nullptr) {
        return false;
    }
    const QString mark = BufferApi::C_FrameAttributes(frame).GetString(Attr::rgbFrame);
    return !mark.isEmpty() && mark != u"0";
}

std::unique_ptr<Variant> colourObject(const I_Buffer& buffer)
{
    return std::make_unique<RGBImageBuffer>(createRGBImageBufferFromBuffer(buffer));
}

std::unique_ptr<Variant> imageObject(I_Buffer* buffer,
                                     RTE::SourceLocation location = RTE::SourceLocation::current())
{
    if (dynamic_cast<const BufferApi::I_FrameImage*>(firstFrame(buffer)) == nullptr) {
        RTE::raise(RTE::Exception(QStringLiteral(
                       "Conversion from this buffer frame type to a DataObject not implemented yet.")),
                   location);
    }
    return GetImageBuffer(std::move(*buffer), false);
}

} // namespace

std::unique_ptr<Variant> GetDataObjectFromBuffer(std::unique_ptr<I_Buffer> buffer)
{
    return isColour(firstFrame(buffer.get())) ? colourObject(*buffer) : imageObject(buffer.get());
}

std::unique_ptr<Variant> GetDataObjectAsRGBFromBuffer(std::unique_ptr<I_Buffer> buffer)
{
    BufferApi::I_Frame* const first = firstFrame(buffer.get());
    return isColour(first) || isMarkedAsColour(first) ? colourObject(*buffer) : imageObject(buffer.get());
}

std::unique_ptr<I_Buffer> createBufferFromVariant(const Variant& variant)
{
    const QString identifier = variant.getTypeIdentifier();
    if (identifier == TypeIdentifier::imageBuffer) {
        const auto* const recording = dynamic_cast<const ImageBufferVariant*>(&variant);
        return recording != nullptr ? CreateBufferFromImageBuffer(*recording, true) : nullptr;
    }
    if (identifier == TypeIdentifier::rgbImageBuffer) {
        const auto* const images = dynamic_cast<const RGBImageBuffer*>(&variant);
        return images != nullptr ? createBufferFromRGBImageBuffer(*images) : nullptr;
    }
    return nullptr;
}

} // namespace DataObjects
