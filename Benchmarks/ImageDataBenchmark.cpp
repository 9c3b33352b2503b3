// SPDX-License-Identifier: Apache-2.0
// Pixel passes beside memcpy of as many pixels and OpenCV's nearest counterpart, all with one thread.
#include "Benchmarks/Race.h"
#include "Core/DataObjects/ImageData.h"
#include "Tests/DataObjects/PixelReference.h"

#include <opencv2/core.hpp>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <utility>
#include <vector>

namespace
{

using Benchmarks::Contender;
using Benchmarks::isRight;
using Benchmarks::race;
using DataObjects::ImageData;
using Byte = unsigned char;
using Word = unsigned short;
using UInt = unsigned int;

template <typename T>
constexpr int cvType = 0;
template <>
constexpr int cvType<unsigned char> = CV_8U;
template <>
constexpr int cvType<unsigned short> = CV_16U;
template <>
constexpr int cvType<int> = CV_32S;
template <>
constexpr int cvType<float> = CV_32F;
template <>
constexpr int cvType<double> = CV_64F;

template <typename T>
cv::Mat asMat(ImageData<T>& data)
{
    cv::setNumThreads(1);
    return {static_cast<int>(data.GetHeight()), static_cast<int>(data.GetWidth()), cvType<T>,
            data.GetRawPointer()};
}

template <typename T>
ImageData<T> randomPlane(const benchmark::State& state, unsigned int seed)
{
    const auto side = static_cast<unsigned int>(state.range(0));
    ImageData<T> data(side, side);
    Benchmarks::randomize(data, seed);
    return data;
}

/// Copies as many pixels of T, from memory that is its own.
template <typename T>
Contender memcpyOf(const ImageData<T>& like)
{
    auto source = std::make_shared<ImageData<T>>(like);
    auto target = std::make_shared<ImageData<T>>(like);
    return {"memcpy", [=] {
                std::memcpy(target->GetRawPointer(), source->GetRawPointer(), source->size() * sizeof(T));
            }};
}

template <typename From, typename To>
void convert(benchmark::State& state)
{
    auto source = randomPlane<From>(state, 1);
    ImageData<To> target(source.GetSize(), To{1});
    ImageData<To> peerTarget(source.GetSize(), To{1});
    target.Assign(source);
    if (!isRight(state, target, [&](auto i) { return PixelReference::converted<To>(source[i]); })) {
        return;
    }
    std::vector<Contender> others{memcpyOf(target)};
    if constexpr (!std::is_same_v<From, UInt> && !std::is_same_v<To, UInt>) {
        others.push_back({"OpenCV", [&] {
                              cv::Mat result = asMat(peerTarget);
                              asMat(source).convertTo(result, cvType<To>);
                          }});
    }
    race(
        state, [&] { target.Assign(source); }, std::move(others), sizeof(From) + sizeof(To));
}

template <typename T>
using Change = void (*)(ImageData<T>&, double);

/// In place, over and over: the pixels wander, and no pass here is faster for some values than for others.
template <typename T>
void change(benchmark::State& state, Change<T> ours, T (*rule)(T, double), void (*peer)(cv::Mat&, double),
            double operand)
{
    const auto original = randomPlane<T>(state, 1);
    ImageData<T> data(original);
    ImageData<T> peerData(original);
    ours(data, operand);
    if (!isRight(state, data, [&](auto i) { return rule(original[i], operand); })) {
        return;
    }
    std::vector<Contender> others{memcpyOf(original)};
    if constexpr (!std::is_same_v<T, UInt>) {
        others.push_back({"OpenCV", [&] {
                              cv::Mat result = asMat(peerData);
                              peer(result, operand);
                          }});
    }
    race(
        state, [&] { ours(data, operand); }, std::move(others), 2 * sizeof(T));
}

template <typename T, double operand>
void addNumber(benchmark::State& state)
{
    change<T>(
        state, [](ImageData<T>& data, double by) { data += by; }, PixelReference::sum<T>,
        [](cv::Mat& data, double by) { cv::add(data, by, data); }, operand);
}

template <typename T, double operand>
void subtractNumber(benchmark::State& state)
{
    change<T>(
        state, [](ImageData<T>& data, double by) { data -= by; }, PixelReference::difference<T>,
        [](cv::Mat& data, double by) { cv::subtract(data, by, data); }, operand);
}

template <typename T, double operand>
void multiplyNumber(benchmark::State& state)
{
    change<T>(
        state, [](ImageData<T>& data, double by) { data *= by; }, PixelReference::product<T>,
        [](cv::Mat& data, double by) { data.convertTo(data, -1, by); }, operand);
}

template <typename T, double operand>
void divideNumber(benchmark::State& state)
{
    change<T>(
        state, [](ImageData<T>& data, double by) { data /= by; }, PixelReference::quotient<T>,
        [](cv::Mat& data, double by) { data.convertTo(data, -1, 1 / by); }, operand);
}

template <typename T>
void dividePixels(benchmark::State& state)
{
    const auto original = randomPlane<T>(state, 1);
    auto divisor = randomPlane<T>(state, 2);
    if constexpr (std::is_floating_point_v<T>) {
        // Over and over, other divisors would end in denormal numbers, which are slow for all.
        std::transform(divisor.begin(), divisor.end(), divisor.begin(),
                       [](T number) { return std::copysign(T{1}, number); });
    }
    ImageData<T> data(original);
    ImageData<T> peerData(original);
    data /= divisor;
    if (!isRight(state, data, [&](auto i) { return PixelReference::ratio(original[i], divisor[i]); })) {
        return;
    }
    std::vector<Contender> others{memcpyOf(original)};
    if constexpr (!std::is_same_v<T, UInt>) {
        others.push_back({"OpenCV", [&] {
                              cv::Mat result = asMat(peerData);
                              cv::divide(result, asMat(divisor), result);
                          }});
    }
    race(
        state, [&] { data /= divisor; }, std::move(others), 3 * sizeof(T));
}

template <typename T, double number>
void fill(benchmark::State& state)
{
    auto data = randomPlane<T>(state, 1);
    ImageData<T> peerData(data);
    const auto value = static_cast<T>(number);
    data.Fill(value);
    if (!isRight(state, data, [&](auto) { return value; })) {
        return;
    }
    race(
        state, [&] { data.Fill(value); },
        {{"memset", [&] { std::memset(peerData.GetRawPointer(), 1, peerData.size() * sizeof(T)); }}},
        sizeof(T));
}

template <typename T>
void copy(benchmark::State& state)
{
    const auto source = randomPlane<T>(state, 1);
    ImageData<T> target(source.GetSize(), T{0});
    race(
        state, [&] { target = source; }, {memcpyOf(source)}, 2 * sizeof(T));
}

void sizes(benchmark::internal::Benchmark* benchmark)
{
    benchmark->Arg(256)->Arg(1024)->Arg(2048)->Arg(5120);
    benchmark->Iterations(7)->UseManualTime()->Unit(benchmark::kMicrosecond);
}

BENCHMARK_TEMPLATE(convert, float, Word)->Apply(sizes);
BENCHMARK_TEMPLATE(convert, double, Word)->Apply(sizes);
BENCHMARK_TEMPLATE(convert, int, Word)->Apply(sizes);
BENCHMARK_TEMPLATE(convert, Word, float)->Apply(sizes);
BENCHMARK_TEMPLATE(convert, Word, double)->Apply(sizes);
BENCHMARK_TEMPLATE(convert, Word, Byte)->Apply(sizes);
BENCHMARK_TEMPLATE(convert, Byte, Word)->Apply(sizes);
BENCHMARK_TEMPLATE(convert, Byte, float)->Apply(sizes);
BENCHMARK_TEMPLATE(convert, float, Byte)->Apply(sizes);
BENCHMARK_TEMPLATE(convert, float, int)->Apply(sizes);
BENCHMARK_TEMPLATE(convert, int, float)->Apply(sizes);
BENCHMARK_TEMPLATE(convert, double, int)->Apply(sizes);
BENCHMARK_TEMPLATE(convert, double, float)->Apply(sizes);
BENCHMARK_TEMPLATE(convert, float, double)->Apply(sizes);
BENCHMARK_TEMPLATE(convert, UInt, Word)->Apply(sizes);
BENCHMARK_TEMPLATE(convert, double, UInt)->Apply(sizes);

BENCHMARK_TEMPLATE(addNumber, Byte, 3.0)->Apply(sizes);
BENCHMARK_TEMPLATE(addNumber, Word, 3.0)->Apply(sizes);
BENCHMARK_TEMPLATE(addNumber, Word, 0.9)->Apply(sizes);
BENCHMARK_TEMPLATE(addNumber, int, 3.0)->Apply(sizes);
BENCHMARK_TEMPLATE(addNumber, float, 3.0)->Apply(sizes);
BENCHMARK_TEMPLATE(subtractNumber, Byte, 3.0)->Apply(sizes);
BENCHMARK_TEMPLATE(subtractNumber, Word, 3.0)->Apply(sizes);
BENCHMARK_TEMPLATE(multiplyNumber, Byte, 1.005)->Apply(sizes);
BENCHMARK_TEMPLATE(multiplyNumber, Word, 1.005)->Apply(sizes);
BENCHMARK_TEMPLATE(multiplyNumber, int, 1.005)->Apply(sizes);
BENCHMARK_TEMPLATE(multiplyNumber, UInt, 1.005)->Apply(sizes);
BENCHMARK_TEMPLATE(multiplyNumber, float, 1.005)->Apply(sizes);
BENCHMARK_TEMPLATE(divideNumber, Byte, 1.005)->Apply(sizes);
BENCHMARK_TEMPLATE(divideNumber, Word, 1.005)->Apply(sizes);
BENCHMARK_TEMPLATE(divideNumber, Word, 3.0)->Apply(sizes);
BENCHMARK_TEMPLATE(divideNumber, int, 1.005)->Apply(sizes);
BENCHMARK_TEMPLATE(divideNumber, float, 1.005)->Apply(sizes);
BENCHMARK_TEMPLATE(divideNumber, double, 1.005)->Apply(sizes);

BENCHMARK_TEMPLATE(dividePixels, Byte)->Apply(sizes);
BENCHMARK_TEMPLATE(dividePixels, Word)->Apply(sizes);
BENCHMARK_TEMPLATE(dividePixels, int)->Apply(sizes);
BENCHMARK_TEMPLATE(dividePixels, UInt)->Apply(sizes);
BENCHMARK_TEMPLATE(dividePixels, float)->Apply(sizes);
BENCHMARK_TEMPLATE(dividePixels, double)->Apply(sizes);

BENCHMARK_TEMPLATE(fill, Byte, 200.0)->Apply(sizes);
BENCHMARK_TEMPLATE(fill, Word, 0.0)->Apply(sizes);
BENCHMARK_TEMPLATE(fill, Word, 300.0)->Apply(sizes);
BENCHMARK_TEMPLATE(fill, float, 1.5)->Apply(sizes);
BENCHMARK_TEMPLATE(fill, double, 1.5)->Apply(sizes);
BENCHMARK_TEMPLATE(copy, Word)->Apply(sizes);
BENCHMARK_TEMPLATE(copy, float)->Apply(sizes);

} // namespace
