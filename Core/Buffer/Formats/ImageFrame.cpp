// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/ImageFrame.h"

#include "Core/Buffer/FrameBuilder.h"
#include "Core/Buffer/I_FrameImage.h"

namespace BufferApi::Formats
{

std::unique_ptr<I_Frame> lazyImageFrame(E_DataType type, unsigned int width, unsigned int height,
                                        std::shared_ptr<const PlaneSource> pixels)
{
    ComponentParts component{.name = I_FrameImage::COMPONENT_PIXEL, .type = type, .planes = {}, .scale = {}};
    component.planes.push_back(createLazyPlane(type, width, height, std::move(pixels)));
    std::vector<ComponentParts> components;
    components.push_back(std::move(component));
    return buildFrame({.kind = type == DT_RGB ? FrameKind::Rgb : FrameKind::Image,
                       .width = width,
                       .height = height,
                       .depth = 1,
                       .choices = 1},
                      std::move(components));
}

} // namespace BufferApi::Formats
