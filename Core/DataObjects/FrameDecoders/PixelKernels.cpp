// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/FrameDecoders/PixelKernels.h"

#include "Core/DataObjects/CacheLines.h"

#include <array>
#include <cstdint>
#include <cstring>

// Vectors whose size is known at run time only cannot be members.
#define HWY_DISABLED_TARGETS (HWY_SVE | HWY_SVE2 | HWY_SVE_256 | HWY_SVE2_128 | HWY_RVV)
#define HWY_WANT_AVX3_DL
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "Core/DataObjects/FrameDecoders/PixelKernels.cpp"
#include <hwy/foreach_target.h>

#include <hwy/cache_control.h>
#include <hwy/highway.h>

#ifndef DATAOBJECTS_PIXEL_LAYOUTS
#define DATAOBJECTS_PIXEL_LAYOUTS
namespace DataObjects::FrameDecoder::Private
{

/// A pixel of a packed group is ((256 × high byte + low byte) × factor mod 2^16) >> (16 - bits); the bits of
/// `lowBits` come from the low byte as it stands.
struct PackedPixel
{
    std::uint8_t high;
    std::uint8_t low;
    std::uint16_t factor;
    std::uint16_t lowBits = 0;
};

/// A group of `bytes` bytes with its pixels of `bits` bits in row order.
template <std::size_t Pixels>
struct PackedLayout
{
    static constexpr std::size_t pixels = Pixels;
    int bits;
    std::size_t bytes;
    std::array<PackedPixel, Pixels> pixel;
};

inline constexpr PackedLayout<4> mono10p{10, 5, {{{1, 0, 64}, {2, 1, 16}, {3, 2, 4}, {4, 3, 1}}}};
inline constexpr PackedLayout<4> mono10pmsb{10, 5, {{{0, 1, 1}, {1, 2, 4}, {2, 3, 16}, {3, 4, 64}}}};
inline constexpr PackedLayout<2> mono12p{12, 3, {{{1, 0, 16}, {2, 1, 1}}}};
inline constexpr PackedLayout<2> mono12packed{12, 3, {{{0, 1, 1, 15}, {2, 1, 1}}}};
inline constexpr PackedLayout<2> mono12pmsb{12, 3, {{{0, 1, 1}, {1, 2, 16}}}};

/// Weights of the three bytes of a colour pixel, in the order in which their products are summed.
struct ColourWeight
{
    std::uint8_t byte;
    float factor;
};
inline constexpr std::array<ColourWeight, 3> colourWeights{{{1, 11.4F}, {0, 29.89F}, {2, 58.7F}}};

/// A float of this magnitude carries a byte in its lowest bits: 2^23 + byte has the bits 0x4B0000(byte).
inline constexpr float byteCarrier = 8388608.0F;

} // namespace DataObjects::FrameDecoder::Private
#endif

HWY_BEFORE_NAMESPACE();
namespace DataObjects::FrameDecoder::Private::HWY_NAMESPACE
{

namespace hn = hwy::HWY_NAMESPACE;

using D8 = hn::ScalableTag<std::uint8_t>;
using D16 = hn::ScalableTag<std::uint16_t>;
using D32 = hn::ScalableTag<std::uint32_t>;
constexpr std::size_t vectorBytes = HWY_MAX_BYTES;
constexpr std::size_t words = vectorBytes / sizeof(std::uint16_t);

// A kernel tells the bytes and pixels of its group and how to decode one group. Its call operator decodes a
// vector of words from the groups that begin at `source`, for which it reads `readBytes` bytes.

template <const auto& layout>
struct PackedGroup
{
    static constexpr std::size_t bytes = layout.bytes;
    static constexpr std::size_t pixels = layout.pixels;

    static void decodeGroup(const unsigned char* source, std::uint16_t* destination)
    {
        for (const PackedPixel& pixel : layout.pixel) {
            const unsigned int pair = source[pixel.high] * 256U + source[pixel.low];
            const unsigned int value = ((pair * pixel.factor) & 0xFFFFU) >> (16 - layout.bits);
            const unsigned int lowBits = pixel.lowBits;
            *destination++ = static_cast<std::uint16_t>((value & ~lowBits) | (pair & lowBits));
        }
    }
};

struct ByteGroup
{
    static constexpr std::size_t bytes = 1;
    static constexpr std::size_t pixels = 1;

