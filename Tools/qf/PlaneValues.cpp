// SPDX-License-Identifier: Apache-2.0
#include "Tools/qf/PlaneValues.h"

namespace Qf
{

std::size_t pixelCount(const BufferApi::I_PlaneBase& plane)
{
    return static_cast<std::size_t>(plane.GetWidth()) * plane.GetHeight();
}

std::vector<double> planeValues(const BufferApi::I_PlaneBase& plane)
{
    return visitPlane(plane, [&](auto tag) -> std::vector<double> {
        using T = typename decltype(tag)::type;
        if constexpr (std::is_same_v<T, BufferApi::RgbQuad>) {
            const std::vector<unsigned char> channels = rgbChannels(plane);
            return {channels.begin(), channels.end()};
        } else {
            const T* elements = static_cast<const T*>(plane.GetData());
            return {elements, elements + pixelCount(plane)};
        }
    });
}

std::vector<unsigned char> rgbChannels(const BufferApi::I_PlaneBase& plane)
{
    const auto* pixels = static_cast<const BufferApi::RgbQuad*>(plane.GetData());
    const std::size_t count = pixelCount(plane);
    std::vector<unsigned char> channels;
    channels.reserve(3 * count);
    for (std::size_t i = 0; i < count; ++i) {
        channels.insert(channels.end(), {pixels[i].red, pixels[i].green, pixels[i].blue});
    }
    return channels;
}

void freePixels(BufferApi::I_PlaneBase* plane)
{
    visitPlane(*plane, [&](auto tag) {
        using T = typename decltype(tag)::type;
        delete[] static_cast<T*>(plane->ReleaseData());
    });
}

} // namespace Qf
