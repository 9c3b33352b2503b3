// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/TiffEncoder.h"

#include "Core/Buffer/ElementTypes.h"
#include "Core/Buffer/Formats/ByteShuffle.h"

#include <bit>

namespace BufferApi::Formats
{

namespace
{

constexpr unsigned int channels = 3;

} // namespace

unsigned long long tiffRowBytes(E_DataType type, unsigned int width) noexcept
{
    return width * (type == DT_RGB ? channels : GetDataTypeSize(type));
}

std::span<const unsigned char> TiffEncoder::encode(E_DataType type, const unsigned char* rows,
                                                   unsigned int width, unsigned int height)
{
    const unsigned long long rowBytes = tiffRowBytes(type, width);
    if (!m_isPacked && type != DT_RGB) {
        return {rows, rowBytes * height};
    }
    unsigned char* stored = m_rows.reserve(rowBytes * height);
    visitElement(type, [&](auto tag) {
        const auto* pixels = reinterpret_cast<const typename decltype(tag)::type*>(rows);
        for (unsigned long long y = 0; y < height; ++y) {
            predictRow(pixels + y * width, width, stored + y * rowBytes);
        }
    });
    const std::span<const unsigned char> plain(stored, rowBytes * height);
    return m_isPacked ? m_deflater.pack(plain) : plain;
}

template <typename T>
void TiffEncoder::predictRow(const T* row, unsigned int width, unsigned char* destination)
{
    if constexpr (std::is_same_v<T, RgbQuad>) {
        predictColours(row, width, destination);
    } else if constexpr (std::is_floating_point_v<T>) {
        predictFloats(row, width, destination);
    } else {
        // Differences wrap around, as those of unsigned numbers do.
        using Difference = std::make_unsigned_t<T>;
        auto* differences = reinterpret_cast<Difference*>(destination);
        differences[0] = static_cast<Difference>(row[0]);
        for (unsigned int x = 1; x < width; ++x) {
            differences[x] = static_cast<Difference>(static_cast<Difference>(row[x]) -
                                                     static_cast<Difference>(row[x - 1]));
        }
    }
}

void TiffEncoder::predictColours(const RgbQuad* row, unsigned int width, unsigned char* destination) const
{
    RgbQuad left{};
    for (unsigned int x = 0; x < width; ++x, destination += channels) {
        destination[0] = static_cast<unsigned char>(row[x].red - left.red);
        destination[1] = static_cast<unsigned char>(row[x].green - left.green);
        destination[2] = static_cast<unsigned char>(row[x].blue - left.blue);
        if (m_isPacked) {
            left = row[x];
        }
    }
}

/// All most significant bytes of the row first, then the next ones, and of these bytes the differences; see
/// https://chriscox.org/TIFFTN3d1.pdf
template <typename T>
void TiffEncoder::predictFloats(const T* row, unsigned int width, unsigned char* destination)
{
    constexpr unsigned int bytes = sizeof(T);
    unsigned char* planes = m_bytePlanes.reserve(1ULL * width * bytes);
    shuffleBytes(row, width, bytes, planes, width);
    unsigned char left = 0;
    for (unsigned int i = 0; i < bytes; ++i, destination += width) {
        const unsigned int significance = std::endian::native == std::endian::little ? bytes - 1 - i : i;
        const unsigned char* plane = planes + 1ULL * significance * width;
        destination[0] = static_cast<unsigned char>(plane[0] - left);
        for (unsigned int x = 1; x < width; ++x) {
            destination[x] = static_cast<unsigned char>(plane[x] - plane[x - 1]);
        }
        left = plane[width - 1];
    }
}

} // namespace BufferApi::Formats