    static void decodeGroup(const unsigned char* source, std::uint16_t* destination)
    {
        *destination = *source;
    }
};

struct ColourGroup
{
    static constexpr std::size_t bytes = 3;
    static constexpr std::size_t pixels = 1;

    static void decodeGroup(const unsigned char* source, std::uint16_t* destination)
    {
        std::array<float, 3> products;
        for (std::size_t i = 0; i < 3; ++i) {
            products[i] = static_cast<float>(source[colourWeights[i].byte]) * colourWeights[i].factor;
        }
        *destination = static_cast<std::uint16_t>((products[0] + products[1]) + products[2]);
    }
};

/// Source, destination and the step from one vector to the next.
template <typename Kernel>
struct Run
{
    static constexpr std::size_t stepGroups = words / Kernel::pixels;
    static constexpr std::size_t stepBytes = stepGroups * Kernel::bytes;

    const unsigned char* source;
    unsigned char* destination;
    std::size_t groups;

    void decodeGroups(std::size_t count)
    {
        for (std::size_t i = 0; i < count; ++i) {
            std::array<std::uint16_t, Kernel::pixels> pixels;
            Kernel::decodeGroup(source + i * Kernel::bytes, pixels.data());
            std::memcpy(destination + i * sizeof pixels, pixels.data(), sizeof pixels);
        }
        advance(count);
    }

    void advance(std::size_t count)
    {
        source += count * Kernel::bytes;
        destination += count * Kernel::pixels * sizeof(std::uint16_t);
        groups -= count;
    }

    /// Vectors that can be decoded without reading past the end of the source.
    std::size_t steps() const
    {
        const std::size_t sourceBytes = groups * Kernel::bytes;
        return sourceBytes < Kernel::readBytes ? 0 : (sourceBytes - Kernel::readBytes) / stepBytes + 1;
    }
};

#if HWY_TARGET == HWY_SCALAR

template <const auto& layout>
using PackedKernel = PackedGroup<layout>;
using ByteKernel = ByteGroup;
using ColourKernel = ColourGroup;

#else

/// Brings the double words around each run of `runBytes` bytes into a block of 16 bytes of their own.
template <std::size_t runBytes>
class BlockSpreader
{
public:
    BlockSpreader()
    {
        HWY_ALIGN std::array<std::int32_t, hn::MaxLanes(D32())> lanes;
        for (std::size_t i = 0; i < lanes.size(); ++i) {
            lanes[i] = static_cast<std::int32_t>(i / 4 * runBytes / 4 + i % 4);
        }
        m_lanes = hn::SetTableIndices(D32(), lanes.data());
    }

    /// Where the run of a block begins in it.
    static constexpr std::size_t offset(std::size_t block) { return block * runBytes % 4; }

    hn::Vec<D32> operator()(const unsigned char* source) const
    {
        const auto bytes = hn::BitCast(D32(), hn::LoadU(D8(), source));
        return vectorBytes == 16 ? bytes : hn::TableLookupLanes(bytes, m_lanes);
    }

private:
    decltype(hn::SetTableIndices(D32(), static_cast<const std::int32_t*>(nullptr))) m_lanes;
};

/// Eight pixels to a block: a byte shuffle makes their words, a product and a shift align them.
template <const auto& layout>
class PackedKernel : public PackedGroup<layout>
{
public:
    static constexpr std::size_t readBytes = vectorBytes;

    PackedKernel()
    {
        HWY_ALIGN std::array<std::uint8_t, vectorBytes> shuffle;
        HWY_ALIGN std::array<std::uint16_t, words> factor;
        HWY_ALIGN std::array<std::uint16_t, words> lowBits;
        for (std::size_t i = 0; i < words; ++i) {
            const std::size_t group = Spreader::offset(i / 8) + i % 8 / layout.pixels * layout.bytes;
            const PackedPixel pixel = layout.pixel[i % layout.pixels];
            shuffle[2 * i] = static_cast<std::uint8_t>(group + pixel.low);
            shuffle[2 * i + 1] = static_cast<std::uint8_t>(group + pixel.high);
            factor[i] = pixel.factor;
            lowBits[i] = pixel.lowBits;
        }
        m_shuffle = hn::Load(D8(), shuffle.data());
        m_factor = hn::Load(D16(), factor.data());
        m_lowBits = hn::Load(D16(), lowBits.data());
    }

