// SPDX-License-Identifier: Apache-2.0
/// \file
/// Images, volumes and recordings, typed and with the pixel type known only at run time: RasterObjects
#include "Core/DataObjects/DataObjects.h"

#include <cstdio>

namespace
{

using namespace DataObjects;

/// A bright dot on a dark ground, one pixel of which is known to be wrong.
Image<unsigned short> dot()
{
    Image<unsigned short> image(128, 96, 0, true);
    image(3, 4) = 512;
    image.SetMaskValid(0, 0, false);
    image.SetScaleX(Zt::LinearScale(0.02, 0.0, "mm", "Position x"));
    image.GetAttributes().set("CameraName", QStringLiteral("Camera 1"));
    return image;
}

/// Pixels alone, without mask, scales or attributes.
ImageData<float> scaledPixels()
{
    ImageData<unsigned short> words(1280, 1024, 0);
    words(3, 4) = 512;
    words *= 1.5;
    ImageData<float> floats(words.GetSize());
    floats.Assign(words);
    return floats;
}

/// Works for every pixel type: the copy has that of the argument.
std::unique_ptr<ImageVariant> copyAsMeasured(const ImageVariant& image)
{
    return image.CreateCopy();
}

ImageVolume<float> warmVolume()
{
    ImageVolume<float> volume(Math::Size3T<unsigned int>(64, 32, 8), 20.0F, true);
    volume.SetVoxel(3, 4, 7, 90.0F);
    volume.SetMaskValid(3, 4, 0, false);
    volume.SetScaleI(Zt::LinearScale(0.1, 0.0, "K", "Temperature"));
    for (const std::shared_ptr<Image<float>>& plane : volume) {
        *plane *= 2.0;
    }
    return volume;
}

void run()
{
    const Image<unsigned short> words = dot();
    Image<float> half(words.GetSize(), true);
    half.Assign(words);
    half *= 0.5;
    std::printf("pixel (3, 4) is %g at %g mm, all valid: %d\n", half(3, 4), half.GetScaleX().getScaled(3),
                AllValuesValid(*copyAsMeasured(half)));

    std::printf("scaled it is %g\n", scaledPixels()(3, 4));

    const std::shared_ptr<ImageBuffer<float>> recording = ImageBuffer<float>::CreateEmptyImageBuffer();
    recording->AppendImageVolume(warmVolume());
    recording->SetName("Warm");
    recording->GetGlobalAttributes().set("Operator", QStringLiteral("Average"));
    const ImageBuffer<unsigned char> bytes(1, 1, 1, 1, true);
    const auto copy = CreateImageBufferCopyOfOtherType(*recording, bytes);
    const ImageVolumeVariant& frame = copy->getFrame(0);
    std::printf("%u frame of %u x %u x %u, its first voxel is %g K\n", copy->getFrameCount(),
                frame.GetWidth(), frame.GetHeight(), frame.GetDepth(),
                frame.GetScaleI().getScaled(
                    CastImageDataTo<unsigned char>(frame.getPlane(0).GetImageData()).GetPixel(0, 0)));
    std::printf("room for %u frames of bytes\n",
                CreateImageBufferOfOtherType(bytes, 64, 32, 1, 10, true)->getFrameCount());
}

} // namespace

int main()
{
    try {
        run();
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
