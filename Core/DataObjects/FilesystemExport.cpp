// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/FilesystemExport.h"

#include "Core/Buffer/ImportExport.h"
#include "Core/Buffer/KnownFormats.h"
#include "Core/DataObjects/ImageMoveToBuffer.h"
#include "Core/DataObjects/ImageToBuffer.h"
#include "Core/DataObjects/ImageVolumeToFrame.h"
#include "Core/DataObjects/RecordingFrames.h"
#include "Core/DataObjects/ScalarFieldAccess.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace DataObjects
{

namespace
{

/// With a suffix and in a folder that exists.
QString preparedPath(const QString& path)
{
    const QFileInfo info(path);
    RTE::verify(QDir().mkpath(info.absolutePath()), "Failed to create directory for export!");
    return info.completeSuffix().isEmpty() ? path + QStringLiteral(".qfi") : path;
}

void write(const BufferApi::I_Buffer& buffer, const QString& preparedPath)
{
    BufferApi::ExportBuffer(&buffer, preparedPath, {{"PackType", 2}});
}

/// Whether masks without an invalid pixel are written too: other formats would refuse them.
bool hasAllMasks(const QString& preparedPath)
{
    return &BufferApi::formatOfName(preparedPath) == &BufferApi::knownFormats().front();
}

} // namespace

void ExportImage(const ImageVariant& image, const QString& path)
{
    const QString prepared = preparedPath(path);
    write(*CreateBufferFromImage(image, hasAllMasks(prepared) || Private::hasInvalidPixels(image)), prepared);
}

void ExportImageBuffer(const ImageBufferVariant& recording, const QString& path)
{
    const QString prepared = preparedPath(path);
    write(Private::RecordingFrames(recording, hasAllMasks(prepared)), prepared);
}

void ExportImageData(const ImageDataVariant& data, const QString& path)
{
    write(*CreateBufferFromImageData(data), preparedPath(path));
}

void ExportImageVolume(const ImageVolumeVariant& volume, const QString& path)
{
    const QString prepared = preparedPath(path);
    write(*CreateBufferFromImageVolume(volume, hasAllMasks(prepared) || Private::hasInvalidPixels(volume)),
          prepared);
}

void ExportMask(const Mask& mask, const QString& path)
{
    RTE::verify(mask.GetRawPointer() != nullptr || mask.size() == 0, "data-pointer is null");
    ImageData<unsigned char> picture(mask.GetSize());
    const auto* const bytes = reinterpret_cast<const unsigned char*>(mask.GetRawPointer());
    std::transform(bytes, bytes + mask.size(), picture.begin(),
                   [](unsigned char valid) { return static_cast<unsigned char>(valid != 0 ? 255 : 0); });
    write(*CreateBufferFromImageData(std::move(picture)), preparedPath(path));
}

template <typename T>
void ExportScalarFieldT(const ScalarField<T>& field, const QString& path)
{
    Image<T> image(ImageData<T>(field.GetDataT()), Mask(field.GetSize(), true));
    image.SetScaleI(field.GetScaleI());
    ExportImage(image, path);
}

void ExportScalarField(const ScalarFieldVariant& field, const QString& path)
{
    PixelTypes::visit(
        static_cast<int>(field.GetDataType()),
        [&](auto tag) { ExportScalarFieldT(CastScalarFieldTo<typename decltype(tag)::type>(field), path); },
        [] { return RTE::Exception(QStringLiteral("Unsupported scalar field type")); });
}

#define DATAOBJECTS_INSTANTIATE(type, number, name)                                                          \
    template void ExportScalarFieldT(const ScalarField<type>&, const QString&);
DATAOBJECTS_PIXEL_TYPES(DATAOBJECTS_INSTANTIATE)
#undef DATAOBJECTS_INSTANTIATE

} // namespace DataObjects
