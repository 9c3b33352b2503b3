// SPDX-License-Identifier: Apache-2.0
// A scalar field copied to another type, into new memory, beside the pixel conversion, memcpy of as many
// pixels and OpenCV's convertTo, each into new memory too, all with one thread.
#include "Benchmarks/Race.h"
#include "Core/DataObjects/ScalarField.h"
#include "Tests/DataObjects/PixelReference.h"

#include <opencv2/core.hpp>

#include <benchmark/benchmark.h>

#include <cstring>

namespace
{

using DataObjects::ImageData;
using DataObjects::ScalarField;
using Word = unsigned short;

template <typename From, typename To, int cvFrom, int cvTo>
void copyTo(benchmark::State& state)
{
    cv::setNumThreads(1);
    const auto side = static_cast<unsigned int>(state.range(0));
    ScalarField<From> field(side, side, Zt::LinearScale(Zt::ScalePreset::I));
    Benchmarks::randomize(field, 1);
    const auto convert = [&] { return DataObjects::CreateScalarFieldCopyOfType<To>(field); };
    const auto rule = [&](auto i) { return PixelReference::converted<To>(field[i]); };
    if (!Benchmarks::isRight(state, convert(), rule)) {
        return;
    }
    const ImageData<To> plane = convert().GetDataT();
    const cv::Mat peer(static_cast<int>(side), static_cast<int>(side), cvFrom, field.begin());
    Benchmarks::race(
        state, [&] { benchmark::DoNotOptimize(convert().begin()); },
        {{"pixels",
          [&] {
              const auto copy = DataObjects::CreateImageDataOfType<To>(field.GetData(), true);
              benchmark::DoNotOptimize(copy.begin());
          }},
         {"memcpy",
          [&] {
              ImageData<To> copy(plane.GetSize());
              std::memcpy(copy.begin(), plane.begin(), plane.size() * sizeof(To));
              benchmark::DoNotOptimize(copy.begin());
          }},
         {"OpenCV",
          [&] {
              cv::Mat copy;
              peer.convertTo(copy, cvTo);
              benchmark::DoNotOptimize(copy.data);
          }}},
        sizeof(From) + sizeof(To));
}

void sizes(benchmark::internal::Benchmark* benchmark)
{
    benchmark->Arg(256)->Arg(1024)->Arg(2048)->Arg(5120);
    benchmark->Iterations(7)->UseManualTime()->Unit(benchmark::kMicrosecond);
}

BENCHMARK_TEMPLATE(copyTo, float, Word, CV_32F, CV_16U)->Apply(sizes);
BENCHMARK_TEMPLATE(copyTo, Word, float, CV_16U, CV_32F)->Apply(sizes);
BENCHMARK_TEMPLATE(copyTo, double, float, CV_64F, CV_32F)->Apply(sizes);
BENCHMARK_TEMPLATE(copyTo, float, unsigned char, CV_32F, CV_8U)->Apply(sizes);
BENCHMARK_TEMPLATE(copyTo, int, float, CV_32S, CV_32F)->Apply(sizes);

} // namespace