    hn::Vec<D16> operator()(const unsigned char* source) const
    {
        const auto blocks = hn::BitCast(D8(), m_spread(source));
        const auto pairs = hn::BitCast(D16(), hn::TableLookupBytes(blocks, m_shuffle));
        const auto values = hn::ShiftRight<16 - layout.bits>(hn::Mul(pairs, m_factor));
        if constexpr (layout.pixel[0].lowBits != 0) {
            return hn::OrAnd(hn::AndNot(m_lowBits, values), m_lowBits, pairs);
        } else {
            return values;
        }
    }

private:
    using Spreader = BlockSpreader<8 / layout.pixels * layout.bytes>;
    Spreader m_spread;
    hn::Vec<D8> m_shuffle;
    hn::Vec<D16> m_factor;
    hn::Vec<D16> m_lowBits;
};

class ByteKernel : public ByteGroup
{
public:
    static constexpr std::size_t readBytes = words;

    hn::Vec<D16> operator()(const unsigned char* source) const
    {
        return hn::PromoteTo(D16(), hn::LoadU(hn::Rebind<std::uint8_t, D16>(), source));
    }
};

#if HWY_TARGET == HWY_AVX3_DL

/// Takes a colour's byte of each of 16 pixels into the lowest byte of a float of 2^23.
class ColourBytes
{
public:
    ColourBytes() : m_carrier(hn::BitCast(D8(), hn::Set(hn::ScalableTag<float>(), byteCarrier)))
    {
        HWY_ALIGN std::array<std::uint8_t, vectorBytes> place;
        for (std::size_t colour = 0; colour < 3; ++colour) {
            for (std::size_t i = 0; i < vectorBytes; ++i) {
                place[i] = static_cast<std::uint8_t>(i / 4 * 3 + colourWeights[colour].byte);
            }
            m_places[colour] = hn::Load(D8(), place.data());
        }
    }

    static hn::Vec<D8> load(const unsigned char* source)
    {
        auto pixels = hn::LoadU(D8(), source);
        asm(""
            : "+v"(pixels.raw)); // or else the compiler loads anew for each colour, mostly across two lines
        return pixels;
    }

    template <std::size_t colour>
    hn::Vec<D8> carried(hn::Vec<D8> pixels) const
    {
        constexpr __mmask64 lowestBytes = 0x1111'1111'1111'1111;
        return hn::Vec<D8>{
            _mm512_mask_permutexvar_epi8(m_carrier.raw, lowestBytes, m_places[colour].raw, pixels.raw)};
    }

private:
    hn::Vec<D8> m_carrier;
    hn::Vec<D8> m_places[3];
};

#else

/// Takes a colour's byte of each pixel into the lowest byte of a float of 2^23: four pixels to a block, whose
/// spare last double word is made byteCarrier, and a shuffle for each colour.
class ColourBytes
{
public:
    ColourBytes()
    {
        HWY_ALIGN std::array<std::uint8_t, vectorBytes> shuffle;
        for (std::size_t colour = 0; colour < 3; ++colour) {
            for (std::size_t i = 0; i < vectorBytes; ++i) {
                const std::size_t byte = i % 16 / 4 * 3 + colourWeights[colour].byte;
                shuffle[i] = static_cast<std::uint8_t>(i % 4 == 0 ? byte : 12 + i % 4);
            }
            m_shuffle[colour] = hn::Load(D8(), shuffle.data());
        }
        m_pixels = hn::Ne(hn::And(hn::Iota(D32(), 0), hn::Set(D32(), 3)), hn::Set(D32(), 3));
    }

    hn::Vec<D8> load(const unsigned char* source) const
    {
        const auto carrier = hn::BitCast(D32(), hn::Set(hn::ScalableTag<float>(), byteCarrier));
        return hn::BitCast(D8(), hn::IfThenElse(m_pixels, m_spread(source), carrier));
    }

