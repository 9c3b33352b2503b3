// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/Variant.h"

#include <memory>

namespace BufferApi
{
class I_Buffer;
} // namespace BufferApi

namespace DataObjects
{

/// \file
/// Data objects out of buffers of unknown content, and buffers out of them again. What the first frame is
/// decides; the object says by Variant::getTypeIdentifier() what it became.
///
/// The objects own all they need: pixels are moved out of the buffer, attributes, scales and scalar fields
/// belong to the object, and the buffer is destroyed, also when something is raised.
///
/// \code
/// std::unique_ptr<BufferApi::I_Buffer> file(BufferApi::ImportBuffer(path));
/// const std::unique_ptr<Variant> object = GetDataObjectFromBuffer(std::move(file));
/// if (object->getTypeIdentifier() == TypeIdentifier::imageBuffer) { … }
/// \endcode

/// An RGBImageBuffer of colour frames, an ImageBufferVariant of image frames.
/// \throws RTE::Exception "Conversion from this buffer frame type to a DataObject not implemented yet." for
///         null, no frames, and any other first frame; as GetImageBuffer and createRGBImageBufferFromBuffer
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<Variant>
GetDataObjectFromBuffer(std::unique_ptr<BufferApi::I_Buffer> buffer);

/// The same for whoever wants colour where there is colour: image frames become an RGBImageBuffer too when
/// the text of `Attr::rgbFrame` of the first is neither empty nor "0". A text that is no code of a mosaic,
/// "0.0" or "abc", asks for colour as well, and fails as createRGBImageBufferFromBuffer does.
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<Variant>
GetDataObjectAsRGBFromBuffer(std::unique_ptr<BufferApi::I_Buffer> buffer);

/// A buffer with copies of what an ImageBufferVariant, with masks, or an RGBImageBuffer holds; null for an
/// object of any other kind.
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<BufferApi::I_Buffer>
createBufferFromVariant(const Variant& variant);

} // namespace DataObjects
