// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/DataType.h"
#include "Core/Buffer/Formats/Deflate.h"

#include <span>

namespace BufferApi::Formats
{

/// Turns rows of pixels into the bytes of a strip: as they are, colours as red, green and blue, or packed
/// with deflate behind the predictor of the type, horizontal for integers and floating-point for floats.
class TiffEncoder
{
public:
    explicit TiffEncoder(bool isPacked) : m_isPacked(isPacked) {}

    [[nodiscard]] bool isPacked() const noexcept { return m_isPacked; }
    /// \returns the bytes to store, valid until the next call or as long as the rows
    [[nodiscard]] std::span<const unsigned char> encode(E_DataType type, const unsigned char* rows,
                                                        unsigned int width, unsigned int height);

private:
    template <typename T>
    void predictRow(const T* row, unsigned int width, unsigned char* destination);
    void predictColours(const RgbQuad* row, unsigned int width, unsigned char* destination) const;
    template <typename T>
    void predictFloats(const T* row, unsigned int width, unsigned char* destination);

    bool m_isPacked;
    Scratch m_rows;
    Scratch m_bytePlanes;
    Deflater m_deflater;
};

/// Bytes of a row in the file before it is packed.
[[nodiscard]] unsigned long long tiffRowBytes(E_DataType type, unsigned int width) noexcept;

} // namespace BufferApi::Formats
