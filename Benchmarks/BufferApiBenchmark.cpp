// SPDX-License-Identifier: Apache-2.0
// Making a frame and giving up its pixels, beside the plain allocation of the same array.
#include "Core/Buffer/BufferApi.h"
#include "Core/Common/Array.h"

#include <benchmark/benchmark.h>

namespace
{

constexpr auto releasesOwnPlane = [](unsigned int side) {
    const std::unique_ptr<BufferApi::I_Frame> frame(
        BufferApi::CreateImageFrame(BufferApi::DT_WORD, side, side, 1));
    return std::unique_ptr<unsigned short[]>(
        static_cast<unsigned short*>(frame->GetPlane(0, 0)->ReleaseData()));
};

constexpr auto allocates = [](unsigned int side) {
    return std::unique_ptr<unsigned short[]>(RTE::newArray<unsigned short>(1ULL * side * side));
};

/// Each array is written once, as its user would: the page faults belong to the allocation.
template <typename Make>
void run(benchmark::State& state, Make make)
{
    const auto side = static_cast<unsigned int>(state.range(0));
    const std::size_t count = std::size_t{side} * side;
    if (!make(side)) {
        state.SkipWithError("no pixels");
        return;
    }
    for (auto _ : state) {
        auto pixels = make(side);
        std::fill_n(pixels.get(), count, static_cast<unsigned short>(1));
        benchmark::DoNotOptimize(pixels.get());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(count * sizeof(unsigned short)));
}

void frame(benchmark::State& state)
{
    run(state, releasesOwnPlane);
}

void array(benchmark::State& state)
{
    run(state, allocates);
}

BENCHMARK(frame)->Arg(64)->Arg(256)->Arg(1024)->Arg(4096);
BENCHMARK(array)->Arg(64)->Arg(256)->Arg(1024)->Arg(4096);

} // namespace
