// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/FilesystemImport.h"

#include "Core/Buffer/ImportExport.h"
#include "Core/DataObjects/Attributes.h"
#include "Core/DataObjects/ImageBufferFromBuffer.h"
#include "Core/DataObjects/ImageDataFromBuffer.h"
#include "Core/DataObjects/ImageFromBuffer.h"
#include "Core/DataObjects/ImageParts.h"
#include "Core/DataObjects/ImageVolumeFromFrame.h"
#include "Core/DataObjects/InstantMask.h"
#include "Core/DataObjects/LazyMask.h"
#include "Core/DataObjects/VisitImageType.h"

namespace DataObjects
{

namespace
{

// The objects are made by moving everywhere: views would end with the buffer.
std::unique_ptr<BufferApi::I_Buffer> readFile(const QString& path)
{
    return std::unique_ptr<BufferApi::I_Buffer>(BufferApi::ImportBuffer(path, {}));
}

/// A mask that nobody asked for stays so.
std::unique_ptr<MaskStrategy> takeMask(ImageVariant& image)
{
    if (image.IsMaskSpawned()) {
        return std::make_unique<InstantMask>(std::move(image.GetMask()));
    }
    return std::make_unique<LazyMask>(image.GetWidth(), image.GetHeight(), true);
}

template <typename T>
Image<T> converted(ImageVariant&& source)
{
    Private::verifyImageType(source.GetDataType());
    Image<T> image(CreateImageDataOfType<T>(source.GetImageData(), true), takeMask(source));
    Private::assignScales(source, image);
    image.SetAttributes(source.GetAttributes());
    image.GetScalarFields().MoveFrom(std::move(source.GetScalarFields()));
    return image;
}

} // namespace

std::unique_ptr<ImageVariant> ImportImage(const QString& path, unsigned int frame, unsigned int z)
{
    return GetImage(std::move(*readFile(path)), frame, z, false);
}

std::unique_ptr<ImageBufferVariant> ImportImageBuffer(const QString& path)
{
    return GetImageBuffer(std::move(*readFile(path)), false);
}

std::unique_ptr<ImageDataVariant> ImportImageData(const QString& path, unsigned int frame, unsigned int z)
{
    return GetImageData(std::move(*readFile(path)), frame, z);
}

std::unique_ptr<ImageVolumeVariant> ImportImageVolume(const QString& path, unsigned int frame)
{
    return GetImageVolume(std::move(*readFile(path)), frame, false);
}

std::vector<std::unique_ptr<ImageVariant>> ImportImages(const QString& path)
{
    const auto buffer = readFile(path);
    std::vector<std::unique_ptr<ImageVariant>> images;
    images.reserve(buffer->GetFrameCount());
    for (unsigned int frame = 0; frame < buffer->GetFrameCount(); ++frame) {
        images.push_back(GetImage(std::move(*buffer), frame, 0, false));
    }
    return images;
}

template <typename T>
Image<T> ImportImageT(const QString& path, unsigned int frame, unsigned int z)
{
    const auto image = ImportImage(path, frame, z);
    if (auto* const typed = dynamic_cast<Image<T>*>(image.get())) {
        return std::move(*typed);
    }
    return converted<T>(std::move(*image));
}

template <typename T>
ImageBuffer<T> ImportImageBufferT(const QString& path)
{
    const auto recording = ImportImageBuffer(path);
    if (auto* const typed = dynamic_cast<ImageBuffer<T>*>(recording.get())) {
        return std::move(*typed);
    }
    const auto result = ImageBuffer<T>::CreateEmptyImageBuffer();
    result->Assign(*recording);
    return std::move(*result);
}

template <typename T>
ImageData<T> ImportImageDataT(const QString& path, unsigned int frame, unsigned int z)
{
    const auto data = ImportImageData(path, frame, z);
    if (auto* const typed = dynamic_cast<ImageData<T>*>(data.get())) {
        return std::move(*typed);
    }
    return CreateImageDataOfType<T>(*data, true);
}

template <typename T>
ImageVolume<T> ImportImageVolumeT(const QString& path, unsigned int frame)
{
    const auto volume = ImportImageVolume(path, frame);
    if (auto* const typed = dynamic_cast<ImageVolume<T>*>(volume.get())) {
        return std::move(*typed);
    }
    std::vector<Image<T>> planes;
    planes.reserve(volume->GetDepth());
    for (unsigned int z = 0; z < volume->GetDepth(); ++z) {
        planes.push_back(converted<T>(std::move(volume->getPlane(z))));
    }
    return ImageVolume<T>(std::move(planes));
}

#define DATAOBJECTS_INSTANTIATE(type, number, name)                                                          \
    template Image<type> ImportImageT(const QString&, unsigned int, unsigned int);                           \
    template ImageBuffer<type> ImportImageBufferT(const QString&);                                           \
    template ImageData<type> ImportImageDataT(const QString&, unsigned int, unsigned int);                   \
    template ImageVolume<type> ImportImageVolumeT(const QString&, unsigned int);
DATAOBJECTS_PIXEL_TYPES(DATAOBJECTS_INSTANTIATE)
#undef DATAOBJECTS_INSTANTIATE

} // namespace DataObjects
