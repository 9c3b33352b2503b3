// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/FilesystemExport.h"

#include "Core/Buffer/BufferApi.h"
#include "Core/Buffer/KnownFormats.h"
#include "Core/DataObjects/FrameView.h"
#include "Core/DataObjects/ImageMoveToBuffer.h"
#include "Core/DataObjects/ImageToBuffer.h"
#include "Core/DataObjects/RecordingFrames.h"

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

/// Other formats would refuse masks, also those that tell nothing.
Private::MasksInFrame masksFor(const QString& preparedPath)
{
    const bool isNative = &BufferApi::formatOfName(preparedPath) == &BufferApi::knownFormats().front();
    return isNative ? Private::MasksInFrame::All : Private::MasksInFrame::IfInvalid;
}

/// The only frame of a file; ends before what it views.
void write(std::unique_ptr<BufferApi::I_Frame> frame, const QString& preparedPath)
{
    const std::unique_ptr<BufferApi::I_Buffer> buffer(BufferApi::CreateBuffer());
    buffer->AddFrame(frame.get());
    static_cast<void>(frame.release());
    write(*buffer, preparedPath);
}

} // namespace

void ExportImage(const ImageVariant& image, const QString& path)
{
    const QString prepared = preparedPath(path);
    write(Private::viewAsFrame(image, masksFor(prepared)), prepared);
}

void ExportImageBuffer(const ImageBufferVariant& recording, const QString& path)
{
    const QString prepared = preparedPath(path);
    write(Private::RecordingFrames(recording, masksFor(prepared)), prepared);
}

void ExportImageData(const ImageDataVariant& data, const QString& path)
{
    const QString prepared = preparedPath(path);
    write(*CreateBufferFromImageData(data), prepared);
}

void ExportImageVolume(const ImageVolumeVariant& volume, const QString& path)
{
    const QString prepared = preparedPath(path);
    write(Private::viewAsFrame(volume, masksFor(prepared)), prepared);
}

void ExportMask(const Mask& mask, const QString& path)
{
    RTE::verify(mask.GetRawPointer() != nullptr || mask.size() == 0, "data-pointer is null");
    ImageData<unsigned char> picture(mask.GetSize());
    const auto* const bytes = reinterpret_cast<const unsigned char*>(mask.GetRawPointer());
    std::transform(bytes, bytes + mask.size(), picture.begin(),
                   [](unsigned char valid) { return static_cast<unsigned char>(valid != 0 ? 255 : 0); });
    const QString prepared = preparedPath(path);
    write(*CreateBufferFromImageData(std::move(picture)), prepared);
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
