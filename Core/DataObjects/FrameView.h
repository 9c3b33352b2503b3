// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/I_Buffer.h"
#include "Core/DataObjects/ImageVolumeVariant.h"

/// \file
/// Frames for writers of files: pixels and masks are those of the object, which has to outlive the frame and
/// is only read; scales, attributes and scalar fields are copies. So a file takes no second set of pixels.
namespace DataObjects::Private
{

enum class MasksInFrame
{
    All,      ///< those that nobody asked for too, all valid, without making them
    IfInvalid ///< none at all when they have no invalid pixel
};

/// \throws RTE::Exception "Unsupported image type"
/// \throws RTE::VerificationFailed "data-pointer is null" when pixels or a mask were released or the image
/// moved from, "Source and destination have different sizes." when they do not fit together
[[nodiscard]] std::unique_ptr<BufferApi::I_Frame> viewAsFrame(const ImageVariant& image, MasksInFrame masks);
[[nodiscard]] std::unique_ptr<BufferApi::I_Frame> viewAsFrame(const ImageVolumeVariant& volume,
                                                              MasksInFrame masks);

} // namespace DataObjects::Private
