// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/ImageExtraction.h"

#include "Core/DataObjects/ImageVolume.h"
#include "Core/DataObjects/VisitImageType.h"

#include <algorithm>

namespace DataObjects
{

namespace
{

using Size = Math::Size2T<unsigned int>;

/// Where the pixels of a cut lie in one plane, and where they go to in the result. Passed by value: a byte
/// that a loop writes could be a part of anything that is referred to.
struct Line
{
    unsigned long long count;
    unsigned long long sourceBegin;
    unsigned long long sourceStep;
    unsigned long long targetBegin;
    unsigned long long targetStep;
};

template <typename T>
void copyLine(const T* source, T* target, Line line)
{
    source += line.sourceBegin;
    target += line.targetBegin;
    if (line.sourceStep == 1 && line.targetStep == 1) {
        std::copy_n(source, line.count, target);
        return;
    }
    for (unsigned long long i = 0; i < line.count; ++i) {
        target[i * line.targetStep] = source[i * line.sourceStep];
    }
}

/// A line of validity; bytes of foreign masks may be neither 0 nor 1, so they are not read as bool.
void copyValidity(const ImageVariant& plane, Mask& target, Line line)
{
    auto* const targetBytes = reinterpret_cast<unsigned char*>(target.GetRawPointer());
    if (plane.IsMaskSpawned()) {
        copyLine(reinterpret_cast<const unsigned char*>(plane.GetMask().GetRawPointer()), targetBytes, line);
        return;
    }
    for (unsigned long long i = 0; i < line.count; ++i) {
        targetBytes[line.targetBegin + i * line.targetStep] = 1;
    }
}

Zt::LinearScale scaleOfCut(const Zt::LinearScale& axis, unsigned int index)
{
    return {axis.getFactor(), axis.getScaled(index), axis.getUnit(), axis.getDescription()};
}

/// The axes of a cut: those that become X and Y of the result, and the one that is cut at `index`.
struct Axes
{
    const Zt::LinearScale& x;
    const Zt::LinearScale& y;
    const Zt::LinearScale& cut;
    unsigned int index;
};

void setParts(const ImageVolumeVariant& volume, const Axes& axes, ImageVariant& image)
{
    image.SetScaleI(volume.GetScaleI());
    image.SetScaleX(axes.x);
    image.SetScaleY(axes.y);
    image.SetScaleZ(scaleOfCut(axes.cut, axes.index));
    image.SetAttributes(volume.GetAttributes());
}

/// `lineOf` gives the line of each z.
template <typename LineOf>
std::unique_ptr<ImageVariant> cut(const ImageVolumeVariant& volume, const Size& size, const Axes& axes,
                                  LineOf lineOf)
{
    return Private::visitImageType(volume.GetDataType(), [&](auto tag) -> std::unique_ptr<ImageVariant> {
        using T = typename decltype(tag)::type;
        auto image = std::make_unique<Image<T>>(size, false);
        setParts(volume, axes, *image);
        for (unsigned int z = 0; z < volume.GetDepth(); ++z) {
            const auto& plane = static_cast<const Image<T>&>(volume.getPlane(z));
            const Line line = lineOf(z);
            copyLine(plane.GetRawPointer(), image->GetRawPointer(), line);
            copyValidity(plane, image->GetMask(), line);
        }
        return image;
    });
}

} // namespace

std::unique_ptr<ImageVariant> ExtractXYImage(const ImageVolumeVariant& volume, unsigned int z)
{
    RTE::verifyIndex(z, volume.GetDepth(), "z plane index");
    std::unique_ptr<ImageVariant> image = volume.getPlane(z).CreateCopy();
    image->GetScaleZ().setOffset(volume.GetScaleZ().getScaled(z));
    return image;
}

std::unique_ptr<ImageVariant> ExtractXZImage(const ImageVolumeVariant& volume, unsigned int y)
{
    RTE::verifyIndex(y, volume.GetHeight(), "y plane index");
    const unsigned long long width = volume.GetWidth();
    return cut(volume, Size(volume.GetWidth(), volume.GetDepth()),
               {volume.GetScaleX(), volume.GetScaleZ(), volume.GetScaleY(), y}, [&](unsigned int z) {
                   return Line{width, y * width, 1, z * width, 1};
               });
}

std::unique_ptr<ImageVariant> ExtractYZImage(const ImageVolumeVariant& volume, unsigned int x)
{
    RTE::verifyIndex(x, volume.GetWidth(), "x plane index");
    const unsigned long long height = volume.GetHeight();
    return cut(volume, Size(volume.GetHeight(), volume.GetDepth()),
               {volume.GetScaleY(), volume.GetScaleZ(), volume.GetScaleX(), x}, [&](unsigned int z) {
                   return Line{height, x, volume.GetWidth(), z * height, 1};
               });
}

std::unique_ptr<ImageVariant> ExtractZYImage(const ImageVolumeVariant& volume, unsigned int x)
{
    RTE::verifyIndex(x, volume.GetWidth(), "x plane index");
    return cut(volume, Size(volume.GetDepth(), volume.GetHeight()),
               {volume.GetScaleZ(), volume.GetScaleY(), volume.GetScaleX(), x}, [&](unsigned int z) {
                   return Line{volume.GetHeight(), x, volume.GetWidth(), z, volume.GetDepth()};
               });
}

std::vector<double> getImageDataLine(const ImageDataVariant& data, unsigned int y)
{
    const auto rowAsNumbers = [&](auto tag) {
        using T = typename decltype(tag)::type;
        std::vector<double> row;
        if (y < data.GetHeight()) {
            const unsigned long long width = data.GetWidth();
            const T* const pixels = CastImageDataTo<T>(data).GetRawPointer();
            RTE::verify(pixels != nullptr || width == 0, "data-pointer is null");
            const T* const first = pixels + y * width;
            row.assign(first, first + width);
        }
        return row;
    };
    return Private::visitImageDataType(data.GetDataType(), rowAsNumbers);
}

} // namespace DataObjects
