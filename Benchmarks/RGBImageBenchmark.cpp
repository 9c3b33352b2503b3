// SPDX-License-Identifier: Apache-2.0
// Passes over colour images beside memcpy of the same bytes: it copies half of what a pass reads and writes,
// so that both move as much. What makes an image copies a mask, too: one byte more is read and written.
#include "Benchmarks/Race.h"
#include "Core/Common/Array.h"
#include "Core/Common/AttributeNames.h"
#include "Core/DataObjects/RGBImageBuffer.h"
#include "Core/DataObjects/RGBImageFromBuffer.h"
#include "Core/DataObjects/RGBImageToImage.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstring>
#include <memory>

namespace
{

using Benchmarks::race;
using DataObjects::Image;
using DataObjects::Rgb16;
using DataObjects::RGBImage;

unsigned int side(const benchmark::State& state)
{
    return static_cast<unsigned int>(state.range(0));
}

RGBImage randomImage(const benchmark::State& state, unsigned int bits)
{
    RGBImage image(side(state), side(state), Rgb16(), true);
    std::mt19937 generator(1);
    const auto next = [&] { return static_cast<unsigned short>(generator() >> (32 - bits)); };
    for (Rgb16& pixel : image) {
        pixel = Rgb16(next(), next(), next());
    }
    return image;
}

/// Copies into an array that is there, or into a new one, as the pass does that it is raced with.
class Copy
{
public:
    Copy(const benchmark::State& state, std::size_t bytesPerPixel, bool isNew)
        : m_bytes(static_cast<std::size_t>(state.range(0)) * side(state) * bytesPerPixel / 2),
          m_source(new char[m_bytes]()), m_target(isNew ? nullptr : new char[m_bytes]())
    {
    }

