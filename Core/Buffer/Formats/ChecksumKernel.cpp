// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/ChecksumKernel.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <numeric>

// Vectors whose size is known at run time only cannot stand in arrays.
#define HWY_DISABLED_TARGETS (HWY_SVE | HWY_SVE2 | HWY_SVE_256 | HWY_SVE2_128 | HWY_RVV)
#define HWY_WANT_AVX3_DL
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "Core/Buffer/Formats/ChecksumKernel.cpp"
#include <hwy/foreach_target.h>

#include <hwy/cache_control.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace BufferApi::Formats::Private::HWY_NAMESPACE
{

#if HWY_TARGET == HWY_SCALAR

WordSums sumGroups(const unsigned char* /*data*/, unsigned long long /*bytes*/)
{
    return {};
}

#else

namespace hn = hwy::HWY_NAMESPACE;

using Words = hn::ScalableTag<std::int16_t>;
using Sums = hn::Repartition<std::int32_t, Words>;
using WordVector = hn::Vec<Words>;
using SumVector = hn::Vec<Sums>;

constexpr long long vectors = 4;
constexpr long long vectorWords = sizeof(WordVector) / 2;
constexpr long long groupWords = vectors * vectorWords;
// Words are taken less this, which makes them signed; twice of it in each step stays below 2^31 in the sum of
// sums for so many steps.
constexpr long long bias = 32768;
constexpr long long mostGroups = 256;
constexpr std::size_t bytesAhead = 1024;

/// Adds the products of two neighbours each. Where vectors are short, a part of them may go to `rest`.
SumVector addProducts(WordVector words, WordVector factors, SumVector sum, SumVector& rest)
{
#if HWY_TARGET == HWY_AVX3_DL
    static_cast<void>(rest);
    // Highway chooses this target where the processor has the instruction, but does not tell the compiler.
    asm("vpdpwssd %2, %1, %0" : "+v"(sum.raw) : "v"(words.raw), "v"(factors.raw));
    return sum;
#else
    return hn::ReorderWidenMulAccumulate(Sums(), words, factors, sum, rest);
#endif
}

/// One vector of each group.
struct Column
{
    SumVector plain;
    SumVector plainRest;
    /// Each word times its place in the vector.
    SumVector placed;
    SumVector placedRest;
    /// Each sum as many times as groups follow.
    SumVector weighted;
    SumVector weightedRest;

    // Only what is written out is compiled for the processor.
    Column() noexcept
        : plain(hn::Zero(Sums())), plainRest(plain), placed(plain), placedRest(plain), weighted(plain),
          weightedRest(plain)
    {
    }

    void add(const unsigned char* data)
    {
        const Words words;
        hwy::Prefetch(data + bytesAhead);
        const hn::Repartition<std::uint8_t, Words> bytes;
        const auto biased =
            hn::Xor(hn::BitCast(words, hn::LoadU(bytes, data)), hn::Set(words, std::int16_t{-32768}));
        weighted = hn::Add(weighted, plain);
        weightedRest = hn::Add(weightedRest, plainRest);
        plain = addProducts(biased, hn::Set(words, std::int16_t{1}), plain, plainRest);
        placed = addProducts(biased, hn::Iota(words, 0), placed, placedRest);
    }
};

long long total(SumVector sum, SumVector rest)
{
    std::int32_t lanes[vectorWords];
    hn::StoreU(sum, Sums(), lanes);
    hn::StoreU(rest, Sums(), lanes + vectorWords / 2);
    return std::accumulate(std::begin(lanes), std::end(lanes), 0LL);
}

/// The sums of `groups` steps of all columns, with what was taken off.
WordSums sumsOf(const std::array<Column, vectors>& columns, long long groups)
{
    const long long words = groups * groupWords;
    long long plain = 0;
    long long weighted = 0;
    for (long long i = 0; i < vectors; ++i) {
        const Column& column = columns[static_cast<std::size_t>(i)];
        const long long sum = total(column.plain, column.plainRest);
        plain += sum;
        weighted += groupWords * (sum + total(column.weighted, column.weightedRest)) - i * vectorWords * sum -
                    total(column.placed, column.placedRest);
    }
    plain += bias * words;
    weighted += bias * (words * (words + 1) / 2);
    return {static_cast<unsigned long long>(words), static_cast<unsigned long long>(plain),
            static_cast<unsigned long long>(weighted)};
}

WordSums sumGroups(const unsigned char* data, unsigned long long bytes)
{
    const long long groups = static_cast<long long>(
        std::min(bytes / (2 * groupWords), static_cast<unsigned long long>(mostGroups)));
    // By name, since g++ keeps no array in registers.
    Column first;
    Column second;
    Column third;
    Column fourth;
    for (long long group = 0; group < groups; ++group, data += 2 * groupWords) {
        first.add(data);
        second.add(data + 2 * vectorWords);
        third.add(data + 4 * vectorWords);
        fourth.add(data + 6 * vectorWords);
    }
    return sumsOf({first, second, third, fourth}, groups);
}

#endif

} // namespace BufferApi::Formats::Private::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace BufferApi::Formats::Private
{

HWY_EXPORT(sumGroups);

WordSums sumVectors(const unsigned char* data, unsigned long long bytes)
{
    return HWY_DYNAMIC_DISPATCH(sumGroups)(data, bytes);
}

} // namespace BufferApi::Formats::Private
#endif