    template <std::size_t colour>
    hn::Vec<D8> carried(hn::Vec<D8> blocks) const
    {
        return hn::TableLookupBytes(blocks, m_shuffle[colour]);
    }

private:
    BlockSpreader<12> m_spread;
    hn::Vec<D8> m_shuffle[3];
    hn::Mask<D32> m_pixels;
};

#endif

/// A colour's byte in a float of 2^23 + byte, then the products and sums as the rule rounds them.
class ColourKernel : public ColourGroup
{
    using DF = hn::ScalableTag<float>;
    using DI = hn::ScalableTag<std::int32_t>;
    using D64 = hn::ScalableTag<std::uint64_t>;
    using Order = decltype(hn::SetTableIndices(D64(), static_cast<const std::int64_t*>(nullptr)));
    static constexpr std::size_t halfBytes = words / 2 * bytes;

public:
    static constexpr std::size_t readBytes = halfBytes + vectorBytes;

    ColourKernel() : m_order(narrowingOrder()) {}

    hn::Vec<D16> operator()(const unsigned char* source) const
    {
        const auto pairs = narrowed(gray(source), gray(source + halfBytes));
        return hn::BitCast(D16(), hn::TableLookupLanes(hn::BitCast(D64(), pairs), m_order));
    }

private:
    static hn::Vec<hn::ScalableTag<std::int16_t>> narrowed(hn::Vec<DI> low, hn::Vec<DI> high)
    {
        return hn::ReorderDemote2To(hn::ScalableTag<std::int16_t>(), low, high);
    }

    /// Narrowing keeps four words together and orders the fours as suits the processor; this puts them right.
    static Order narrowingOrder()
    {
        HWY_ALIGN std::array<std::int16_t, words> place;
        const auto half = static_cast<std::int32_t>(words / 2);
        hn::Store(narrowed(hn::Iota(DI(), 0), hn::Iota(DI(), half)), hn::ScalableTag<std::int16_t>(),
                  place.data());
        HWY_ALIGN std::array<std::int64_t, words / 4> order;
        for (std::size_t i = 0; i < order.size(); ++i) {
            order[static_cast<std::size_t>(place[4 * i] / 4)] = static_cast<std::int64_t>(i);
        }
        return hn::SetTableIndices(D64(), order.data());
    }

    hn::Vec<DI> gray(const unsigned char* source) const
    {
        const auto pixels = m_bytes.load(source);
        return truncated(hn::Add(hn::Add(product<0>(pixels), product<1>(pixels)), product<2>(pixels)));
    }

    /// Byte × factor, rounded once.
    template <std::size_t colour>
    hn::Vec<DF> product(hn::Vec<D8> pixels) const
    {
        const float factor = colourWeights[colour].factor;
        const auto carried = hn::BitCast(DF(), m_bytes.carried<colour>(pixels));
#if HWY_NATIVE_FMA
        // 2^23 × factor is exact, so this rounds byte × factor alone.
        return hn::MulAdd(carried, hn::Set(DF(), factor), hn::Set(DF(), -byteCarrier * factor));
#else
        return hn::Mul(hn::Sub(carried, hn::Set(DF(), byteCarrier)), hn::Set(DF(), factor));
#endif
    }

    /// hn::ConvertTo spends more on mending values beyond int, which are not here, than on the conversion.
    static hn::Vec<DI> truncated(hn::Vec<DF> values)
    {
#if HWY_TARGET <= HWY_AVX3
        return hn::Vec<DI>{_mm512_cvttps_epi32(values.raw)};
#elif HWY_TARGET == HWY_AVX2
        return hn::Vec<DI>{_mm256_cvttps_epi32(values.raw)};
#else
        return hn::ConvertTo(DI(), values);
#endif
    }