    void operator()() const
    {
        char* const target = m_target ? m_target.get() : RTE::newArray<char>(m_bytes);
        std::memcpy(target, m_source.get(), m_bytes);
        benchmark::DoNotOptimize(target);
        if (!m_target) {
            RTE::deleteArray(target, m_bytes);
        }
    }

private:
    std::size_t m_bytes;
    std::shared_ptr<char[]> m_source;
    std::shared_ptr<char[]> m_target;
};

void raceCopy(benchmark::State& state, const std::function<void()>& pass, std::size_t bytesPerPixel,
              bool isNew)
{
    race(state, pass, {{isNew ? "new array and memcpy" : "memcpy", Copy(state, bytesPerPixel, isNew)}},
         bytesPerPixel);
}

/// All values of `bits` bits are spread over 16 bits.
void applyColorRange(benchmark::State& state, unsigned int bits)
{
    const RGBImage original = randomImage(state, bits);
    RGBImage image(original);
    image.SetBitDepth(16);
    const double maximum = std::exp2(bits) - 1;
    image.ApplyColorRange(0, maximum);
    for (unsigned long long i = 0; i < image.size(); ++i) {
        if (image[i].green != static_cast<unsigned short>(65535 * (original[i].green / maximum))) {
            state.SkipWithError("wrong result");
            return;
        }
    }
    // The values have to stay as random as they are.
    image = original;
    image.SetBitDepth(static_cast<unsigned short>(bits));
    raceCopy(
        state, [&] { image.ApplyColorRange(0, maximum); }, 12, false);
}

void applyColorRange12(benchmark::State& state)
{
    applyColorRange(state, 12);
}

void applyColorRange16(benchmark::State& state)
{
    applyColorRange(state, 16);
}

void intensityImage(benchmark::State& state)
{
    const RGBImage image = randomImage(state, 12);
    if (!Benchmarks::isRight(state, image.IntensityImage(), [&](auto i) { return image[i].Intensity(); })) {
        return;
    }
    raceCopy(
        state, [&] { benchmark::DoNotOptimize(image.IntensityImage().GetRawPointer()); }, 6 + 4 + 2, true);
}

void redImage(benchmark::State& state)
{
    const RGBImage image = randomImage(state, 12);
    if (!Benchmarks::isRight(state, image.RedImage(), [&](auto i) { return image[i].red; })) {
        return;
    }
    raceCopy(
        state, [&] { benchmark::DoNotOptimize(image.RedImage().GetRawPointer()); }, 6 + 2 + 2, true);
}

void demosaic(benchmark::State& state)
{
    Image<unsigned short> mosaic(side(state), side(state), true);
    Benchmarks::randomize(mosaic, 1);
    mosaic.GetAttributes().set(Attr::rgbFrame, 1);
    const auto* const pixels = mosaic.GetRawPointer();
    const auto image = std::make_unique<RGBImage>(DataObjects::createRGBImageFromImage(mosaic));
    for (unsigned int x = 2; x + 1 < side(state); x += 2) {
        const auto green = (mosaic(x, 1) + mosaic(x, 3) + mosaic(x - 1, 2) + mosaic(x + 1, 2)) >> 2;
        const auto blue = (mosaic(x - 1, 1) + mosaic(x - 1, 3) + mosaic(x + 1, 1) + mosaic(x + 1, 3)) >> 2;
        if ((*image)(x, 2) != Rgb16(pixels[2 * side(state) + x], static_cast<unsigned short>(green),
                                    static_cast<unsigned short>(blue))) {
            state.SkipWithError("wrong result");
            return;
        }
    }
    raceCopy(
        state,
        [&] { benchmark::DoNotOptimize(DataObjects::createRGBImageFromImage(mosaic).GetRawPointer()); },
        2 + 6 + 2, true);
}

void remosaic(benchmark::State& state)
{
    const RGBImage image = randomImage(state, 10);
    const auto mosaic = DataObjects::createBayerPatternImageFromRGBImage(image, 1);
    int sum = 0;
    for (unsigned int i = 0; i < 9; ++i) {
        sum += image(1 + i % 3, 1 + i / 3).red;
    }
    if (mosaic(2, 2) != static_cast<unsigned short>(sum)) {
        state.SkipWithError("wrong result");
        return;
    }
    raceCopy(
        state,
        [&] {
            benchmark::DoNotOptimize(
                DataObjects::createBayerPatternImageFromRGBImage(image, 1).GetRawPointer());
        },
        6 + 2 + 2, true);
}

void addValue(benchmark::State& state)
{
    RGBImage image = randomImage(state, 12);
    const RGBImage original(image);
    image += Rgb16(1, 2, 3);
    if (image(1, 1) != original(1, 1) + Rgb16(1, 2, 3)) {
        state.SkipWithError("wrong result");
        return;
    }
    raceCopy(
        state, [&] { image += Rgb16(1, 2, 3); }, 12, false);
}

void copy(benchmark::State& state)
{
    const RGBImage image = randomImage(state, 12);
    const auto copied = image.CreateCopy();
    if (!std::equal(image.begin(), image.end(), copied->begin())) {
        state.SkipWithError("wrong result");
        return;
    }
    raceCopy(
        state, [&] { benchmark::DoNotOptimize(RGBImage(image).GetRawPointer()); }, 12 + 2, true);
}

void sides(benchmark::internal::Benchmark* benchmark)
{
    benchmark->Arg(64)->Arg(256)->Arg(1024)->Arg(2048)->UseManualTime()->Iterations(21);
}

BENCHMARK(applyColorRange12)->Apply(sides);
BENCHMARK(applyColorRange16)->Apply(sides);
BENCHMARK(intensityImage)->Apply(sides);
BENCHMARK(redImage)->Apply(sides);
BENCHMARK(demosaic)->Apply(sides);
BENCHMARK(remosaic)->Apply(sides);
BENCHMARK(addValue)->Apply(sides);
BENCHMARK(copy)->Apply(sides);

} // namespace
