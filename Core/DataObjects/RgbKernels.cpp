// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/RgbKernels.h"

#include "Core/DataObjects/CacheLines.h"

#include <algorithm>
#include <array>
#include <cstdint>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "Core/DataObjects/RgbKernels.cpp"
#include <hwy/foreach_target.h>

#include <hwy/cache_control.h>
#include <hwy/highway.h>

#ifndef DATAOBJECTS_RGB_KERNELS
#define DATAOBJECTS_RGB_KERNELS
namespace DataObjects::Private
{

/// A truncated mean.
inline unsigned short meanOf(int a, int b)
{
    return static_cast<unsigned short>((a + b) >> 1);
}

inline unsigned short meanOf(int a, int b, int c, int d)
{
    return static_cast<unsigned short>((a + b + c + d) >> 2);
}

/// Pixel x of a mosaic; the plain form of what demosaicRow does.
inline Rgb16 demosaicPixel(const MosaicRows& rows, std::size_t x, const MosaicSites& sites)
{
    const unsigned short* const above = rows.above + x;
    const unsigned short* const row = rows.row + x;
    const unsigned short* const below = rows.below + x;
    const bool isSite = x % 2 == sites.parity;
    const unsigned short own = isSite ? row[1] : meanOf(row[0], row[2]);
    const unsigned short green = isSite ? meanOf(above[1], below[1], row[0], row[2]) : row[1];
    const unsigned short other =
        isSite ? meanOf(above[0], above[2], below[0], below[2]) : meanOf(above[1], below[1]);
    return sites.colour == Channel::Red ? Rgb16(own, green, other) : Rgb16(other, green, own);
}

} // namespace DataObjects::Private
#endif

