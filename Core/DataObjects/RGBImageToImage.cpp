// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/RGBImageToImage.h"

#include "Core/DataObjects/BayerTransformer.h"
#include "Core/DataObjects/PixelRules.h"
#include "Core/DataObjects/RGBImageParts.h"

#include <algorithm>

namespace DataObjects
{

template <typename T>
Image<T> createMonochromeImageFromRGBImage(const RGBImage& image)
{
    ImageData<T> data(image.GetSize());
    std::transform(image.begin(), image.end(), data.begin(),
                   [](const Rgb16& pixel) { return Private::convertPixel<T>(pixel.Intensity()); });
    return Private::withPartsOf(image, std::move(data));
}

Image<unsigned short> createBayerPatternImageFromRGBImage(const RGBImage& image, int pattern)
{
    return BayerTransformer(pattern).toMosaic(image);
}

ImageBuffer<unsigned short> createBayerPatternBufferFromRGBImageBuffer(const RGBImageBuffer& buffer,
                                                                       int pattern)
{
    const BayerTransformer transformer(pattern);
    return Private::convertFrames<unsigned short>(
        buffer, [&](const RGBImage& image) { return transformer.toMosaic(image); });
}

#define DATAOBJECTS_INSTANTIATE(type, number, name)                                                          \
    template Image<type> createMonochromeImageFromRGBImage<type>(const RGBImage&);
DATAOBJECTS_PIXEL_TYPES(DATAOBJECTS_INSTANTIATE)
#undef DATAOBJECTS_INSTANTIATE

} // namespace DataObjects
