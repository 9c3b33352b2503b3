// SPDX-License-Identifier: Apache-2.0
// Access to the pixels of images beside raw arrays, copies beside memcpy, cuts through a volume beside a pass
// over the same cache lines, the assignment of a recording beside the conversion of its pixels, and the
// attributes of many frames.
#include "Benchmarks/Race.h"
#include "Core/Common/Array.h"
#include "Core/DataObjects/ImageBuffer.h"
#include "Core/DataObjects/ImageExtraction.h"
#include "Core/DataObjects/LazyMask.h"

#include <benchmark/benchmark.h>

#include <cstring>

namespace
{

using Benchmarks::isRight;
using Benchmarks::race;
using DataObjects::Image;
using DataObjects::ImageBuffer;
using DataObjects::ImageVolume;

unsigned int side(const benchmark::State& state)
{
    return static_cast<unsigned int>(state.range(0));
}

template <typename T>
Image<T> randomImage(const benchmark::State& state)
{
    Image<T> image(side(state), side(state), true);
    Benchmarks::randomize(image, 1);
    return image;
}

/// What a pixel loop does: an integer operation that fits one instruction.
template <typename T>
T changed(T pixel)
{
    return static_cast<T>(pixel + T{3});
}

template <typename T>
[[gnu::noinline]] void changeRaw(T* pixels, unsigned int width, unsigned int height)
{
    for (unsigned int y = 0; y < height; ++y) {
        for (unsigned int x = 0; x < width; ++x) {
            T& pixel = pixels[static_cast<std::size_t>(y) * width + x];
            pixel = changed(pixel);
        }
    }
}

/// Has the same language rules against it as an image: bytes may alias the vector itself.
template <typename T>
[[gnu::noinline]] void changeVector(std::vector<T>& pixels, unsigned int width, unsigned int height)
{
    for (unsigned int y = 0; y < height; ++y) {
        for (unsigned int x = 0; x < width; ++x) {
            T& pixel = pixels[static_cast<std::size_t>(y) * width + x];
            pixel = changed(pixel);
        }
    }
}

/// The least that an object with pixels can be.
template <typename T>
struct Plane
{
    T* pixels;
    unsigned int width;
    unsigned int height;
};

template <typename T>
[[gnu::noinline]] void changePlane(Plane<T>& plane)
{
    for (unsigned int y = 0; y < plane.height; ++y) {
        for (unsigned int x = 0; x < plane.width; ++x) {
            T& pixel = plane.pixels[static_cast<std::size_t>(y) * plane.width + x];
            pixel = changed(pixel);
        }
    }
}

template <typename T>
[[gnu::noinline]] void changeByRange(Image<T>& image)
{
    for (T& pixel : image) {
        pixel = changed(pixel);
    }
}

template <typename T>
[[gnu::noinline]] void changeByPointer(Image<T>& image)
{
    changeRaw(image.GetRawPointer(), image.GetWidth(), image.GetHeight());
}

template <typename T>
[[gnu::noinline]] void changeByOperator(Image<T>& image)
{
    const unsigned int width = image.GetWidth();
    const unsigned int height = image.GetHeight();
    for (unsigned int y = 0; y < height; ++y) {
        for (unsigned int x = 0; x < width; ++x) {
            image(x, y) = changed(image(x, y));
        }
    }
}

template <typename T>
[[gnu::noinline]] void changeByGetPixel(Image<T>& image)
{
    const unsigned int width = image.GetWidth();
    const unsigned int height = image.GetHeight();
    for (unsigned int y = 0; y < height; ++y) {
        for (unsigned int x = 0; x < width; ++x) {
            image.SetPixel(x, y, changed(image.GetPixel(x, y)));
        }
    }
}

template <typename T>
[[gnu::noinline]] unsigned int sumRaw(const T* pixels, unsigned int width, unsigned int height)
{
    unsigned int sum = 0;
    for (unsigned int y = 0; y < height; ++y) {
        for (unsigned int x = 0; x < width; ++x) {
            sum += static_cast<unsigned int>(pixels[static_cast<std::size_t>(y) * width + x]);
        }
    }
    return sum;
}

template <typename T>
[[gnu::noinline]] unsigned int sumByGetPixel(const Image<T>& image)
{
    unsigned int sum = 0;
    for (unsigned int y = 0; y < image.GetHeight(); ++y) {
        for (unsigned int x = 0; x < image.GetWidth(); ++x) {
            sum += static_cast<unsigned int>(image.GetPixel(x, y));
        }
    }
    return sum;
}

template <typename T>
void change(benchmark::State& state, void (*byAccess)(Image<T>&))
{
    const Image<T> original = randomImage<T>(state);
    Image<T> image(original);
    byAccess(image);
    if (!isRight(state, image, [&](auto i) { return changed(original[i]); })) {
        return;
    }
    // All on the same pixels: where an array lies in its pages tells more than how it is accessed.
    Plane<T> plane{image.GetRawPointer(), image.GetWidth(), image.GetHeight()};
    std::vector<T> vector(original.begin(), original.end());
    race(
        state, [&] { byAccess(image); },
        {{"raw", [&] { changeRaw(image.GetRawPointer(), image.GetWidth(), image.GetHeight()); }},
         {"struct", [&] { changePlane(plane); }},
         {"vector", [&] { changeVector(vector, image.GetWidth(), image.GetHeight()); }}},
        2 * sizeof(T));
}

template <typename T>
void changePixelsByOperator(benchmark::State& state)
{
    change<T>(state, changeByOperator<T>);
}

template <typename T>
void changePixelsByGetPixel(benchmark::State& state)
{
    change<T>(state, changeByGetPixel<T>);
}

void changeBytesByRange(benchmark::State& state)
{
    change<unsigned char>(state, changeByRange<unsigned char>);
}

void changeBytesByPointer(benchmark::State& state)
{
    change<unsigned char>(state, changeByPointer<unsigned char>);
}

template <typename T>
void readPixels(benchmark::State& state)
{
    const Image<T> image = randomImage<T>(state);
    const auto raw = [&] { return sumRaw(image.GetRawPointer(), image.GetWidth(), image.GetHeight()); };
    if (sumByGetPixel(image) != raw()) {
        state.SkipWithError("wrong result");
        return;
    }
    race(
        state, [&] { benchmark::DoNotOptimize(sumByGetPixel(image)); },
        {{"raw", [&] { benchmark::DoNotOptimize(raw()); }}}, sizeof(T));
}

/// An image whose mask nobody asked for, beside the same memory without an image.
void copy(benchmark::State& state)
{
    auto source = randomImage<unsigned short>(state);
    source.ReplaceMaskStrategy(std::make_unique<DataObjects::LazyMask>(side(state), side(state), true));
    const auto copied = std::make_unique<Image<unsigned short>>(source);
    if (!isRight(state, *copied, [&](auto i) { return source[i]; }) || copied->IsMaskSpawned()) {
        return;
    }
    const auto copyMemory = [&] {
        auto* pixels = RTE::newArray<unsigned short>(source.size());
        std::memcpy(pixels, source.GetRawPointer(), source.size() * sizeof(unsigned short));
        benchmark::DoNotOptimize(pixels);
        RTE::deleteArray(pixels, source.size());
    };
    race(
        state, [&] { benchmark::DoNotOptimize(Image<unsigned short>(source)); },
        {{"new array and memcpy", copyMemory}}, 4);
}

/// A volume as high, wide and deep as the argument, with masks that exist or that nobody asked for.
ImageVolume<unsigned short> cube(const benchmark::State& state)
{
    ImageVolume<unsigned short> volume(side(state), side(state), side(state), true);
    for (const auto& plane : volume) {
        Benchmarks::randomize(*plane, plane->GetWidth());
        if (state.range(1) == 0) {
            plane->ReplaceMaskStrategy(
                std::make_unique<DataObjects::LazyMask>(side(state), side(state), true));
        }
    }
    return volume;
}

/// What a cut at `index` has to read and write, into arrays that are there: rows of `count` pixels whose
/// distance in the plane is `step`.
template <typename T>
[[gnu::noinline]] void copyLines(const std::vector<const T*>& planes, unsigned int begin, unsigned int step,
                                 unsigned int count, T* target)
{
    for (const T* const plane : planes) {
        for (unsigned int i = 0; i < count; ++i) {
            *target++ = plane[begin + static_cast<std::size_t>(i) * step];
        }
    }
}

using Cut = std::unique_ptr<DataObjects::ImageVariant> (*)(const DataObjects::ImageVolumeVariant&,
                                                           unsigned int);

/// Another cut each time: the lines of the last one are in the cache.
void extract(benchmark::State& state, Cut cut, unsigned int firstStep, unsigned int pixelStep)
{
    const auto volume = cube(state);
    const unsigned int count = side(state);
    std::vector<const unsigned short*> planes;
    std::vector<const unsigned char*> masks;
    for (const auto& plane : volume) {
        planes.push_back(plane->GetRawPointer());
        if (plane->IsMaskSpawned()) {
            masks.push_back(reinterpret_cast<const unsigned char*>(plane->GetMask().GetRawPointer()));
        }
    }
    std::vector<unsigned short> pixels(static_cast<std::size_t>(count) * count);
    std::vector<unsigned char> validity(pixels.size(), 1);
    const auto copyAll = [&](unsigned int index) {
        copyLines(planes, index * firstStep, pixelStep, count, pixels.data());
        copyLines(masks, index * firstStep, pixelStep, count, validity.data());
    };
    copyAll(5);
    const auto image = cut(volume, 5);
    if (!isRight(state, static_cast<const Image<unsigned short>&>(*image),
                 [&](auto i) { return pixels[i]; })) {
        return;
    }
    unsigned int index = 0;
    const auto next = [&] { return index = (index + 37) % count; };
    race(
        state, [&] { benchmark::DoNotOptimize(cut(volume, next())); },
        {{"pass over the lines", [&] { copyAll(next()); }}}, masks.empty() ? 4 : 6);
}

void extractXZ(benchmark::State& state)
{
    extract(state, DataObjects::ExtractXZImage, side(state), 1);
}

void extractYZ(benchmark::State& state)
{
    extract(state, DataObjects::ExtractYZImage, 1, side(state));
}

/// Sixteen frames of words become floats.
void assignRecording(benchmark::State& state)
{
    constexpr unsigned int frames = 16;
    ImageBuffer<unsigned short> source(side(state), side(state), 1, frames, true);
    for (unsigned int i = 0; i < frames; ++i) {
        Benchmarks::randomize(source.getFrame(i).getPlane(0), i);
    }
    // Views: an owner would get new frames.
    std::vector<float> pixels(source.getFrame(0).getPlane(0).size() * frames);
    std::vector<Image<float>> views;
    for (unsigned int i = 0; i < frames; ++i) {
        views.emplace_back(pixels.data() + pixels.size() / frames * i, side(state), side(state), false, true);
    }
    ImageBuffer<float> target(std::move(views), DataObjects::AttributesContainer());
    target.Assign(source);
    const auto& last = source.getFrame(frames - 1).getPlane(0);
    if (!isRight(state, target.getFrame(frames - 1).getPlane(0),
                 [&](auto i) { return static_cast<float>(last[i]); })) {
        return;
    }
    const auto convertPixels = [&] {
        for (unsigned int i = 0; i < frames; ++i) {
            target.getFrame(i).getPlane(0).GetImageData().Assign(
                source.getFrame(i).getPlane(0).GetImageData());
        }
    };
    // Masks are compared apart from the pixels: both are made before the clock runs.
    for (unsigned int i = 0; i < frames; ++i) {
        source.getFrame(i).getPlane(0).ReplaceMaskStrategy(
            std::make_unique<DataObjects::LazyMask>(side(state), side(state), true));
        target.getFrame(i).getPlane(0).ReplaceMaskStrategy(
            std::make_unique<DataObjects::LazyMask>(side(state), side(state), true));
    }
    race(
        state, [&] { target.Assign(source); }, {{"pixels alone", convertPixels}}, frames * 6);
}

/// Frames of one pixel with ten attributes each.
ImageBuffer<unsigned short> attributed(const benchmark::State& state)
{
    ImageBuffer<unsigned short> buffer(1, 1, 1, static_cast<unsigned int>(state.range(0)), true);
    for (const auto& frame : buffer) {
        for (int i = 0; i < 10; ++i) {
            frame->GetAttributes().set("Acq.Number" + std::to_string(i), i);
        }
    }
    return buffer;
}

void attributesOut(benchmark::State& state)
{
    const auto buffer = attributed(state);
    if (buffer.getAllAttributes().frameAttributes.back().toStdVector().size() != 10) {
        state.SkipWithError("wrong result");
        return;
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(buffer.getAllAttributes());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void attributesIn(benchmark::State& state)
{
    auto buffer = attributed(state);
    const auto all = buffer.getAllAttributes();
    for (auto _ : state) {
        buffer.setAllAttributes(all);
    }
    if (buffer.getFrame(0).GetAttributes().toStdVector().size() != 10) {
        state.SkipWithError("wrong result");
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void sides(benchmark::internal::Benchmark* benchmark)
{
    benchmark->Arg(256)->Arg(1024)->Arg(4096)->UseManualTime()->Iterations(21);
}

void fewSides(benchmark::internal::Benchmark* benchmark)
{
    benchmark->Arg(256)->Arg(1024)->UseManualTime()->Iterations(21);
}

#define DATAOBJECTS_BENCHMARK_ACCESS(type, number, name)                                                     \
    BENCHMARK_TEMPLATE(readPixels, type)->Apply(sides);                                                      \
    BENCHMARK_TEMPLATE(changePixelsByOperator, type)->Apply(sides);                                          \
    BENCHMARK_TEMPLATE(changePixelsByGetPixel, type)->Apply(sides);
DATAOBJECTS_PIXEL_TYPES(DATAOBJECTS_BENCHMARK_ACCESS)
BENCHMARK(changeBytesByRange)->Apply(sides);
BENCHMARK(changeBytesByPointer)->Apply(sides);
BENCHMARK(copy)->Apply(sides);
BENCHMARK(extractXZ)->ArgsProduct({{128, 256, 512}, {0, 1}})->UseManualTime()->Iterations(21);
BENCHMARK(extractYZ)->ArgsProduct({{128, 256, 512}, {0, 1}})->UseManualTime()->Iterations(21);
BENCHMARK(assignRecording)->Apply(fewSides);
BENCHMARK(attributesOut)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);
BENCHMARK(attributesIn)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);

} // namespace
