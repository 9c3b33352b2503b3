// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/I_Buffer.h"
#include "Core/DataObjects/ImageData.h"

namespace DataObjects
{

/// A caller's colour picture: width × height pixels, rows one after the other. The fourth byte of a pixel is
/// not read.
struct RGBField
{
    unsigned int width = 0;
    unsigned int height = 0;
    const BufferApi::RgbQuad* pixels = nullptr; ///< the caller's
};

/// Gray values: with `sum` blue + green + red, at most 765; else (587 green + 299 red + 114 blue) / 4,
/// truncated, at most 63750.
/// \throws RTE::VerificationFailed "Source image is empty" when width, height or pixels are 0
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT ImageData<unsigned short>
CreateImageDataWordFromRGBField(const RGBField& field, bool sum);
/// The same as the only frame of a buffer.
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<BufferApi::I_Buffer>
CreateWordBufferFromRGBField(const RGBField& field, bool sum);
/// A frame of packed colour, of which the fourth byte is 0, as the only frame of a buffer; raises as the
/// others do.
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<BufferApi::I_Buffer>
CreateRGBBufferFromRGBField(const RGBField& field);

} // namespace DataObjects
