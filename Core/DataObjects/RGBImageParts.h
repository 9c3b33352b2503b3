// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/Image.h"
#include "Core/DataObjects/ImageBuffer.h"
#include "Core/DataObjects/ImageParts.h"

#include <QObject>

/// \file
/// What goes along between colour images and images of one channel.
namespace DataObjects::Private
{

/// The scales that both kinds have: X, Y and I.
template <typename Source, typename Target>
void copyScales(const Source& source, Target& target)
{
    target.GetScaleX().set(source.GetScaleX());
    target.GetScaleY().set(source.GetScaleY());
    target.GetScaleI().set(source.GetScaleI());
}

/// Scales, attributes and scalar fields, not the mask.
template <typename Source, typename Target>
void copyParts(const Source& source, Target& target)
{
    copyScales(source, target);
    replaceAttributes(source.GetAttributes(), target.GetAttributes());
    target.GetScalarFields().DeepCopyFrom(source.GetScalarFields());
}

/// An image of these pixels with copies of mask, scales, attributes and scalar fields of a colour image.
template <typename T, typename Source>
[[nodiscard]] Image<T> withPartsOf(const Source& source, ImageData<T>&& data)
{
    Image<T> image(std::move(data), Mask(source.GetMask()));
    copyParts(source, image);
    return image;
}

/// \throws RTE::VerificationFailed "data-pointer is null" for an image that was moved from or gave its pixels
/// up
template <typename T>
void verifyHasPixels(const Image<T>& image, RTE::SourceLocation location = RTE::SourceLocation::current())
{
    const bool isWhole =
        image.GetImageDataSPtr() != nullptr && (image.GetRawPointer() != nullptr || image.empty());
    RTE::verify(isWhole, "data-pointer is null", location);
}

/// A mask that nobody asked for is all valid and is not made.
[[nodiscard]] inline Mask copyOfMask(const ImageVariant& image)
{
    return image.IsMaskSpawned() ? Mask(image.GetMask()) : Mask(image.GetSize(), true);
}

/// \throws RTE::VerificationFailed "RGB image buffer doesn't support multiply z planes."
inline void verifyOnePlane(unsigned int depth, RTE::SourceLocation location = RTE::SourceLocation::current())
{
    if (depth != 1) {
        RTE::raise(
            RTE::VerificationFailed(QObject::tr("RGB image buffer doesn't support multiply z planes.")),
            location);
    }
}

/// A buffer with name and global attributes of a colour buffer, and a frame that `convert` makes of each of
/// its frames.
template <typename T, typename Source, typename Convert>
[[nodiscard]] ImageBuffer<T> convertFrames(const Source& source, Convert&& convert)
{
    std::vector<Image<T>> frames;
    frames.reserve(source.size());
    for (const auto& frame : source) {
        frames.push_back(convert(*frame));
    }
    ImageBuffer<T> buffer = frames.empty() ? std::move(*ImageBuffer<T>::CreateEmptyImageBuffer())
                                           : ImageBuffer<T>(std::move(frames), AttributesContainer());
    buffer.SetName(source.GetName());
    buffer.SetGlobalAttributes(source.GetGlobalAttributes());
    return buffer;
}

} // namespace DataObjects::Private