HWY_BEFORE_NAMESPACE();
namespace DataObjects::Private::HWY_NAMESPACE
{

namespace hn = hwy::HWY_NAMESPACE;

using Words = hn::ScalableTag<std::uint16_t>;
using Vector = hn::Vec<Words>;

void takeOneChannel(const Rgb16* pixels, std::size_t count, Channel channel, unsigned short* taken)
{
    const Words d;
    std::size_t i = 0;
    for (; i + hn::Lanes(d) <= count; i += hn::Lanes(d)) {
        prefetchAhead(wordsOf(pixels + i), 3 * hn::Lanes(d));
        Vector red;
        Vector green;
        Vector blue;
        hn::LoadInterleaved3(d, wordsOf(pixels + i), red, green, blue);
        hn::StoreU(channel == Channel::Red ? red : channel == Channel::Green ? green : blue, d, taken + i);
    }
    for (; i < count; ++i) {
        taken[i] = wordsOf(pixels + i)[static_cast<int>(channel)];
    }
}

void splitAllChannels(const Rgb16* pixels, std::size_t count, unsigned short* red, unsigned short* green,
                      unsigned short* blue)
{
    const Words d;
    std::size_t i = 0;
    for (; i + hn::Lanes(d) <= count; i += hn::Lanes(d)) {
        Vector reds;
        Vector greens;
        Vector blues;
        hn::LoadInterleaved3(d, wordsOf(pixels + i), reds, greens, blues);
        hn::StoreU(reds, d, red + i);
        hn::StoreU(greens, d, green + i);
        hn::StoreU(blues, d, blue + i);
    }
    for (; i < count; ++i) {
        red[i] = pixels[i].red;
        green[i] = pixels[i].green;
        blue[i] = pixels[i].blue;
    }
}

void joinAllChannels(const unsigned short* red, const unsigned short* green, const unsigned short* blue,
                     std::size_t count, Rgb16* pixels)
{
    const Words d;
    std::size_t i = 0;
    for (; i + hn::Lanes(d) <= count; i += hn::Lanes(d)) {
        hn::StoreInterleaved3(hn::LoadU(d, red + i), hn::LoadU(d, green + i), hn::LoadU(d, blue + i), d,
                              wordsOf(pixels + i));
    }
    for (; i < count; ++i) {
        pixels[i] = Rgb16(red[i], green[i], blue[i]);
    }
}

#if HWY_TARGET != HWY_SCALAR
/// From `i` on, as far as whole vectors go; how far that is.
template <bool streams>
std::size_t intensityVectors(const Rgb16* pixels, std::size_t i, std::size_t count, float* values)
{
    const Words d;
    const hn::Half<Words> dHalf;
    const hn::RepartitionToWide<Words> dWide;
    const hn::RebindToSigned<decltype(dWide)> dInt;
    const hn::RebindToFloat<decltype(dWide)> dFloat;
    const auto store = [&](auto red, auto green, auto blue, float* to) {
        const auto sum = hn::Add(hn::Add(hn::PromoteTo(dWide, red), hn::PromoteTo(dWide, green)),
                                 hn::PromoteTo(dWide, blue));
        const auto mean = hn::Div(hn::ConvertTo(dFloat, hn::BitCast(dInt, sum)), hn::Set(dFloat, 3.0F));
        if constexpr (streams) {
            hn::Stream(mean, dFloat, to);
        } else {
            hn::StoreU(mean, dFloat, to);
        }
    };
    for (; i + hn::Lanes(d) <= count; i += hn::Lanes(d)) {
        prefetchAhead(wordsOf(pixels + i), 3 * hn::Lanes(d));
        Vector red;
        Vector green;
        Vector blue;
        hn::LoadInterleaved3(d, wordsOf(pixels + i), red, green, blue);
        store(hn::LowerHalf(dHalf, red), hn::LowerHalf(dHalf, green), hn::LowerHalf(dHalf, blue), values + i);
        store(hn::UpperHalf(dHalf, red), hn::UpperHalf(dHalf, green), hn::UpperHalf(dHalf, blue),
              values + i + hn::Lanes(dFloat));
    }
    return i;
}
#endif

void eachIntensity(const Rgb16* pixels, std::size_t from, std::size_t to, float* values)
{
    for (std::size_t i = from; i < to; ++i) {
        values[i] = pixels[i].Intensity();
    }
}

void allIntensities(const Rgb16* pixels, std::size_t count, float* values)
{
    std::size_t done = pixelsBeforeLine(values, count);
    eachIntensity(pixels, 0, done, values);
#if HWY_TARGET != HWY_SCALAR
    if (isWorthStreaming(count * (sizeof(Rgb16) + sizeof(float)))) {
        done = intensityVectors<true>(pixels, done, count, values);
        hwy::FlushStream();
    } else {
        done = intensityVectors<false>(pixels, done, count, values);
    }
#endif
    eachIntensity(pixels, done, count, values);
}

unsigned short maxWord(const unsigned short* words, std::size_t count)
{
    unsigned short result = 0;
    for (std::size_t i = 0; i < count; ++i) {
        result = std::max(result, words[i]);
    }
    return result;
}

void addWords(unsigned short* words, std::size_t count, const unsigned short* others)
{
    const Words d;
    std::size_t i = 0;
    for (; i + hn::Lanes(d) <= count; i += hn::Lanes(d)) {
        hn::StoreU(hn::SaturatedAdd(hn::LoadU(d, words + i), hn::LoadU(d, others + i)), d, words + i);
    }
    for (; i < count; ++i) {
        words[i] = static_cast<unsigned short>(std::min(words[i] + others[i], 0xFFFF));
    }
}

void subtractWords(unsigned short* words, std::size_t count, const unsigned short* others)
{
    const Words d;
    std::size_t i = 0;
    for (; i + hn::Lanes(d) <= count; i += hn::Lanes(d)) {
        hn::StoreU(hn::SaturatedSub(hn::LoadU(d, words + i), hn::LoadU(d, others + i)), d, words + i);
    }
    for (; i < count; ++i) {
        words[i] = static_cast<unsigned short>(std::max(words[i] - others[i], 0));
    }
}

void unpackQuads(const BufferApi::RgbQuad* quads, std::size_t count, Rgb16* pixels)
{
    for (std::size_t i = 0; i < count; ++i) {
        pixels[i] = Rgb16(quads[i].red, quads[i].green, quads[i].blue);
    }
}

void packQuads(const Rgb16* pixels, std::size_t count, unsigned int shift, BufferApi::RgbQuad* quads)
{
    const auto byte = [shift](unsigned int component) {
        return static_cast<unsigned char>(std::min(component >> shift, 0xFFU));
    };
    for (std::size_t i = 0; i < count; ++i) {
        quads[i] = {byte(pixels[i].blue), byte(pixels[i].green), byte(pixels[i].red), 0};
    }
}

#if HWY_TARGET != HWY_SCALAR
/// The truncated mean of two words, and in its lowest bit what was cut off.
struct Mean
{
    Mean(Vector a, Vector b) : rest(hn::Xor(a, b))
    {
        value = hn::Sub(hn::AverageRound(a, b), hn::And(rest, hn::Set(Words(), 1)));
    }

