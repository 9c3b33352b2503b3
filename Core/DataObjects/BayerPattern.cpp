// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/BayerPattern.h"

#include "Core/Common/AttributeNames.h"
#include "Core/DataObjects/BufferAttributes.h"
#include "Core/DataObjects/ImageBufferVariant.h"

namespace DataObjects
{

bool isBayerPatternImage(const Attributes& attributes)
{
    const AttributeValue value = attributes.attributeValue(Attr::rgbFrame);
    return value.Count() == 1 && value.value<double>() >= 1;
}

bool isBayerPatternImage(const BufferApi::I_Frame& frame)
{
    // The view is only read.
    return isBayerPatternImage(BufferAttributes(const_cast<BufferApi::I_Frame&>(frame)));
}

bool isBayerPatternImage(const BufferApi::I_Buffer& buffer, unsigned int frame)
{
    const BufferApi::I_Frame* const found = buffer.GetFrame(frame);
    return found != nullptr && isBayerPatternImage(*found);
}

bool isBayerPatternImage(const ImageVariant& image)
{
    return isBayerPatternImage(image.GetAttributes());
}

bool hasBayerPatternImage(const BufferApi::I_Buffer& buffer)
{
    for (unsigned int i = 0; i < buffer.GetFrameCount(); ++i) {
        if (isBayerPatternImage(buffer, i)) {
            return true;
        }
    }
    return false;
}

bool hasBayerPatternImage(const ImageBufferVariant& buffer)
{
    for (unsigned int i = 0; i < buffer.getFrameCount(); ++i) {
        if (isBayerPatternImage(buffer.getFrame(i).GetAttributes())) {
            return true;
        }
    }
    return false;
}

bool isRGBFrame(const BufferApi::I_Frame& frame)
{
    return frame.GetDataType() == BufferApi::DT_RGB;
}

bool isRGBBuffer(const BufferApi::I_Buffer& buffer)
{
    return buffer.GetFrameCount() > 0 && isRGBFrame(*buffer.GetFrame(0));
}

} // namespace DataObjects
