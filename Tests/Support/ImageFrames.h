// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/BufferApi.h"
#include "Core/Buffer/FrameBuilder.h"

#include <memory>
#include <utility>
#include <vector>

namespace TestSupport
{

inline const std::string peakRatio = BufferApi::I_Frame::TYPED_SCALAR_PREFIX + "Peak ratio";
inline const std::string fieldHeight = BufferApi::I_Frame::TYPED_SCALAR_PREFIX + "Height";

/// A frame of 31 x 17 pixels with everything that an image can hold: noise that depends on the seed, a mask,
/// four scales, attributes that are text and list, and the typed scalars `peakRatio` of `float` and
/// `fieldHeight` of words.
[[nodiscard]] std::unique_ptr<BufferApi::I_FrameImage> imageFrame(BufferApi::E_DataType type,
                                                                  unsigned int depth, unsigned int seed = 1);

/// The frames of seeds 1, 2, and so on, with a name and an attribute of the buffer.
[[nodiscard]] std::unique_ptr<BufferApi::I_Buffer> imageBuffer(BufferApi::E_DataType type, unsigned int depth,
                                                               unsigned int frames);

[[nodiscard]] BufferApi::I_FrameImage& imageFrameOf(const BufferApi::I_Buffer& buffer, unsigned int frame);

void removeMask(BufferApi::I_Frame& frame);

/// The first byte of a plane; null when it has none or there is no such plane.
[[nodiscard]] void* memoryOf(const BufferApi::I_Frame& frame, const std::string& component, unsigned int z);
/// The same of the pixels.
[[nodiscard]] void* pixelsOf(const BufferApi::I_Frame& frame, unsigned int z);

/// A frame without a mask.
[[nodiscard]] std::unique_ptr<BufferApi::I_FrameImage>
newFrame(BufferApi::E_DataType type, unsigned int width, unsigned int height, unsigned int depth = 1);

/// What a function returns for its caller to free.
[[nodiscard]] inline std::unique_ptr<BufferApi::I_FrameImage> owned(BufferApi::I_FrameImage* frame)
{
    return std::unique_ptr<BufferApi::I_FrameImage>(frame);
}

/// The frame of its own, or that of a buffer that holds one.
[[nodiscard]] const BufferApi::I_FrameImage& onlyFrame(const std::unique_ptr<BufferApi::I_FrameImage>& frame);
[[nodiscard]] const BufferApi::I_FrameImage& onlyFrame(const std::unique_ptr<BufferApi::I_Buffer>& buffer);

/// A component of one plane.
[[nodiscard]] BufferApi::ComponentParts onePlane(const std::string& name, BufferApi::E_DataType type,
                                                 unsigned int width, unsigned int height);

/// A frame of one plane as out of a file: its components need not have its size.
template <typename... Components>
[[nodiscard]] std::unique_ptr<BufferApi::I_Frame> frameOfParts(BufferApi::FrameKind kind, unsigned int width,
                                                               unsigned int height, Components... components)
{
    std::vector<BufferApi::ComponentParts> parts;
    (parts.push_back(std::move(components)), ...);
    return BufferApi::buildFrame({kind, width, height, 1}, std::move(parts));
}

/// A buffer that takes these frames over.
template <typename... Frames>
[[nodiscard]] std::unique_ptr<BufferApi::I_Buffer> bufferOf(Frames*... frames)
{
    std::unique_ptr<BufferApi::I_Buffer> buffer(BufferApi::CreateBuffer());
    (buffer->AddFrame(frames), ...);
    return buffer;
}

} // namespace TestSupport
