// SPDX-License-Identifier: Apache-2.0
/// \file
/// Contenders that take turns, to and fro, so that what disturbs one disturbs all: the time reported is that
/// of the first, and each counter is the median time of another over that of the first: above 1, the first is
/// faster.
#pragma once

#include "Tests/Support/SamePixels.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <functional>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

namespace Benchmarks
{

struct Contender
{
    std::string name;
    std::function<void()> run;
    std::vector<double> seconds{};
};

inline double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// A turn is at least three runs and a millisecond, after one run that warms up.
inline void takeTurn(Contender& contender)
{
    using Clock = std::chrono::steady_clock;
    using Seconds = std::chrono::duration<double>;
    contender.run();
    int runs = 0;
    const auto start = Clock::now();
    Seconds total{};
    do {
        contender.run();
        benchmark::ClobberMemory();
        total = Clock::now() - start;
    } while (++runs < 3 || total < Seconds(0.001));
    contender.seconds.push_back(total.count() / runs);
}

/// Runs `ours` against the others on planes whose side is the benchmark's argument; `bytesPerPixel` are those
/// read and written.
inline void race(benchmark::State& state, const std::function<void()>& ours, std::vector<Contender> others,
                 std::size_t bytesPerPixel)
{
    Contender own{"ours", ours};
    std::vector<Contender*> turns{&own};
    for (Contender& other : others) {
        turns.push_back(&other);
    }
    for (auto _ : state) {
        for (Contender* const contender : turns) {
            takeTurn(*contender);
        }
        state.SetIterationTime(own.seconds.back());
        // Each finds the caches as its predecessor left them.
        std::reverse(turns.begin(), turns.end());
    }
    for (const Contender& other : others) {
        state.counters[other.name] = median(other.seconds) / median(own.seconds);
    }
    state.SetBytesProcessed(state.iterations() * state.range(0) * state.range(0) *
                            static_cast<std::int64_t>(bytesPerPixel));
}

/// The same for work on files, each turn once and after `prepare`, which is not timed. The counter of the
/// first is its median time in milliseconds.
inline void raceSingly(benchmark::State& state, const std::function<void()>& prepare,
                       std::vector<Contender> contenders)
{
    const auto turn = [&](Contender& contender) {
        using Clock = std::chrono::steady_clock;
        prepare();
        const auto start = Clock::now();
        contender.run();
        contender.seconds.push_back(std::chrono::duration<double>(Clock::now() - start).count());
    };
    std::for_each(contenders.begin(), contenders.end(), turn);
    bool isBackward = false;
    for (auto _ : state) {
        if (isBackward) {
            std::for_each(contenders.rbegin(), contenders.rend(), turn);
        } else {
            std::for_each(contenders.begin(), contenders.end(), turn);
        }
        isBackward = !isBackward;
        state.SetIterationTime(contenders.front().seconds.back());
    }
    const double own = median(contenders.front().seconds);
    for (const Contender& contender : contenders) {
        const double time = median(contender.seconds);
        state.counters[contender.name] = &contender == &contenders.front() ? 1000 * time : time / own;
    }
}

/// Fills with random pixels: all values of the small types, some beyond 16 bits and below 0 in the others.
template <typename Pixels>
void randomize(Pixels& pixels, unsigned int seed)
{
    std::mt19937 generator(seed);
    for (auto& pixel : pixels) {
        using T = std::remove_reference_t<decltype(pixel)>;
        const auto bits = static_cast<unsigned int>(generator());
        if constexpr (sizeof(T) <= 2) {
            pixel = static_cast<T>(bits);
        } else if constexpr (std::is_same_v<T, unsigned int>) {
            pixel = bits % 90'000;
        } else {
            pixel = static_cast<T>(static_cast<int>(bits % 90'000) - 10'000);
        }
    }
}

/// Compares every pixel with the rule; stops the benchmark where they differ.
template <typename Pixels, typename Expected>
bool isRight(benchmark::State& state, const Pixels& result, Expected&& expected)
{
    for (unsigned long long i = 0; i < result.size(); ++i) {
        if (!TestSupport::samePixel(result[i], expected(i))) {
            state.SkipWithError("wrong result");
            return false;
        }
    }
    return true;
}

} // namespace Benchmarks
