// SPDX-License-Identifier: Apache-2.0
// Decoding random frames of n² pixels into an array that exists, in turns with memcpy of the same bytes, that
// is half of those read and written; and into a fresh frame, with and without the reserve of arrays. Bytes
// processed are those read and written.
#include "Benchmarks/Race.h"
#include "Core/Common/Array.h"
#include "Core/DataObjects/DataObjects.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <random>

namespace
{

using namespace DataObjects::FrameDecoder;

constexpr std::int64_t sides[] = {256, 1024, 2048, 5120};

template <typename T>
std::unique_ptr<T[]> array(std::size_t count)
{
    return std::unique_ptr<T[]>(RTE::newArray<T>(count));
}

std::unique_ptr<unsigned char[]> randomBytes(std::size_t count)
{
    std::mt19937_64 random(count);
    auto bytes = array<unsigned char>(count + 8);
    for (std::size_t i = 0; i < count; i += 8) {
        const std::uint64_t value = random();
        std::memcpy(bytes.get() + i, &value, sizeof value);
    }
    return bytes;
}

/// A whole frame is what its groups of eight pixels are one by one.
bool decodesPiecewise(const I_FrameDecoder& decoder, const unsigned char* source, std::size_t groupBytes,
                      const unsigned short* words, std::size_t pixels)
{
    for (std::size_t i = 0; i + 8 <= pixels; i += 8) {
        unsigned short group[8];
        decoder.decode({source + i / 8 * groupBytes, groupBytes}, RTE::UnmanagedMemory(group, sizeof group));
        if (std::memcmp(group, words + i, sizeof group) != 0) {
            return false;
        }
    }
    return true;
}

template <typename Decoder>
void decode(benchmark::State& state)
{
    const Decoder decoder;
    const auto pixels = static_cast<std::size_t>(state.range(0) * state.range(0));
    const std::size_t sourceBytes = decoder.encodedSize(pixels);
    const auto source = randomBytes(sourceBytes);
    const auto words = array<unsigned short>(pixels);
    const RTE::UnmanagedMemory destination(words.get(), 2 * pixels);
    std::memset(words.get(), 0, 2 * pixels);
    decoder.decode({source.get(), sourceBytes}, destination);
    if (!decodesPiecewise(decoder, source.get(), decoder.encodedSize(8), words.get(), pixels)) {
        state.SkipWithError("wrong result");
        return;
    }
    const std::size_t half = (sourceBytes + 2 * pixels) / 2;
    const auto from = randomBytes(half);
    const auto to = randomBytes(half);
    Benchmarks::race(
        state,
        [&] {
            decoder.decode({source.get(), sourceBytes}, destination);
        },
        {{"memcpy", [&] { std::memcpy(to.get(), from.get(), half); }}}, 2 * half / pixels);
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(sourceBytes + 2 * pixels));
}

/// Allocates, decodes and frees a frame; without the reserve of arrays the system clears all pages anew.
template <bool fromReserve>
void decodeFreshFrame(benchmark::State& state)
{
    Mono12p decoder;
    const QSize size(static_cast<int>(state.range(0)), static_cast<int>(state.range(0)));
    const std::size_t sourceBytes = decoder.encodedSize(size);
    const auto source = randomBytes(sourceBytes);
    std::size_t frameBytes = 0;
    for (auto _ : state) {
        {
            const DataObjects::FrameData frame = decoder.decode({source.get(), sourceBytes}, size);
            benchmark::DoNotOptimize(frame.data());
            frameBytes = frame.dataSize();
        }
        if (!fromReserve) {
            RTE::freeReserve();
        }
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(sourceBytes + frameBytes));
}

void inTurns(benchmark::internal::Benchmark* benchmark)
{
    for (const std::int64_t side : sides) {
        benchmark->Arg(side);
    }
    benchmark->Iterations(21)->UseManualTime();
}

void overSides(benchmark::internal::Benchmark* benchmark)
{
    for (const std::int64_t side : sides) {
        benchmark->Arg(side);
    }
}

BENCHMARK(decode<Mono10p>)->Apply(inTurns);
BENCHMARK(decode<Mono10pmsb>)->Apply(inTurns);
BENCHMARK(decode<Mono12p>)->Apply(inTurns);
BENCHMARK(decode<Mono12packed>)->Apply(inTurns);
BENCHMARK(decode<Mono12pmsb>)->Apply(inTurns);
BENCHMARK(decode<Raw16>)->Apply(inTurns);
BENCHMARK(decode<Raw8>)->Apply(inTurns);
BENCHMARK(decode<Rgb24>)->Apply(inTurns);
BENCHMARK(decodeFreshFrame<true>)->Apply(overSides);
BENCHMARK(decodeFreshFrame<false>)->Apply(overSides);

} // namespace