    ColourBytes m_bytes;
    Order m_order;
};

/// Groups up to the first destination that is aligned to a vector; more than there are if none is.
template <typename Kernel>
std::size_t groupsToAlignment(const Run<Kernel>& run)
{
    const std::size_t groupBytes = Kernel::pixels * sizeof(std::uint16_t);
    const std::size_t missing = -reinterpret_cast<std::uintptr_t>(run.destination) % vectorBytes;
    return missing % groupBytes == 0 ? missing / groupBytes : run.groups + 1;
}

/// Asks for `bytes` at some distance ahead of their use; an address beyond the array does no harm.
inline void prefetch(const unsigned char* address, std::size_t bytes, std::size_t distance)
{
    const std::uintptr_t ahead = reinterpret_cast<std::uintptr_t>(address) + distance;
    for (std::size_t line = 0; line < bytes; line += 64) {
        hwy::Prefetch(reinterpret_cast<const unsigned char*>(ahead + line));
    }
}

template <bool streaming>
void store(hn::Vec<D8> vector, unsigned char* destination)
{
    if constexpr (streaming) {
        hn::Stream(vector, D8(), destination);
    } else {
        hn::StoreU(vector, D8(), destination);
    }
}

/// Decodes `strips` strips of `stripSteps` vectors that follow each other, `turn` vectors of each in turn.
template <bool streaming, std::size_t strips, std::size_t turn, typename Kernel>
void decodeStrips(Kernel kernel, Run<Kernel>& run, std::size_t stripSteps)
{
    constexpr std::size_t ahead = streaming ? 2048 : 1024;
    for (std::size_t i = 0; i < stripSteps; i += turn) {
        for (std::size_t strip = 0; strip < strips; ++strip) {
            const std::size_t step = strip * stripSteps + i;
            const unsigned char* const source = run.source + step * run.stepBytes;
            unsigned char* const destination = run.destination + step * vectorBytes;
            prefetch(source, turn * run.stepBytes, ahead);
            if (!streaming) {
                prefetch(destination, turn * vectorBytes, ahead);
            }
            for (std::size_t k = 0; k < turn; ++k) {
                const auto vector = hn::BitCast(D8(), kernel(source + k * run.stepBytes));
                store<streaming>(vector, destination + k * vectorBytes);
            }
        }
    }
    run.advance(strips * stripSteps * run.stepGroups);
}

/// Several strips at a time, because one run of addresses does not keep the memory busy. A strip is longer
/// than whole pages, or else the strips would meet in the same sets of the cache and banks of the memory.
template <bool streaming, typename Kernel>
void decodeVectors(const Kernel& kernel, Run<Kernel>& run)
{
    constexpr std::size_t strips = 6;
    constexpr std::size_t stripSteps = (64 + 1) * 1024 / vectorBytes;
    while (run.steps() >= strips * stripSteps) {
        decodeStrips<streaming, strips, 2>(kernel, run, stripSteps);
    }
    decodeStrips<streaming, 1, 1>(kernel, run, run.steps());
    if (streaming) {
        hwy::FlushStream();
    }
}

#endif

template <typename Kernel>
void unpackAll(const unsigned char* source, unsigned char* destination, std::size_t groups)
{
    Run<Kernel> run{source, destination, groups};
#if HWY_TARGET != HWY_SCALAR
    const std::size_t toAlignment = groupsToAlignment(run);
    const bool aligned = toAlignment <= groups;
    if (aligned) {
        run.decodeGroups(toAlignment);
    }
    const Kernel kernel;
    const std::size_t traffic = groups * (Kernel::bytes + Kernel::pixels * sizeof(std::uint16_t));
    if (aligned && DataObjects::Private::isWorthStreaming(traffic)) {
        decodeVectors<true>(kernel, run);
    } else {
        decodeVectors<false>(kernel, run);
    }
#endif
    run.decodeGroups(run.groups);
}

void unpackEncoding(Encoding encoding, const unsigned char* source, unsigned char* destination,
                    std::size_t groups)
{
    switch (encoding) {
    case Encoding::Mono10p:
        return unpackAll<PackedKernel<mono10p>>(source, destination, groups);
    case Encoding::Mono10pmsb:
        return unpackAll<PackedKernel<mono10pmsb>>(source, destination, groups);
    case Encoding::Mono12p:
        return unpackAll<PackedKernel<mono12p>>(source, destination, groups);
    case Encoding::Mono12packed:
        return unpackAll<PackedKernel<mono12packed>>(source, destination, groups);
    case Encoding::Mono12pmsb:
        return unpackAll<PackedKernel<mono12pmsb>>(source, destination, groups);
    case Encoding::Raw8:
        return unpackAll<ByteKernel>(source, destination, groups);
    case Encoding::Rgb24:
        return unpackAll<ColourKernel>(source, destination, groups);
    }
}

} // namespace DataObjects::FrameDecoder::Private::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace DataObjects::FrameDecoder::Private
{

HWY_EXPORT(unpackEncoding);

void unpack(Encoding encoding, const unsigned char* source, void* destination, std::size_t groups)
{
    HWY_DYNAMIC_DISPATCH(unpackEncoding)(encoding, source, static_cast<unsigned char*>(destination), groups);
}

} // namespace DataObjects::FrameDecoder::Private
#endif
