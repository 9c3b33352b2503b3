// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/I_Buffer.h"
#include "Core/DataObjects/Attributes.h"
#include "Core/DataObjects/Export.h"

namespace DataObjects
{

class ImageBufferVariant;
class ImageVariant;

/// \file
/// The two colour forms of frames: mosaics, which are plain images with the attribute `RGBFrame`, and frames
/// of packed colour. None of these functions raises for content that it does not know.

/// \name Colour filter mosaics
/// True when the attribute `RGBFrame` is there and its value as a number is at least 1. Texts and lists that
/// are no number count as 0.
/// \{
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT bool isBayerPatternImage(const Attributes& attributes);
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT bool isBayerPatternImage(const BufferApi::I_Frame& frame);
/// False when there is no such frame.
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT bool isBayerPatternImage(const BufferApi::I_Buffer& buffer,
                                                                      unsigned int frame);
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT bool isBayerPatternImage(const ImageVariant& image);
/// Of any frame.
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT bool hasBayerPatternImage(const BufferApi::I_Buffer& buffer);
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT bool hasBayerPatternImage(const ImageBufferVariant& buffer);
/// \}

/// True for a frame of packed colour.
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT bool isRGBFrame(const BufferApi::I_Frame& frame);
/// True when the first frame is one of packed colour; false without frames.
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT bool isRGBBuffer(const BufferApi::I_Buffer& buffer);

} // namespace DataObjects
