// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/DataType.h"
#include "Core/Buffer/Formats/TiffLibrary.h"
#include "Core/Common/PixelTypes.h"

#include <vector>

namespace BufferApi::Formats
{

enum class TiffColour
{
    Gray,
    /// The lowest value is white.
    InvertedGray,
    Palette,
    Rgb
};

/// How the pixels of a page are stored, and the type of the plane that holds them without loss.
struct TiffPage
{
    E_DataType type = DT_UNKNOWN;
    unsigned int width = 0;
    unsigned int height = 0;
    TiffColour colour = TiffColour::Gray;
    /// SAMPLEFORMAT_UINT, SAMPLEFORMAT_INT or SAMPLEFORMAT_IEEEFP.
    unsigned int format = SAMPLEFORMAT_UINT;
    unsigned int bits = 8;
    /// Per pixel, the opacity included.
    unsigned int samples = 1;
    /// The last sample is opacity.
    bool hasAlpha = false;
    /// Each sample has a plane of its own.
    bool isSeparate = false;
    bool isTiled = false;
    /// Of a tile, or of all strips but the last.
    unsigned int blockWidth = 0;
    unsigned int blockHeight = 0;
    /// ORIENTATION_TOPLEFT, or one that mirrors columns or rows.
    unsigned int orientation = ORIENTATION_TOPLEFT;
    /// By index, as many as `bits` can tell apart.
    std::vector<RgbQuad> palette;

    /// Samples of a pixel that stand side by side.
    [[nodiscard]] unsigned int samplesTogether() const noexcept { return isSeparate ? 1 : samples; }
    /// Planes of the file, one after the other.
    [[nodiscard]] unsigned int storedPlanes() const noexcept { return isSeparate ? samples : 1; }
    /// Each row begins at a byte.
    [[nodiscard]] unsigned long long storedRowBytes(unsigned int pixels) const noexcept
    {
        return (1ULL * pixels * samplesTogether() * bits + 7) / 8;
    }
    /// The file's bytes are the plane's.
    [[nodiscard]] bool isPlain() const noexcept
    {
        return colour == TiffColour::Gray && samples == 1 && bits == 8 * GetDataTypeSize(type);
    }
};

/// Reads and checks the page whose directory is open.
/// \throws RTE::FileReadError for what no plane can hold, and for sizes that the file cannot
[[nodiscard]] TiffPage readTiffPage(const TiffLibrary& library);

/// Calls the visitor with the PixelTypes::Tag of the C++ type that a sample of the page is widened to.
template <typename Visitor>
void visitStoredType(const TiffPage& page, Visitor&& visitor)
{
    using PixelTypes::Tag;
    if (page.format == SAMPLEFORMAT_IEEEFP) {
        page.bits == 32 ? visitor(Tag<float>{}) : visitor(Tag<double>{});
    } else if (page.format == SAMPLEFORMAT_INT) {
        page.bits == 8    ? visitor(Tag<signed char>{})
        : page.bits == 16 ? visitor(Tag<short>{})
                          : visitor(Tag<int>{});
    } else if (page.bits <= 8) {
        visitor(Tag<unsigned char>{});
    } else {
        page.bits <= 16 ? visitor(Tag<unsigned short>{}) : visitor(Tag<unsigned int>{});
    }
}

} // namespace BufferApi::Formats
