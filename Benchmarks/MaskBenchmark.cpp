// SPDX-License-Identifier: Apache-2.0
// Masks beside memcpy, a plain read, and the same passes of OpenCV over masks of bytes.
#include "Core/Common/TargetClones.h"
#include "Core/DataObjects/LazyMask.h"

#include <opencv2/core.hpp>

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstring>

namespace
{

using DataObjects::Mask;

unsigned int side(const benchmark::State& state)
{
    return static_cast<unsigned int>(state.range(0));
}

/// Every byte that a pass reads or writes counts: one per pixel for a fill or a read, two for a copy, three
/// for a combination.
void setTraffic(benchmark::State& state, int bytesPerPixel)
{
    state.SetBytesProcessed(state.iterations() * state.range(0) * state.range(0) * bytesPerPixel);
}

/// Valid but for each pixel of the diagonal whose x is a multiple of `period`.
Mask striped(unsigned int sideLength, unsigned int period)
{
    Mask mask(sideLength, sideLength, true);
    for (unsigned int x = 0; x < sideLength; x += period) {
        mask.SetValid(x, x, false);
    }
    return mask;
}

cv::Mat asMat(Mask& mask)
{
    return {static_cast<int>(mask.GetHeight()), static_cast<int>(mask.GetWidth()), CV_8U,
            mask.GetRawPointer()};
}

void copyMemcpy(benchmark::State& state)
{
    const Mask source = striped(side(state), 3);
    Mask target(source);
    for (auto _ : state) {
        std::memcpy(target.GetRawPointer(), source.GetRawPointer(), source.size());
        benchmark::ClobberMemory();
    }
    setTraffic(state, 2);
}

template <typename Combine, typename Expected>
void combine(benchmark::State& state, Combine combineInto, Expected expected)
{
    const Mask other = striped(side(state), 3);
    Mask target = striped(side(state), 2);
    combineInto(target, other);
    for (unsigned int x = 0; x < side(state); ++x) {
        if (target.IsValid(x, x) != expected(x % 2 != 0, x % 3 != 0)) {
            state.SkipWithError("wrong result");
            return;
        }
    }
    for (auto _ : state) {
        combineInto(target, other);
        benchmark::ClobberMemory();
    }
    setTraffic(state, 3);
}

void combineAnd(benchmark::State& state)
{
    combine(
        state, [](Mask& a, const Mask& b) { a &= b; }, [](bool a, bool b) { return a && b; });
}

void combineOr(benchmark::State& state)
{
    combine(
        state, [](Mask& a, const Mask& b) { a |= b; }, [](bool a, bool b) { return a || b; });
}

void combineXor(benchmark::State& state)
{
    combine(
        state, [](Mask& a, const Mask& b) { a ^= b; }, [](bool a, bool b) { return a != b; });
}

/// OpenCV combines the bits of the bytes; it does not make 0 or 1 of them.
void combineAndOpenCv(benchmark::State& state)
{
    Mask other = striped(side(state), 3);
    Mask target = striped(side(state), 2);
    cv::Mat result = asMat(target);
    const cv::Mat source = asMat(other);
    for (auto _ : state) {
        cv::bitwise_and(result, source, result);
        benchmark::ClobberMemory();
    }
    setTraffic(state, 3);
}

void fill(benchmark::State& state)
{
    Mask mask(side(state), side(state), false);
    mask.Fill(true);
    if (!AllValuesValid(mask)) {
        state.SkipWithError("wrong result");
        return;
    }
    for (auto _ : state) {
        mask.Fill(true);
        benchmark::ClobberMemory();
    }
    setTraffic(state, 1);
}

void allValid(benchmark::State& state)
{
    Mask mask(side(state), side(state), true);
    mask.SetValid(side(state) - 1, side(state) - 1, false);
    if (AllValuesValid(mask)) {
        state.SkipWithError("wrong result");
        return;
    }
    mask.Fill(true);
    for (auto _ : state) {
        benchmark::DoNotOptimize(AllValuesValid(mask));
    }
    setTraffic(state, 1);
}

void allValidOpenCv(benchmark::State& state)
{
    Mask mask(side(state), side(state), true);
    const cv::Mat mat = asMat(mask);
    for (auto _ : state) {
        benchmark::DoNotOptimize(cv::countNonZero(mat));
    }
    setTraffic(state, 1);
}

DATAOBJECTS_TARGET_CLONES std::uint64_t readWords(const std::uint64_t* words, std::size_t count)
{
    std::uint64_t any = 0;
    for (std::size_t i = 0; i < count; ++i) {
        any |= words[i];
    }
    return any;
}

void plainRead(benchmark::State& state)
{
    const Mask mask(side(state), side(state), true);
    const void* const data = mask.GetRawPointer();
    for (auto _ : state) {
        benchmark::DoNotOptimize(readWords(static_cast<const std::uint64_t*>(data), mask.size() / 8));
    }
    setTraffic(state, 1);
}

/// Asks the strategy anew for each pixel, as access through an image does, or once for all.
template <bool PerPixel>
void countValid(benchmark::State& state)
{
    DataObjects::LazyMask lazy(side(state), side(state), true);
    DataObjects::MaskStrategy* strategy = &lazy;
    benchmark::DoNotOptimize(strategy);
    for (auto _ : state) {
        const Mask& mask = strategy->ref();
        unsigned long long count = 0;
        for (unsigned int y = 0; y < side(state); ++y) {
            for (unsigned int x = 0; x < side(state); ++x) {
                count += (PerPixel ? strategy->ref() : mask).IsValid(x, y) ? 1U : 0U;
            }
        }
        benchmark::DoNotOptimize(count);
    }
    setTraffic(state, 1);
}

/// Masks of 64 KiB, 1 MiB, 16 MiB and 64 MiB.
void sizes(benchmark::internal::Benchmark* benchmark)
{
    benchmark->Arg(256)->Arg(1024)->Arg(4096)->Arg(8192);
}

BENCHMARK(copyMemcpy)->Apply(sizes);
BENCHMARK(combineAnd)->Apply(sizes);
BENCHMARK(combineOr)->Apply(sizes);
BENCHMARK(combineXor)->Apply(sizes);
BENCHMARK(combineAndOpenCv)->Apply(sizes);
BENCHMARK(fill)->Apply(sizes);
BENCHMARK(plainRead)->Apply(sizes);
BENCHMARK(allValid)->Apply(sizes);
BENCHMARK(allValidOpenCv)->Apply(sizes);
BENCHMARK_TEMPLATE(countValid, true)->Arg(1024);
BENCHMARK_TEMPLATE(countValid, false)->Arg(1024);

} // namespace
