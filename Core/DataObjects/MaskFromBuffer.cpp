// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/MaskFromBuffer.h"

#include "Core/Buffer/I_Frame.h"
#include "Core/Common/Raise.h"

#include <utility>

namespace DataObjects
{

namespace
{

void verifyHoldsBytes(const BufferApi::I_PlaneBase& plane)
{
    RTE::verify(BufferApi::IsOfType<unsigned char>(plane), "plane type cannot be mapped onto a bool array");
}

void verifyZ(const BufferApi::I_Frame& frame, unsigned int z)
{
    RTE::verify(z < frame.GetDepth(), "Z is out of range");
}

BufferApi::I_PlaneBase& planeOf(const BufferApi::I_Component& masks, unsigned int z)
{
    BufferApi::I_PlaneBase* const plane = masks.GetPlane(z);
    RTE::verify(plane != nullptr, "Z is out of range");
    return *plane;
}

/// The mask plane of this z; null when the frame has no masks and needs none.
BufferApi::I_PlaneBase* findPlane(const BufferApi::I_Frame& frame, unsigned int z, bool maskRequired)
{
    const BufferApi::I_Component* const masks = frame.GetComponent(BufferApi::I_Frame::COMPONENT_MASK);
    if (masks == nullptr) {
        RTE::verify(!maskRequired, "Frame requires a mask, but has no mask.");
        return nullptr;
    }
    verifyZ(frame, z);
    return &planeOf(*masks, z);
}

Mask allValid(const BufferApi::I_Frame& frame)
{
    return {frame.GetWidth(), frame.GetHeight(), true};
}

} // namespace

Mask GetMask(BufferApi::I_PlaneBase& plane)
{
    verifyHoldsBytes(plane);
    return {static_cast<bool*>(plane.GetData()), plane.GetWidth(), plane.GetHeight(), false};
}

Mask GetMask(BufferApi::I_PlaneBase&& plane)
{
    verifyHoldsBytes(plane);
    const Math::Size2T<unsigned int> size(plane.GetWidth(), plane.GetHeight());
    return {static_cast<bool*>(plane.ReleaseData()), size, true};
}

Mask GetMask(const BufferApi::I_Frame& frame, unsigned int z)
{
    verifyZ(frame, z);
    const BufferApi::I_Component* const masks = frame.GetComponent(BufferApi::I_Frame::COMPONENT_MASK);
    RTE::verify(masks != nullptr, "Frame has no mask");
    return GetMask(planeOf(*masks, z));
}

namespace Private
{

Mask GetOrCreateMask(const BufferApi::I_Frame& frame, unsigned int z, bool maskRequired)
{
    BufferApi::I_PlaneBase* const plane = findPlane(frame, z, maskRequired);
    return plane != nullptr ? GetMask(*plane) : allValid(frame);
}

Mask MoveOrCreateMask(BufferApi::I_Frame&& frame, unsigned int z, bool maskRequired)
{
    BufferApi::I_PlaneBase* const plane = findPlane(frame, z, maskRequired);
    return plane != nullptr ? GetMask(std::move(*plane)) : allValid(frame);
}

} // namespace Private

} // namespace DataObjects
