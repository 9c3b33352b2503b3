// SPDX-License-Identifier: Apache-2.0
/// \file
/// Passes over rows of colour pixels, tuned to this processor. They allocate nothing but what is said, and
/// take any alignment that words allow.
#pragma once

#include "Core/Buffer/DataType.h"
#include "Core/DataObjects/Rgb16.h"

#include <cstddef>

namespace DataObjects::Private
{

/// A row of pixels, which may be null, is a row of words, red first.
inline const unsigned short* wordsOf(const Rgb16* pixels) noexcept
{
    return reinterpret_cast<const unsigned short*>(pixels);
}
inline unsigned short* wordsOf(Rgb16* pixels) noexcept
{
    return reinterpret_cast<unsigned short*>(pixels);
}

/// The place of a component in a pixel.
enum class Channel
{
    Red = 0,
    Green = 1,
    Blue = 2
};

/// One component of each pixel.
void takeChannel(const Rgb16* pixels, std::size_t count, Channel channel, unsigned short* taken);
void splitChannels(const Rgb16* pixels, std::size_t count, unsigned short* red, unsigned short* green,
                   unsigned short* blue);
void joinChannels(const unsigned short* red, const unsigned short* green, const unsigned short* blue,
                  std::size_t count, Rgb16* pixels);

/// Rgb16::Intensity() of each pixel.
void intensities(const Rgb16* pixels, std::size_t count, float* values);
/// The largest component of all pixels, 0 for none.
[[nodiscard]] unsigned short maxComponent(const Rgb16* pixels, std::size_t count);

/// \name Saturating arithmetic in place; `others` may be `pixels`
/// \{
void addPixels(Rgb16* pixels, std::size_t count, const Rgb16* others);
void subtractPixels(Rgb16* pixels, std::size_t count, const Rgb16* others);
void addValue(Rgb16* pixels, std::size_t count, Rgb16 value);
void subtractValue(Rgb16* pixels, std::size_t count, Rgb16 value);
/// \}

/// \name Packed colour, 8 bits a channel
/// \{
void fromQuads(const BufferApi::RgbQuad* quads, std::size_t count, Rgb16* pixels);
/// Shifts components right and clamps them to 255; the fourth byte is 0.
void toQuads(const Rgb16* pixels, std::size_t count, unsigned int shift, BufferApi::RgbQuad* quads);
/// \}

/// Three neighbouring rows of a mosaic, each with one pixel more at both ends: pixel x is element x + 1.
struct MosaicRows
{
    const unsigned short* above;
    const unsigned short* row;
    const unsigned short* below;
};

/// A row of a mosaic has the sites of one colour, red or blue, between sites of green.
struct MosaicSites
{
    Channel colour;      ///< red or blue
    unsigned int parity; ///< of x, where its sites are
};

/// The colours of a row: components that a site does not have are the truncated means of its neighbours that
/// have them.
void demosaicRow(const MosaicRows& rows, std::size_t width, const MosaicSites& sites, Rgb16* pixels);

/// For a row of an image that is larger than the cache.
void copyPastCache(const Rgb16* source, std::size_t count, Rgb16* target);

} // namespace DataObjects::Private