    Vector value;
    Vector rest;
};

/// The truncated mean of four: that of both means, plus 1 when only all that was cut off makes up for it.
Vector meanOfMeans(const Mean& a, const Mean& b)
{
    const Mean mean(a.value, b.value);
    const auto allCutOff = hn::And(hn::And(a.rest, b.rest), mean.rest);
    return hn::Add(mean.value, hn::And(allCutOff, hn::Set(Words(), 1)));
}

/// How many pixels were done.
template <Channel colour, unsigned int parity>
std::size_t demosaicVectors(const MosaicRows& rows, std::size_t width, Rgb16* pixels)
{
    const Words d;
    const auto select = [](Vector atSites, Vector between) {
        return parity == 0 ? hn::OddEven(between, atSites) : hn::OddEven(atSites, between);
    };
    std::size_t x = 0;
    for (; x + hn::Lanes(d) <= width; x += hn::Lanes(d)) {
        const auto pixel = hn::LoadU(d, rows.row + x + 1);
        const Mean horizontal(hn::LoadU(d, rows.row + x), hn::LoadU(d, rows.row + x + 2));
        const Mean vertical(hn::LoadU(d, rows.above + x + 1), hn::LoadU(d, rows.below + x + 1));
        const Mean above(hn::LoadU(d, rows.above + x), hn::LoadU(d, rows.above + x + 2));
        const Mean below(hn::LoadU(d, rows.below + x), hn::LoadU(d, rows.below + x + 2));
        const auto own = select(pixel, horizontal.value);
        const auto green = select(meanOfMeans(horizontal, vertical), pixel);
        const auto other = select(meanOfMeans(above, below), vertical.value);
        if constexpr (colour == Channel::Red) {
            hn::StoreInterleaved3(own, green, other, d, wordsOf(pixels + x));
        } else {
            hn::StoreInterleaved3(other, green, own, d, wordsOf(pixels + x));
        }
    }
    return x;
}
#endif

void demosaicOneRow(const MosaicRows& rows, std::size_t width, const MosaicSites& sites, Rgb16* pixels)
{
    std::size_t x = 0;
#if HWY_TARGET != HWY_SCALAR
    const bool isEven = sites.parity == 0;
    if (sites.colour == Channel::Red) {
        x = isEven ? demosaicVectors<Channel::Red, 0>(rows, width, pixels)
                   : demosaicVectors<Channel::Red, 1>(rows, width, pixels);
    } else {
        x = isEven ? demosaicVectors<Channel::Blue, 0>(rows, width, pixels)
                   : demosaicVectors<Channel::Blue, 1>(rows, width, pixels);
    }
#endif
    for (; x < width; ++x) {
        pixels[x] = demosaicPixel(rows, x, sites);
    }
}

void streamWords(const unsigned short* source, std::size_t count, unsigned short* target)
{
    const Words d;
    std::size_t i = pixelsBeforeLine(target, count);
    std::copy_n(source, i, target);
    for (; i + hn::Lanes(d) <= count; i += hn::Lanes(d)) {
        hn::Stream(hn::LoadU(d, source + i), d, target + i);
    }
    hwy::FlushStream();
    std::copy(source + i, source + count, target + i);
}

} // namespace DataObjects::Private::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace DataObjects::Private
{

namespace
{

HWY_EXPORT(takeOneChannel);
HWY_EXPORT(splitAllChannels);
HWY_EXPORT(joinAllChannels);
HWY_EXPORT(allIntensities);
HWY_EXPORT(maxWord);
HWY_EXPORT(addWords);
HWY_EXPORT(subtractWords);
HWY_EXPORT(unpackQuads);
HWY_EXPORT(packQuads);
HWY_EXPORT(demosaicOneRow);
HWY_EXPORT(streamWords);

constexpr std::size_t components = 3;

/// Runs an element-wise pass with the same value for each pixel, in steps that stay in the cache.
template <typename Pass>
void withValue(Rgb16* pixels, std::size_t count, Rgb16 value, Pass pass)
{
    std::array<Rgb16, 512> values;
    values.fill(value);
    for (std::size_t done = 0; done < count; done += values.size()) {
        pass(pixels + done, std::min(values.size(), count - done), values.data());
    }
}

} // namespace

void takeChannel(const Rgb16* pixels, std::size_t count, Channel channel, unsigned short* taken)
{
    HWY_DYNAMIC_DISPATCH(takeOneChannel)(pixels, count, channel, taken);
}

void splitChannels(const Rgb16* pixels, std::size_t count, unsigned short* red, unsigned short* green,
                   unsigned short* blue)
{
    HWY_DYNAMIC_DISPATCH(splitAllChannels)(pixels, count, red, green, blue);
}

void joinChannels(const unsigned short* red, const unsigned short* green, const unsigned short* blue,
                  std::size_t count, Rgb16* pixels)
{
    HWY_DYNAMIC_DISPATCH(joinAllChannels)(red, green, blue, count, pixels);
}

void intensities(const Rgb16* pixels, std::size_t count, float* values)
{
    HWY_DYNAMIC_DISPATCH(allIntensities)(pixels, count, values);
}

unsigned short maxComponent(const Rgb16* pixels, std::size_t count)
{
    return HWY_DYNAMIC_DISPATCH(maxWord)(wordsOf(pixels), components * count);
}

void addPixels(Rgb16* pixels, std::size_t count, const Rgb16* others)
{
    HWY_DYNAMIC_DISPATCH(addWords)(wordsOf(pixels), components * count, wordsOf(others));
}

void subtractPixels(Rgb16* pixels, std::size_t count, const Rgb16* others)
{
    HWY_DYNAMIC_DISPATCH(subtractWords)(wordsOf(pixels), components * count, wordsOf(others));
}

void addValue(Rgb16* pixels, std::size_t count, Rgb16 value)
{
    withValue(pixels, count, value, addPixels);
}

void subtractValue(Rgb16* pixels, std::size_t count, Rgb16 value)
{
    withValue(pixels, count, value, subtractPixels);
}

void fromQuads(const BufferApi::RgbQuad* quads, std::size_t count, Rgb16* pixels)
{
    HWY_DYNAMIC_DISPATCH(unpackQuads)(quads, count, pixels);
}

void toQuads(const Rgb16* pixels, std::size_t count, unsigned int shift, BufferApi::RgbQuad* quads)
{
    HWY_DYNAMIC_DISPATCH(packQuads)(pixels, count, shift, quads);
}

void demosaicRow(const MosaicRows& rows, std::size_t width, const MosaicSites& sites, Rgb16* pixels)
{
    HWY_DYNAMIC_DISPATCH(demosaicOneRow)(rows, width, sites, pixels);
}

void copyPastCache(const Rgb16* source, std::size_t count, Rgb16* target)
{
    HWY_DYNAMIC_DISPATCH(streamWords)(wordsOf(source), components * count, wordsOf(target));
}

} // namespace DataObjects::Private
#endif
