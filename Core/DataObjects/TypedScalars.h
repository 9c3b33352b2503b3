// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/BufferApi.h"
#include "Core/DataObjects/ImageData.h"

#include <string>
#include <utility>
#include <vector>

/// \file
/// The scalar fields of a frame as the store has them: the components whose name begins with
/// `I_Frame::TYPED_SCALAR_PREFIX` and goes on. Names are without the prefix.
namespace DataObjects::Private
{

/// In the order of the components.
[[nodiscard]] std::vector<std::string> typedScalarNames(const BufferApi::I_Frame& frame);

/// Null when there is none, always for the empty name.
[[nodiscard]] BufferApi::I_Component* findTypedScalar(const BufferApi::I_Frame& frame,
                                                      const std::string& name);

/// \throws RTE::VerificationFailed "Invalid plane index z" with the number
[[nodiscard]] BufferApi::I_PlaneBase&
typedScalarPlane(const BufferApi::I_Component& component, unsigned int z,
                 RTE::SourceLocation location = RTE::SourceLocation::current());

/// As typedScalarPlane, for a component that is yet to be made.
void verifyPlaneIndex(const BufferApi::I_Frame& frame, unsigned int z,
                      RTE::SourceLocation location = RTE::SourceLocation::current());

/// Checks what is to be written to plane z of a typed scalar that is there or is yet to be made. One that was
/// read from a file need not have the size of the frame.
/// \throws RTE::VerificationFailed "Empty scalar field names are not allowed.", "Invalid plane index z" with
/// the number, `otherSize`, "data-pointer is null" unless there are pixels
void verifyFitsTypedScalar(const ImageDataVariant& data, bool hasPixels, const BufferApi::I_Frame& frame,
                           const std::string& name, unsigned int z, const char* otherSize,
                           RTE::SourceLocation location);

template <typename T>
void verifyFitsTypedScalar(const ImageData<T>& data, const BufferApi::I_Frame& frame, const std::string& name,
                           unsigned int z, const char* otherSize,
                           RTE::SourceLocation location = RTE::SourceLocation::current())
{
    verifyFitsTypedScalar(data, data.GetRawPointer() != nullptr, frame, name, z, otherSize, location);
}

/// Copies pixels into plane z of a typed scalar of their type, which is made unless it is there; raises as
/// verifyFitsTypedScalar, before anything changes.
template <typename T>
void copyToTypedScalar(const ImageData<T>& data, BufferApi::I_Frame& frame, const std::string& name,
                       unsigned int z, const char* otherSize,
                       RTE::SourceLocation location = RTE::SourceLocation::current())
{
    verifyFitsTypedScalar(data, frame, name, z, otherSize, location);
    BufferApi::CreateTypedScalarInFrame(&frame, name, BufferApi::GetDataType<T>());
    const BufferApi::I_PlaneBase& plane = typedScalarPlane(*findTypedScalar(frame, name), z, location);
    ImageData<T>(static_cast<T*>(plane.GetData()), plane.GetWidth(), plane.GetHeight(), false) = data;
}

/// Calls `visitor` with the PixelTypes::Tag of the type.
/// \throws RTE::Exception "RGB scalar field is not supported.", "Scalar field has unsupported data type"
template <typename Visitor>
decltype(auto) visitTypedScalar(BufferApi::E_DataType type, Visitor&& visitor,
                                RTE::SourceLocation location = RTE::SourceLocation::current())
{
    const auto unsupported = [type] {
        return RTE::Exception(type == BufferApi::DT_RGB
                                  ? QStringLiteral("RGB scalar field is not supported.")
                                  : QStringLiteral("Scalar field has unsupported data type"));
    };
    return PixelTypes::visit(type, std::forward<Visitor>(visitor), unsupported, location);
}

} // namespace DataObjects::Private
