// SPDX-License-Identifier: Apache-2.0
#include "Tools/qf/Mosaic.h"

#include "Core/DataObjects/BayerPattern.h"
#include "Core/DataObjects/ImageFromBuffer.h"
#include "Core/DataObjects/RGBImageFromBuffer.h"

#include <algorithm>
#include <cmath>

namespace Qf
{

namespace
{

using DataObjects::Rgb16;

ValueRange rangeOfChannels(const DataObjects::RGBImage& image)
{
    std::vector<double> values;
    values.reserve(3 * image.size());
    for (std::size_t i = 0; i < image.size(); ++i) {
        const Rgb16& pixel = image[i];
        for (const unsigned short channel : {pixel.red, pixel.green, pixel.blue}) {
            values.push_back(image.GetScaleI().getScaled(channel));
        }
    }
    return percentileRange(values);
}

} // namespace

bool isMosaic(const BufferApi::I_Frame& frame)
{
    return frame.GetDataType() == BufferApi::DT_WORD &&
           dynamic_cast<const BufferApi::I_FrameImage*>(&frame) != nullptr &&
           DataObjects::isBayerPatternImage(frame);
}

QImage mosaicImage(const BufferApi::I_FrameImage& frame, unsigned int z,
                   const std::optional<ValueRange>& range)
{
    const auto mosaic = DataObjects::GetImageT<unsigned short>(frame, z);
    const DataObjects::RGBImage colours = DataObjects::createRGBImageFromImage(mosaic);
    const ValueRange shown = range ? *range : rangeOfChannels(colours);
    const auto level = [&](unsigned short channel) {
        const double place = (colours.GetScaleI().getScaled(channel) - shown.low) / (shown.high - shown.low);
        return static_cast<int>(std::lround(255.0 * std::clamp(place, 0.0, 1.0)));
    };
    QImage image(static_cast<int>(colours.GetWidth()), static_cast<int>(colours.GetHeight()),
                 QImage::Format_ARGB32_Premultiplied);
    for (unsigned int y = 0; y < colours.GetHeight(); ++y) {
        auto* row = reinterpret_cast<QRgb*>(image.scanLine(static_cast<int>(y)));
        for (unsigned int x = 0; x < colours.GetWidth(); ++x) {
            const Rgb16& pixel = colours(x, y);
            row[x] = colours.GetMask()(x, y) ? qRgb(level(pixel.red), level(pixel.green), level(pixel.blue))
                                             : qRgba(0, 0, 0, 0);
        }
    }
    return image;
}

} // namespace Qf
