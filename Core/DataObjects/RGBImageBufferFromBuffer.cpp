// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/RGBImageBufferFromBuffer.h"

#include "Core/DataObjects/BufferAttributes.h"
#include "Core/DataObjects/RGBImageFromBuffer.h"
#include "Core/DataObjects/RGBImageParts.h"
#include "Core/DataObjects/VisitImageType.h"

namespace DataObjects
{

RGBImageBuffer createRGBImageBufferFromBuffer(const BufferApi::I_Buffer& buffer)
{
    RGBImageBuffer result;
    result.SetName(buffer.GetName());
    // The view is only read.
    result.SetGlobalAttributes(BufferAttributes(const_cast<BufferApi::I_Buffer&>(buffer)));
    for (unsigned int i = 0; i < buffer.GetFrameCount(); ++i) {
        Private::verifyOnePlane(buffer.GetFrame(i)->GetDepth());
        result.AppendImage(createRGBImageFromBuffer(buffer, i, 0));
    }
    return result;
}

RGBImageBuffer createRGBImageBufferFromImageBuffer(const ImageBufferVariant& buffer)
{
    RGBImageBuffer result;
    Private::visitImageType(buffer.GetDataType(), [&](auto tag) {
        using T = typename decltype(tag)::type;
        result.SetName(static_cast<const ImageBuffer<T>&>(buffer).GetName());
    });
    result.SetGlobalAttributes(buffer.GetGlobalAttributes());
    for (unsigned int i = 0; i < buffer.getFrameCount(); ++i) {
        Private::verifyOnePlane(buffer.getFrame(i).GetDepth());
        result.AppendImage(createRGBImageFromImage(buffer.getFrame(i).getPlane(0)));
    }
    return result;
}

} // namespace DataObjects
