// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/I_Frame.h"
#include "Core/DataObjects/Export.h"

#include <memory>

namespace DataObjects::Private
{

/// The plane's data, checked on behalf of the caller. \throws RTE::VerificationFailed with one of the texts
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT void* getCheckedData(const BufferApi::I_PlaneBase* plane,
                                                                  BufferApi::E_DataType type,
                                                                  const char* missing, const char* otherType,
                                                                  RTE::SourceLocation location);

/// Null when the frame has no pixels or no such z.
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT BufferApi::I_PlaneBase*
findPixelPlane(const BufferApi::I_Frame& frame, unsigned int z);

/// First pixel of plane z of a frame, owned by the frame.
/// \throws RTE::VerificationFailed when there is no such plane or it has another type
template <typename T>
[[nodiscard]] T* GetPlaneData(const BufferApi::I_Frame& frame, unsigned int z,
                              RTE::SourceLocation location = RTE::SourceLocation::current())
{
    return static_cast<T*>(getCheckedData(findPixelPlane(frame, z), BufferApi::GetDataType<T>(),
                                          "Z-Plane for given frame not valid",
                                          "Pixel-plane of given frame has not the required type", location));
}

/// First element of plane z of a component, owned by the component.
/// \throws RTE::VerificationFailed when there is no such plane or it has another type
template <typename T>
[[nodiscard]] T* GetPlaneData(const BufferApi::I_Component& component, unsigned int z,
                              RTE::SourceLocation location = RTE::SourceLocation::current())
{
    return static_cast<T*>(getCheckedData(component.GetPlane(z), BufferApi::GetDataType<T>(),
                                          "Plane for given frame not valid",
                                          "Plane for given frame has not the required type", location));
}

/// A copy of one of the frame's scales that writes each change of itself back to the frame, which it must not
/// outlive. \param kind 0 X, 1 Y, 2 Z, 3 I \throws RTE::Exception "Invalid scale type" for any other kind,
/// RTE::VerificationFailed "Frame is NULL"
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<Zt::LinearScale>
GetScaleOnFrame(BufferApi::I_Frame* frame, unsigned int kind);

/// The same for the scale of a component. \throws RTE::VerificationFailed "Component is NULL"
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<Zt::LinearScale>
GetScaleOnComponent(BufferApi::I_Component* component);

} // namespace DataObjects::Private
