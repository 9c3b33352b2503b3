// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/I_Frame.h"

#include <vector>

namespace Qf
{

/// All elements row by row, as they are stored; of RGB the channels red, green, blue of each pixel.
[[nodiscard]] std::vector<double> planeValues(const BufferApi::I_PlaneBase& plane);

/// Red, green, blue of each pixel of an RGB plane.
[[nodiscard]] std::vector<unsigned char> rgbChannels(const BufferApi::I_PlaneBase& plane);

/// Calls `visit` with the PixelTypes::Tag of the plane's elements, `BufferApi::RgbQuad` among them.
template <typename Visitor>
auto visitPlane(const BufferApi::I_PlaneBase& plane, const Visitor& visit)
{
    if (plane.GetDataType() == BufferApi::DT_RGB) {
        return visit(PixelTypes::Tag<BufferApi::RgbQuad>{});
    }
    return PixelTypes::visit(plane.GetDataType(), visit, [] {
        return RTE::InvalidArgumentError(QStringLiteral("a plane of a type that qf does not know"));
    });
}

/// Calls `visit(component, z, plane)` for all planes of a frame.
template <typename Visitor>
void forEachPlane(const BufferApi::I_Frame& frame, const Visitor& visit)
{
    for (unsigned int i = 0; i < frame.GetComponentCount(); ++i) {
        const BufferApi::I_Component& component = *frame.GetComponent(i);
        for (unsigned int z = 0; z < component.GetPlaneCount(); ++z) {
            visit(component, z, *component.GetPlane(z));
        }
    }
}

[[nodiscard]] std::size_t pixelCount(const BufferApi::I_PlaneBase& plane);

/// Frees the pixels of a plane that nobody will ask for again.
void freePixels(BufferApi::I_PlaneBase* plane);

} // namespace Qf
