// SPDX-License-Identifier: Apache-2.0
/// \file
/// The free functions of the frame store.
///
/// \code
/// std::unique_ptr<BufferApi::I_Buffer> buffer(BufferApi::CreateBuffer());
/// auto* frame = BufferApi::CreateImageFrame(BufferApi::DT_WORD, 640, 480, 1);
/// buffer->AddFrame(frame);
/// auto* pixels = static_cast<unsigned short*>(
///     frame->GetComponent(BufferApi::I_FrameImage::COMPONENT_PIXEL)->GetPlane(0)->GetData());
/// \endcode
#pragma once

#include "Core/Buffer/I_Buffer.h"
#include "Core/Buffer/I_FrameImage.h"
#include "Core/Buffer/I_FrameVector.h"
#include "Core/Buffer/ImportExport.h"

namespace BufferApi
{

/// New, empty, without a name; owned by the caller.
[[nodiscard]] DATAOBJECTS_BUFFER_EXPORT I_Buffer* CreateBuffer();

/// A frame with pixel planes of its own, one per z, uninitialised; owned by the caller. With `DT_RGB` it is
/// an `I_FrameRGB32` besides. Null when the type cannot make a frame. Sizes of 0 give empty planes.
/// \throws RTE::InvalidArgumentError for more than the machine's memory, std::bad_alloc
[[nodiscard]] DATAOBJECTS_BUFFER_EXPORT I_FrameImage*
CreateImageFrame(E_DataType type, unsigned int width, unsigned int height, unsigned int depth);

/// A frame of depth 1 over an array of width * height elements from `RTE::newArray`, which it takes over.
/// The array stays with the caller when the type cannot make a frame, which gives null, and when something is
/// raised. \throws RTE::InvalidArgumentError "Plane memory is NULL"
[[nodiscard]] DATAOBJECTS_BUFFER_EXPORT I_FrameImage*
CreateImageFrameWithPlaneMemory(E_DataType type, unsigned int width, unsigned int height, void* plane);

/// As above with one array for each z.
[[nodiscard]] DATAOBJECTS_BUFFER_EXPORT I_FrameImage*
CreateImageFrameWithPlaneMemory(E_DataType type, unsigned int width, unsigned int height,
                                const std::vector<void*>& planes);

/// A frame of width * height * depth vectors with one or more choices, all zero and enabled; owned by the
/// caller. Null for 0 choices. \throws RTE::InvalidArgumentError for more than the machine's memory,
/// std::bad_alloc
[[nodiscard]] DATAOBJECTS_BUFFER_EXPORT I_FrameVector2C*
CreateVectorFrame2C(unsigned int width, unsigned int height, unsigned int depth, unsigned int choices);
[[nodiscard]] DATAOBJECTS_BUFFER_EXPORT I_FrameVector3C*
CreateVectorFrame3C(unsigned int width, unsigned int height, unsigned int depth, unsigned int choices);

/// A plane by itself, uninitialised; owned by the caller. Null when there is no such type.
/// \throws std::bad_alloc, also when the size overflows
[[nodiscard]] DATAOBJECTS_BUFFER_EXPORT I_PlaneBase* CreatePlane(E_DataType type, unsigned int width,
                                                                 unsigned int height);

/// Adds the typed scalar `name`, the component "TS:" + name with a zeroed plane for every z. One that exists
/// in this type is left as it is; one of another type is replaced, and pointers to it dangle. \throws
/// RTE::InvalidArgumentError for a null frame, an empty name or an unsupported type
DATAOBJECTS_BUFFER_EXPORT void CreateTypedScalarInFrame(I_Frame* frame, const std::string& name,
                                                        E_DataType type);

} // namespace BufferApi
