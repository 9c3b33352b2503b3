// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/TiffRows.h"

#include "Core/Buffer/ElementTypes.h"

#include <algorithm>

namespace BufferApi::Formats
{

namespace
{

/// The sample of this index in a row without gaps, the most significant bit first.
unsigned int packedSample(const unsigned char* row, unsigned long long index, unsigned int bits)
{
    const unsigned long long firstBit = index * bits;
    const unsigned long long lastByte = (firstBit + bits - 1) / 8;
    unsigned int value = 0;
    for (unsigned long long byte = firstBit / 8; byte <= lastByte; ++byte) {
        value = value << 8 | row[byte];
    }
    const auto behind = static_cast<unsigned int>((lastByte + 1) * 8 - firstBit - bits);
    return value >> behind & ((1U << bits) - 1);
}

/// Samples of a row, each widened to `T`.
template <typename T>
class Samples
{
public:
    Samples(const TiffPage& page, const unsigned char* stored, unsigned long long count)
        : m_samples(reinterpret_cast<const T*>(stored))
    {
        if constexpr (std::is_unsigned_v<T>) {
            if (page.bits != 8 * sizeof(T)) {
                m_unpacked.resize(count);
                for (unsigned long long i = 0; i < count; ++i) {
                    m_unpacked[i] = static_cast<T>(packedSample(stored, i, page.bits));
                }
                m_samples = m_unpacked.data();
            }
        }
    }

    [[nodiscard]] T operator[](unsigned long long index) const { return m_samples[index]; }

private:
    std::vector<T> m_unpacked;
    const T* m_samples;
};

/// The largest value of an unsigned sample.
template <typename T>
T largest(const TiffPage& page)
{
    return static_cast<T>(~0ULL >> (64 - page.bits));
}

template <typename T, typename Pixel>
void convertGrays(const TiffPage& page, const Samples<T>& samples, unsigned int count, Pixel* pixels)
{
    const unsigned long long step = page.samplesTogether();
    for (unsigned int x = 0; x < count; ++x) {
        pixels[x] = static_cast<Pixel>(samples[x * step]);
    }
    if (page.colour == TiffColour::InvertedGray) {
        const auto white = static_cast<Pixel>(largest<T>(page));
        std::for_each(pixels, pixels + count,
                      [white](Pixel& pixel) { pixel = static_cast<Pixel>(white - pixel); });
    }
}

void convertIndices(const TiffPage& page, const Samples<unsigned char>& samples, unsigned int count,
                    void* pixels)
{
    const unsigned long long step = page.samplesTogether();
    for (unsigned int x = 0; x < count; ++x) {
        const RgbQuad& colour = page.palette[samples[x * step]];
        if (page.type == DT_BYTE) {
            static_cast<unsigned char*>(pixels)[x] = colour.green;
        } else {
            static_cast<RgbQuad*>(pixels)[x] = colour;
        }
    }
}

void convertColours(const TiffPage& page, unsigned int sample, const unsigned char* samples,
                    unsigned int count, RgbQuad* pixels)
{
    static constexpr unsigned char RgbQuad::*channels[] = {&RgbQuad::red, &RgbQuad::green, &RgbQuad::blue};
    if (page.isSeparate) {
        for (unsigned int x = 0; x < count; ++x) {
            pixels[x].*channels[sample] = samples[x];
            pixels[x].reserved = 0;
        }
        return;
    }
    for (unsigned int x = 0; x < count; ++x, samples += page.samples) {
        pixels[x] = {samples[2], samples[1], samples[0], 0};
    }
}

template <typename T>
bool isOpaque(const TiffPage& page, const Samples<T>& samples, unsigned int count)
{
    const unsigned long long step = page.samplesTogether();
    for (unsigned int x = 0; x < count; ++x) {
        if (samples[x * step + step - 1] != largest<T>(page)) {
            return false;
        }
    }
    return true;
}

template <typename T>
void convertSamples(const TiffPage& page, unsigned int sample, const Samples<T>& samples,
                    const unsigned char* stored, unsigned int count, void* pixels)
{
    if (page.colour == TiffColour::Rgb) {
        convertColours(page, sample, stored, count, static_cast<RgbQuad*>(pixels));
    } else if (page.colour == TiffColour::Palette) {
        if constexpr (std::is_same_v<T, unsigned char>) {
            convertIndices(page, samples, count, pixels);
        }
    } else if constexpr (PixelTypes::number<T> != 0) {
        convertGrays(page, samples, count, static_cast<T*>(pixels));
    } else {
        convertGrays(page, samples, count, static_cast<int*>(pixels));
    }
}

template <typename T>
void mirror(const TiffPage& page, T* pixels)
{
    const unsigned long long width = page.width;
    const bool fromRight =
        page.orientation == ORIENTATION_TOPRIGHT || page.orientation == ORIENTATION_BOTRIGHT;
    const bool fromBottom =
        page.orientation == ORIENTATION_BOTRIGHT || page.orientation == ORIENTATION_BOTLEFT;
    for (unsigned long long y = 0; fromRight && y < page.height; ++y) {
        std::reverse(pixels + y * width, pixels + (y + 1) * width);
    }
    for (unsigned long long y = 0; fromBottom && y < page.height / 2; ++y) {
        std::swap_ranges(pixels + y * width, pixels + (y + 1) * width,
                         pixels + (page.height - 1 - y) * width);
    }
}

} // namespace

bool convertTiffRow(const TiffPage& page, unsigned int sample, const unsigned char* stored,
                    unsigned int count, void* pixels)
{
    bool opaque = true;
    visitStoredType(page, [&](auto tag) {
        using T = typename decltype(tag)::type;
        const Samples<T> samples(page, stored, 1ULL * count * page.samplesTogether());
        const bool isAlphaPlane = page.hasAlpha && page.isSeparate && sample + 1 == page.samples;
        if (!isAlphaPlane) {
            convertSamples(page, sample, samples, stored, count, pixels);
        }
        if constexpr (std::is_unsigned_v<T>) {
            opaque = !page.hasAlpha || (page.isSeparate && !isAlphaPlane) || isOpaque(page, samples, count);
        }
    });
    return opaque;
}

void orientTiffPixels(const TiffPage& page, void* pixels)
{
    if (page.orientation != ORIENTATION_TOPLEFT) {
        visitElement(page.type,
                     [&](auto tag) { mirror(page, static_cast<typename decltype(tag)::type*>(pixels)); });
    }
}

} // namespace BufferApi::Formats
