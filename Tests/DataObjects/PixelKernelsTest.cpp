// SPDX-License-Identifier: Apache-2.0
#include "Core/Common/CacheSize.h"
#include "Core/DataObjects/FrameDecoders/Mono10p.h"
#include "Core/DataObjects/FrameDecoders/Mono10pmsb.h"
#include "Core/DataObjects/FrameDecoders/Mono12p.h"
#include "Core/DataObjects/FrameDecoders/Mono12packed.h"
#include "Core/DataObjects/FrameDecoders/Mono12pmsb.h"
#include "Core/DataObjects/FrameDecoders/Raw8.h"
#include "Core/DataObjects/FrameDecoders/Rgb24.h"
#include "Tests/Support/EachTarget.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <functional>
#include <random>

namespace
{

using namespace TestSupport;
using namespace DataObjects::FrameDecoder;

using Bytes = std::vector<unsigned char>;
using Words = std::vector<std::uint16_t>;

/// Value of pixel `index` in the bytes of a frame, told bit by bit.
using PixelReference = std::function<unsigned int(const unsigned char* bytes, std::size_t index)>;

PixelReference leastSignificantFirst(std::size_t bits)
{
    return [bits](const unsigned char* bytes, std::size_t index) {
        unsigned int value = 0;
        for (std::size_t i = 0; i < bits; ++i) {
            const std::size_t at = index * bits + i;
            value |= (bytes[at / 8] >> at % 8 & 1U) << i;
        }
        return value;
    };
}

PixelReference mostSignificantFirst(std::size_t bits)
{
    return [bits](const unsigned char* bytes, std::size_t index) {
        unsigned int value = 0;
        for (std::size_t i = 0; i < bits; ++i) {
            const std::size_t at = index * bits + i;
            value = 2 * value + (bytes[at / 8] >> (7 - at % 8) & 1U);
        }
        return value;
    };
}

unsigned int packedReference(const unsigned char* bytes, std::size_t index)
{
    const unsigned char* group = bytes + index / 2 * 3;
    return index % 2 == 0 ? group[0] * 16U + (group[1] & 15U) : group[2] * 16U + (group[1] >> 4U);
}

unsigned int colourReference(const unsigned char* bytes, std::size_t index)
{
    const unsigned char* pixel = bytes + 3 * index;
    const float middle = static_cast<float>(pixel[1]) * 11.4F;
    const float first = static_cast<float>(pixel[0]) * 29.89F;
    const float last = static_cast<float>(pixel[2]) * 58.7F;
    const float pair = middle + first;
    return static_cast<unsigned int>(pair + last);
}

struct Format
{
    std::shared_ptr<const I_FrameDecoder> decoder;
    std::size_t bytes;
    std::size_t pixels;
    /// The decoder asks for a destination of a multiple of this many pixels.
    std::size_t pixelMultiple;
    PixelReference reference;
};

std::vector<Format> formats()
{
    return {{std::make_shared<Mono10p>(), 5, 4, 4, leastSignificantFirst(10)},
            {std::make_shared<Mono10pmsb>(), 5, 4, 8, mostSignificantFirst(10)},
            {std::make_shared<Mono12p>(), 3, 2, 2, leastSignificantFirst(12)},
            {std::make_shared<Mono12packed>(), 3, 2, 2, packedReference},
            {std::make_shared<Mono12pmsb>(), 3, 2, 2, mostSignificantFirst(12)},
            {std::make_shared<Raw8>(), 1, 1, 1,
             [](const unsigned char* bytes, std::size_t index) -> unsigned int { return bytes[index]; }},
            {std::make_shared<Rgb24>(), 3, 1, 1, colourReference}};
}

Bytes randomBytes(std::size_t size)
{
    std::mt19937_64 random(size);
    Bytes bytes((size + 7) / 8 * 8);
    for (std::size_t i = 0; i < bytes.size(); i += 8) {
        const std::uint64_t value = random();
        std::memcpy(bytes.data() + i, &value, sizeof value);
    }
    bytes.resize(size);
    return bytes;
}

Words expectedWords(const Format& format, const Bytes& source)
{
    Words words(source.size() / format.bytes * format.pixels);
    for (std::size_t i = 0; i < words.size(); ++i) {
        words[i] = static_cast<std::uint16_t>(format.reference(source.data(), i));
    }
    return words;
}

void decode(const Format& format, const unsigned char* source, std::size_t size, void* destination,
            std::size_t capacity)
{
    format.decoder->decode({source, size}, RTE::UnmanagedMemory(destination, capacity));
}

TEST(PixelKernels, AllSizesAtOddAddressesKeepToTheirArrays)
{
    const Bytes random = randomBytes(201 * 5);
    for (const Format& format : formats()) {
        SCOPED_TRACE(format.decoder->id().toStdString());
        const std::size_t wholeGroups = format.pixelMultiple / format.pixels;
        const bool measuresSource = dynamic_cast<const Mono12packed*>(format.decoder.get()) != nullptr;
        for (std::size_t groups = measuresSource ? 1 : 0; groups <= 200; groups += wholeGroups) {
            const Bytes source(random.begin(),
                               random.begin() + static_cast<std::ptrdiff_t>(groups * format.bytes));
            const Words expected = expectedWords(format, source);
            for (const std::size_t offset : {0U, 1U, 2U, 24U}) {
                // Arrays of the exact size, so that a sanitizer sees a step beyond them.
                const std::size_t capacity = expected.size() * 2;
                const std::unique_ptr<unsigned char[]> from(new unsigned char[offset + source.size()]);
                const std::unique_ptr<unsigned char[]> to(new unsigned char[offset + capacity]);
                std::copy(source.begin(), source.end(), from.get() + offset);
                onEachTarget([&] {
                    std::fill_n(to.get(), offset + capacity, static_cast<unsigned char>(0xEE));
                    decode(format, from.get() + offset, source.size(), to.get() + offset, capacity);
                    const auto* expectedBytes = reinterpret_cast<const unsigned char*>(expected.data());
                    EXPECT_TRUE(std::equal(expectedBytes, expectedBytes + capacity, to.get() + offset))
                        << groups << " groups at offset " << offset;
                    EXPECT_TRUE(
                        std::all_of(to.get(), to.get() + offset, [](auto byte) { return byte == 0xEE; }));
                });
            }
        }
    }
}

/// Larger frames are decoded several strips at a time; beyond the last-level cache they are written past it.
TEST(PixelKernels, FramesOfManyStripsAndBeyondTheCache)
{
    for (const Format& format : formats()) {
        SCOPED_TRACE(format.decoder->id().toStdString());
        const std::size_t groupTraffic = format.bytes + 2 * format.pixels;
        for (const std::size_t traffic : {std::size_t{3U << 20U}, std::size_t{RTE::lastLevelCacheBytes()}}) {
            const std::size_t groups = (traffic / groupTraffic / 64 + 1) * 64 + 48;
            const Bytes source = randomBytes(groups * format.bytes);
            const Words expected = expectedWords(format, source);
            Words words(expected.size());
            onEachTarget([&] {
                std::fill(words.begin(), words.end(), std::uint16_t{0xEEEE});
                decode(format, source.data(), source.size(), words.data(), words.size() * 2);
                EXPECT_TRUE(words == expected) << groups << " groups";
            });
        }
    }
}

TEST(PixelKernels, EveryColourRoundsStepByStep)
{
    Bytes source;
    source.reserve(3U << 16U);
    Words words(1U << 16U);
    for (unsigned int first = 0; first < 256; ++first) {
        source.clear();
        for (unsigned int rest = 0; rest < 1U << 16U; ++rest) {
            source.insert(source.end(),
                          {static_cast<unsigned char>(first), static_cast<unsigned char>(rest >> 8U),
                           static_cast<unsigned char>(rest)});
        }
        const Format format{std::make_shared<Rgb24>(), 3, 1, 1, colourReference};
        const Words expected = expectedWords(format, source);
        onEachTarget([&] {
            decode(format, source.data(), source.size(), words.data(), words.size() * 2);
            EXPECT_TRUE(words == expected) << "first byte " << first;
        });
    }
}

} // namespace
