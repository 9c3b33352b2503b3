// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/ImageBufferFromBuffer.h"

#include "Core/DataObjects/FrameWriting.h"
#include "Core/DataObjects/ImageFrameAccess.h"
#include "Core/DataObjects/ImageVolumeFromFrame.h"
#include "Core/DataObjects/ImageVolumeToFrame.h"
#include "Core/DataObjects/VisitImageType.h"

#include <unordered_map>

namespace DataObjects
{

namespace
{

using BufferApi::I_Buffer;
using BufferApi::I_FrameImage;

/// A recording of what `getVolume` makes of each frame.
template <typename T, typename GetVolume>
ImageBuffer<T> recordingOf(const I_Buffer& buffer, std::unique_ptr<Attributes> globalAttributes,
                           GetVolume getVolume)
{
    std::vector<std::shared_ptr<ImageVolume<T>>> volumes;
    volumes.reserve(buffer.GetFrameCount());
    for (unsigned int index = 0; index < buffer.GetFrameCount(); ++index) {
        I_FrameImage& frame =
            Private::getImageFrame(buffer, index, "Frame of buffer is not from type image!");
        volumes.push_back(std::make_shared<ImageVolume<T>>(getVolume(frame)));
    }
    ImageBuffer<T> recording(std::move(volumes), std::move(globalAttributes));
    recording.SetName(buffer.GetName());
    return recording;
}

/// The recording in the first frame's type, by moving when `Buffer` is no reference.
template <typename Buffer>
std::unique_ptr<ImageBufferVariant> getVariant(Buffer&& buffer, bool requireMask)
{
    if (buffer.GetFrameCount() == 0) {
        RTE::raise(RTE::Exception(QStringLiteral("Given buffer has no frames")));
    }
    const auto get = [&](auto tag) -> std::unique_ptr<ImageBufferVariant> {
        using T = typename decltype(tag)::type;
        return std::make_unique<ImageBuffer<T>>(
            GetImageBufferT<T>(std::forward<Buffer>(buffer), requireMask));
    };
    return Private::visitFrameType(*buffer.GetFrame(0), get, "RGB ImageBuffer is not supported.",
                                   "Image volume list has unsupported data type");
}

QString nameOf(const ImageBufferVariant& recording)
{
    return Private::visitImageType(recording.GetDataType(), [&](auto tag) {
        return static_cast<const ImageBuffer<typename decltype(tag)::type>&>(recording).GetName();
    });
}

/// The last frame that has each of the planes: two frames may share one.
using LastFrames = std::unordered_map<const ImageDataVariant*, unsigned int>;

template <typename Visitor>
void visitPlanes(const ImageVolumeVariant& volume, Visitor visitor)
{
    for (unsigned int z = 0; z < volume.GetDepth(); ++z) {
        visitor(volume.getPlane(z).GetImageDataSPtr().get());
    }
}

LastFrames lastFramesOf(const ImageBufferVariant& recording)
{
    LastFrames last;
    for (unsigned int frame = 0; frame < recording.getFrameCount(); ++frame) {
        visitPlanes(recording.getFrame(frame), [&](const ImageDataVariant* plane) { last[plane] = frame; });
    }
    return last;
}

/// A new frame, by moving unless a later one shares its planes.
I_FrameImage* frameMoved(ImageBufferVariant& recording, unsigned int frame, const LastFrames& last,
                         bool withMask)
{
    ImageVolumeVariant& volume = recording.getFrame(frame);
    bool isLast = true;
    visitPlanes(volume, [&](const ImageDataVariant* plane) { isLast = isLast && last.at(plane) == frame; });
    return isLast ? CreateFrameFromImageVolume(std::move(volume), withMask)
                  : CreateFrameFromImageVolume(std::as_const(volume), withMask);
}

/// A buffer with the frame that `makeFrame` makes of each index.
template <typename MakeFrame>
std::unique_ptr<I_Buffer> bufferOf(const ImageBufferVariant& recording, MakeFrame makeFrame)
{
    std::unique_ptr<I_Buffer> buffer(BufferApi::CreateBuffer());
    buffer->SetName(nameOf(recording));
    for (unsigned int frame = 0; frame < recording.getFrameCount(); ++frame) {
        Private::addFrame(*buffer, Private::FramePointer(makeFrame(frame)));
    }
    BufferAttributes(*buffer).merge(recording.GetGlobalAttributes());
    return buffer;
}

} // namespace

template <typename T>
ImageBuffer<T> GetImageBufferT(I_Buffer& buffer, bool requireMask)
{
    return recordingOf<T>(buffer, std::make_unique<BufferAttributes>(buffer),
                          [&](I_FrameImage& frame) { return GetImageVolumeT<T>(frame, requireMask); });
}

template <typename T>
ImageBuffer<T> GetImageBufferT(I_Buffer&& buffer, bool requireMask)
{
    auto globalAttributes = std::make_unique<AttributesContainer>(BufferAttributes(buffer));
    return recordingOf<T>(buffer, std::move(globalAttributes), [&](I_FrameImage& frame) {
        return GetImageVolumeT<T>(std::move(frame), requireMask);
    });
}

template <typename T>
const ImageBuffer<T> GetImageBufferT(const I_Buffer& buffer)
{
    return GetImageBufferT<T>(const_cast<I_Buffer&>(buffer), false);
}

std::unique_ptr<ImageBufferVariant> GetImageBuffer(I_Buffer& buffer, bool requireMask)
{
    return getVariant(buffer, requireMask);
}

std::unique_ptr<ImageBufferVariant> GetImageBuffer(I_Buffer&& buffer, bool requireMask)
{
    return getVariant(std::move(buffer), requireMask);
}

std::unique_ptr<const ImageBufferVariant> GetImageBuffer(const I_Buffer& buffer)
{
    return getVariant(const_cast<I_Buffer&>(buffer), false);
}

std::unique_ptr<I_Buffer> CreateBufferFromImageBuffer(const ImageBufferVariant& recording, bool withMask)
{
    return bufferOf(recording, [&](unsigned int frame) {
        return CreateFrameFromImageVolume(recording.getFrame(frame), withMask);
    });
}

std::unique_ptr<I_Buffer> CreateBufferFromImageBuffer(ImageBufferVariant&& recording, bool withMask)
{
    const LastFrames last = lastFramesOf(recording);
    return bufferOf(recording,
                    [&](unsigned int frame) { return frameMoved(recording, frame, last, withMask); });
}

#define DATAOBJECTS_INSTANTIATE(type, number, name)                                                          \
    template ImageBuffer<type> GetImageBufferT(I_Buffer&, bool);                                             \
    template ImageBuffer<type> GetImageBufferT(I_Buffer&&, bool);                                            \
    template const ImageBuffer<type> GetImageBufferT(const I_Buffer&);
DATAOBJECTS_PIXEL_TYPES(DATAOBJECTS_INSTANTIATE)
#undef DATAOBJECTS_INSTANTIATE

} // namespace DataObjects
