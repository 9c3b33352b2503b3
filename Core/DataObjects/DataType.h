// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/DataType.h"

namespace DataObjects
{

/// Pixel type of the raster family; the numbers are those of `BufferApi::E_DataType`.
enum class E_DataType
{
    UnsignedChar = PixelTypes::number<unsigned char>,
    Double = PixelTypes::number<double>,
    Float = PixelTypes::number<float>,
    Int = PixelTypes::number<int>,
    UnsignedInt = PixelTypes::number<unsigned int>,
    UnsignedShort = PixelTypes::number<unsigned short>
};

/// The one place where the two enumerations meet.
[[nodiscard]] constexpr BufferApi::E_DataType toBufferDataType(E_DataType type) noexcept
{
    return static_cast<BufferApi::E_DataType>(type);
}

} // namespace DataObjects
