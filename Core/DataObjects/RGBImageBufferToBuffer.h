// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/I_Buffer.h"
#include "Core/DataObjects/RGBImageBuffer.h"

namespace DataObjects
{

/// \file
/// Colour images into the frame store, with name and attributes, scales and scalar fields, and with a mask
/// where a pixel is invalid. The frame store has two colour forms, and both lose something:
///
/// - Packed colour (createRGB32BufferFromRGBImageBuffer) is the one to take for a picture: every program that
///   reads the file shows the right colours. It keeps 8 bits a channel, so an image of 8 bits comes back as
///   it was.
/// - A mosaic (createBufferFromRGBImageBuffer) is for what works on mosaics: it holds one word for each
/// pixel,
///   in which shares of neighbouring pixels are summed up, and a colour image read from it is another one.
///
/// To keep 16 bits a channel, store RGBImageBuffer::redImage() and its kin, which join again without loss.

/// Frames of `DT_WORD`, which are mosaics as createBayerPatternBufferFromRGBImageBuffer makes them.
/// \param pattern the code of the phase: 1, 257, 513 or 769
/// \throws RTE::VerificationFailed "Invalid RGBFrame attribute: " and the number for another code, "Image to
///         small. Needs to be at least 2x2"
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<BufferApi::I_Buffer>
createBufferFromRGBImageBuffer(const RGBImageBuffer& buffer, int pattern = 1);

/// Frames of `DT_RGB`, whose fourth byte is 0.
///
/// Of each component the 8 most significant of the bit depth's bits remain: value / 2^(depth - 8), truncated,
/// where the depth is the largest GetBitDepth() of all frames, so that frames stay comparable; what lies
/// beyond the depth becomes 255. (RGBImage::GetPixelAsRGBQUAD() is no help for more than 8 bits: the low
/// bytes that it takes are noise without the high ones.) The I scale is stretched by the same power of two,
/// so that intensities stay right, and the attribute Attr::cameraMaxIntensity is divided by it, and at most
/// 255.
/// \throws what RGBImage::GetBitDepth() does
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<BufferApi::I_Buffer>
createRGB32BufferFromRGBImageBuffer(const RGBImageBuffer& buffer);

} // namespace DataObjects
