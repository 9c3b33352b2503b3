// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/Export.h"
#include "Core/Common/PixelTypes.h"

namespace BufferApi
{

/// Element type of a plane; the numbers are those of `DataObjects::E_DataType`.
enum E_DataType : int
{
    DT_UNKNOWN = 0,
    DT_BYTE = PixelTypes::number<unsigned char>,
    DT_RGB = 2,
    DT_DOUBLE = PixelTypes::number<double>,
    DT_FLOAT = PixelTypes::number<float>,
    DT_INT32 = PixelTypes::number<int>,
    DT_UINT32 = PixelTypes::number<unsigned int>,
    DT_WORD = PixelTypes::number<unsigned short>
};

/// Packed colour, 8 bits a channel; the fourth byte carries nothing. Trivial, as every element is.
struct RgbQuad
{
    unsigned char blue;
    unsigned char green;
    unsigned char red;
    unsigned char reserved;

    friend constexpr bool operator==(const RgbQuad&, const RgbQuad&) = default;
};

/// The type of an element: one of the six, `RgbQuad`, or `DT_UNKNOWN`.
template <typename T>
[[nodiscard]] constexpr E_DataType GetDataType() noexcept
{
    return static_cast<E_DataType>(PixelTypes::number<T>);
}

template <>
[[nodiscard]] constexpr E_DataType GetDataType<RgbQuad>() noexcept
{
    return DT_RGB;
}

/// Bytes of one element; 0 for `DT_UNKNOWN`.
[[nodiscard]] DATAOBJECTS_BUFFER_EXPORT unsigned long long GetDataTypeSize(E_DataType type) noexcept;

} // namespace BufferApi
