// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/I_Frame.h"

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
