// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/FrameWriting.h"

#include "Core/DataObjects/MaskFromBuffer.h"

namespace DataObjects::Private
{

FramePointer verifiedFrame(BufferApi::I_FrameImage* frame, RTE::SourceLocation location)
{
    RTE::verify(frame != nullptr, "Invalid data type for image frame.", location);
    return FramePointer(frame);
}

void copyMask(const ImageVariant& image, const BufferApi::I_Frame& frame, unsigned int z)
{
    Mask mask = GetMask(frame, z);
    if (image.IsMaskSpawned()) {
        mask = image.GetMask();
    } else {
        mask.Fill(true);
    }
}

void addMasks(const std::vector<const ImageVariant*>& images, BufferApi::I_Frame& frame)
{
    frame.AddMask({});
    for (unsigned int z = 0; z < images.size(); ++z) {
        if (images[z]->IsMaskSpawned()) {
            copyMask(*images[z], frame, z);
        }
    }
}

void moveMasks(const std::vector<ImageVariant*>& images, BufferApi::I_Frame& frame)
{
    const auto isMade = [](const ImageVariant* image) { return image->IsMaskSpawned(); };
    std::vector<Mask*> masks;
    if (std::any_of(images.begin(), images.end(), isMade)) {
        for (ImageVariant* image : images) {
            masks.push_back(&image->GetMask());
        }
    }
    MovingArrays<bool> arrays = releaseArrays<bool>(masks, {frame.GetWidth(), frame.GetHeight()});
    if (arrays.empty()) {
        addMasks({images.begin(), images.end()}, frame);
    } else {
        handOver(arrays, [&](const std::vector<void*>& pointers) { frame.AddMask(pointers); });
    }
}

void addFrame(BufferApi::I_Buffer& buffer, FramePointer frame)
{
    buffer.AddFrame(frame.get());
    static_cast<void>(frame.release());
}

std::unique_ptr<BufferApi::I_Buffer> bufferOf(FramePointer frame)
{
    std::unique_ptr<BufferApi::I_Buffer> buffer(BufferApi::CreateBuffer());
    addFrame(*buffer, std::move(frame));
    return buffer;
}

} // namespace DataObjects::Private
