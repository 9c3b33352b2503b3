// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/TypedScalars.h"

#include "Core/Buffer/C_TypedScalarFrame.h"
#include "Core/DataObjects/Latin1.h"
#include "Core/DataObjects/ScalarFieldMap.h"

namespace DataObjects::Private
{

namespace
{

void verifyPlane(bool exists, unsigned int z, RTE::SourceLocation location)
{
    if (!exists) {
        RTE::raise(RTE::VerificationFailed(QStringLiteral("Invalid plane index %1").arg(z)), location);
    }
}

/// Of the plane that is to be overwritten or made.
Math::Size2T<unsigned int> planeSize(const BufferApi::I_Frame& frame, const std::string& name, unsigned int z,
                                     E_DataType type, RTE::SourceLocation location)
{
    const BufferApi::I_Component* const existing = findTypedScalar(frame, name);
    if (existing == nullptr || existing->GetDataType() != toBufferDataType(type)) {
        return {frame.GetWidth(), frame.GetHeight()};
    }
    const BufferApi::I_PlaneBase& plane = typedScalarPlane(*existing, z, location);
    return {plane.GetWidth(), plane.GetHeight()};
}

} // namespace

std::vector<std::string> typedScalarNames(const BufferApi::I_Frame& frame)
{
    const std::string& prefix = BufferApi::I_Frame::TYPED_SCALAR_PREFIX;
    std::vector<std::string> names;
    for (unsigned int i = 0; i < frame.GetComponentCount(); ++i) {
        const std::string component = frame.GetComponent(i)->GetName();
        if (component.starts_with(prefix) && component.size() > prefix.size()) {
            names.push_back(component.substr(prefix.size()));
        }
    }
    return names;
}

BufferApi::I_Component* findTypedScalar(const BufferApi::I_Frame& frame, const std::string& name)
{
    return name.empty() ? nullptr : BufferApi::C_TypedScalarFrame(&frame, name).GetComponent(0);
}

BufferApi::I_PlaneBase& typedScalarPlane(const BufferApi::I_Component& component, unsigned int z,
                                         RTE::SourceLocation location)
{
    BufferApi::I_PlaneBase* const plane = component.GetPlane(z);
    verifyPlane(plane != nullptr, z, location);
    return *plane;
}

void verifyPlaneIndex(const BufferApi::I_Frame& frame, unsigned int z, RTE::SourceLocation location)
{
    verifyPlane(z < frame.GetDepth(), z, location);
}

void verifyFitsTypedScalar(const ImageDataVariant& data, bool hasPixels, const BufferApi::I_Frame& frame,
                           const std::string& name, unsigned int z, const char* otherSize,
                           RTE::SourceLocation location)
{
    ScalarFieldMap::verifyName(fromLatin1(name));
    verifyPlaneIndex(frame, z, location);
    RTE::verify(data.GetSize() == planeSize(frame, name, z, data.GetDataType(), location), otherSize,
                location);
    RTE::verify(hasPixels, "data-pointer is null", location);
}

} // namespace DataObjects::Private
