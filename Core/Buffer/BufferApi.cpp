// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/BufferApi.h"

#include "Core/Buffer/ElementTypes.h"
#include "Core/Buffer/FrameBuilder.h"
#include "Core/Buffer/StoredBuffer.h"
#include "Core/Buffer/StoredPlane.h"

namespace BufferApi
{

namespace
{

/// The new frame by one of its interfaces.
template <typename Interface>
Interface* create(const FrameShape& shape, E_DataType type, const std::vector<void*>& pixels)
{
    return dynamic_cast<Interface*>(createFrame(shape, type, pixels).release());
}

I_FrameImage* createImage(E_DataType type, unsigned int width, unsigned int height, unsigned int depth,
                          const std::vector<void*>& pixels)
{
    if (!isElementType(type)) {
        return nullptr;
    }
    const FrameKind kind = type == DT_RGB ? FrameKind::Rgb : FrameKind::Image;
    return create<I_FrameImage>({kind, width, height, depth, 1}, type, pixels);
}

/// One for each z of the frame.
PlaneList zeroPlanes(E_DataType type, const I_Frame& frame)
{
    PlaneList planes;
    for (unsigned int z = 0; z < frame.GetDepth(); ++z) {
        planes.push_back(newPlane(type, frame.GetWidth(), frame.GetHeight()));
        fillBytes(*planes.back(), 0);
    }
    return planes;
}

/// Adds a component that takes the planes' memory over.
void addComponent(I_Frame& frame, const std::string& name, E_DataType type, const PlaneList& planes)
{
    std::vector<void*> arrays;
    for (const auto& plane : planes) {
        arrays.push_back(plane->GetData());
    }
    frame.AddComponent(name, type, arrays);
    for (const auto& plane : planes) {
        static_cast<void>(plane->ReleaseData());
    }
}

} // namespace

I_Buffer* CreateBuffer()
{
    return new StoredBuffer;
}

I_FrameImage* CreateImageFrame(E_DataType type, unsigned int width, unsigned int height, unsigned int depth)
{
    return createImage(type, width, height, depth, {});
}

I_FrameImage* CreateImageFrameWithPlaneMemory(E_DataType type, unsigned int width, unsigned int height,
                                              void* plane)
{
    return CreateImageFrameWithPlaneMemory(type, width, height, std::vector<void*>{plane});
}

I_FrameImage* CreateImageFrameWithPlaneMemory(E_DataType type, unsigned int width, unsigned int height,
                                              const std::vector<void*>& planes)
{
    return createImage(type, width, height, static_cast<unsigned int>(planes.size()), planes);
}

I_FrameVector2C* CreateVectorFrame2C(unsigned int width, unsigned int height, unsigned int depth,
                                     unsigned int choices)
{
    if (choices == 0) {
        return nullptr;
    }
    return create<I_FrameVector2C>({FrameKind::Vector2C, width, height, depth, choices}, DT_FLOAT, {});
}

I_FrameVector3C* CreateVectorFrame3C(unsigned int width, unsigned int height, unsigned int depth,
                                     unsigned int choices)
{
    if (choices == 0) {
        return nullptr;
    }
    return create<I_FrameVector3C>({FrameKind::Vector3C, width, height, depth, choices}, DT_FLOAT, {});
}

I_PlaneBase* CreatePlane(E_DataType type, unsigned int width, unsigned int height)
{
    return isElementType(type) ? newPlane(type, width, height).release() : nullptr;
}

void CreateTypedScalarInFrame(I_Frame* frame, const std::string& name, E_DataType type)
{
    if (!frame || name.empty()) {
        RTE::raise(RTE::InvalidArgumentError(frame ? QStringLiteral("Empty name")
                                                   : QStringLiteral("Frame is NULL")));
    }
    const std::string component = I_Frame::TYPED_SCALAR_PREFIX + name;
    const I_Component* existing = frame->GetComponent(component);
    if (existing && existing->GetDataType() == type) {
        return;
    }
    // Made before the scalar of another type goes, so that it stays when there is no memory.
    const PlaneList planes = zeroPlanes(type, *frame);
    if (existing && isElementType(type)) {
        frame->RemoveComponent(frame->GetComponentIndex(component));
    }
    addComponent(*frame, component, type, planes);
}

} // namespace BufferApi
