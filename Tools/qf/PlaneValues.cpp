// SPDX-License-Identifier: Apache-2.0
#include "Tools/qf/PlaneValues.h"

namespace Qf
{

namespace
{

std::size_t elementCount(const BufferApi::I_PlaneBase& plane)
{
    return static_cast<std::size_t>(plane.GetWidth()) * plane.GetHeight();
}

} // namespace

std::vector<double> planeValues(const BufferApi::I_PlaneBase& plane)
{
    if (plane.GetDataType() == BufferApi::DT_RGB) {
        const std::vector<unsigned char> channels = rgbChannels(plane);
        return {channels.begin(), channels.end()};
    }
    return PixelTypes::visit(
        plane.GetDataType(),
        [&](auto tag) {
            using T = typename decltype(tag)::type;
            const T* elements = static_cast<const T*>(plane.GetData());
            return std::vector<double>(elements, elements + elementCount(plane));
        },
        [] { return RTE::InvalidArgumentError(QStringLiteral("a plane of a type that qf does not know")); });
}

std::vector<unsigned char> rgbChannels(const BufferApi::I_PlaneBase& plane)
{
    const auto* pixels = static_cast<const BufferApi::RgbQuad*>(plane.GetData());
    const std::size_t count = elementCount(plane);
    std::vector<unsigned char> channels;
    channels.reserve(3 * count);
    for (std::size_t i = 0; i < count; ++i) {
        channels.insert(channels.end(), {pixels[i].red, pixels[i].green, pixels[i].blue});
    }
    return channels;
}

} // namespace Qf
