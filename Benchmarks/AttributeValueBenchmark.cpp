// SPDX-License-Identifier: Apache-2.0
// Reading the text of an attribute as a number, beside boost::lexical_cast and QString::toDouble, whose
// results it has to give; and a list, beside its bytes and the streams that define its text.
#include "Core/DataObjects/AttributeValue.h"

#include <benchmark/benchmark.h>
#include <boost/lexical_cast.hpp>

#include <cmath>
#include <cstring>
#include <iomanip>
#include <sstream>

namespace
{

using DataObjects::AttributeValue;

/// A number with as many digits behind "0.".
std::string numberText(std::int64_t digits)
{
    return "0." + std::string("1234567890123456789012345678901234567890123456789012345")
                      .substr(0, std::size_t(digits));
}

std::vector<double> numbers(std::int64_t count)
{
    std::vector<double> list(static_cast<std::size_t>(count));
    for (std::size_t i = 0; i < list.size(); ++i) {
        list[i] = std::round(static_cast<double>(i % 100000) * 7.8125) / 1000.0;
    }
    return list;
}

/// Times a call whose first result has to be the expected one.
template <typename Expected, typename Call>
void run(benchmark::State& state, const Expected& expected, std::size_t bytes, Call call)
{
    if (!(call() == expected)) {
        state.SkipWithError("wrong result");
        return;
    }
    for (auto _ : state) {
        auto result = call();
        benchmark::DoNotOptimize(result);
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes));
}

template <typename Held, typename Read>
void runOnText(benchmark::State& state, Read read)
{
    const std::string text = numberText(state.range(0));
    Held held(text.c_str());
    run(state, std::stod(text), text.size(), [&] {
        benchmark::DoNotOptimize(held);
        return read(held);
    });
}

void readStdString(benchmark::State& state)
{
    runOnText<AttributeValue>(state, [](const AttributeValue& value) { return value.value<double>(); });
}

void readLexicalCast(benchmark::State& state)
{
    runOnText<std::string>(state, [](const std::string& text) { return boost::lexical_cast<double>(text); });
}

void readQString(benchmark::State& state)
{
    const AttributeValue value(QString::fromStdString(numberText(state.range(0))));
    runOnText<std::string>(state, [&](const std::string& /*text*/) { return value.value<double>(); });
}

void readToDouble(benchmark::State& state)
{
    runOnText<QString>(state, [](const QString& text) { return text.toDouble(); });
}

void readCopiedBytes(benchmark::State& state)
{
    const std::string text = numberText(state.range(0));
    char copy[64];
    run(state, true, text.size(), [&] {
        std::memcpy(copy, text.data(), text.size());
        benchmark::DoNotOptimize(copy);
        return true;
    });
}

void readFloat(benchmark::State& state)
{
    const AttributeValue value(0.1F);
    run(state, 0.1, sizeof(float), [&] { return value.value<double>(); });
}

void listValue(benchmark::State& state)
{
    const std::vector<double> list = numbers(state.range(0));
    const AttributeValue value(list);
    run(state, list, list.size() * sizeof(double), [&] { return value.value<std::vector<double>>(); });
}

void listCopy(benchmark::State& state)
{
    const std::vector<double> list = numbers(state.range(0));
    run(state, list, list.size() * sizeof(double), [&] {
        std::vector<double> copy(list.size());
        std::memcpy(copy.data(), list.data(), list.size() * sizeof(double));
        return copy;
    });
}

/// The text of a list as it is defined.
std::string streamed(const std::vector<double>& list)
{
    std::ostringstream joined;
    for (std::size_t i = 0; i < list.size(); ++i) {
        std::stringstream fraction;
        fraction << std::abs(list[i] - static_cast<int>(list[i]));
        const int decimals = std::max(0, static_cast<int>(fraction.str().size()) - 2);
        joined << (i > 0 ? "," : "") << std::fixed << std::setprecision(decimals) << list[i];
    }
    return joined.str();
}

void listText(benchmark::State& state)
{
    const std::vector<double> list = numbers(state.range(0));
    const AttributeValue value(list);
    run(state, streamed(list), list.size() * sizeof(double), [&] { return value.toStdString(); });
}

void listTextStreamed(benchmark::State& state)
{
    const std::vector<double> list = numbers(state.range(0));
    run(state, AttributeValue(list).toStdString(), list.size() * sizeof(double),
        [&] { return streamed(list); });
}

BENCHMARK(readStdString)->Arg(2)->Arg(8)->Arg(17)->Arg(55);
BENCHMARK(readLexicalCast)->Arg(2)->Arg(8)->Arg(17)->Arg(55);
BENCHMARK(readQString)->Arg(2)->Arg(8)->Arg(17)->Arg(55);
BENCHMARK(readToDouble)->Arg(2)->Arg(8)->Arg(17)->Arg(55);
BENCHMARK(readCopiedBytes)->Arg(2)->Arg(8)->Arg(17)->Arg(55);
BENCHMARK(readFloat);
BENCHMARK(listValue)->Arg(1 << 8)->Arg(1 << 12)->Arg(1 << 16)->Arg(1 << 22);
BENCHMARK(listCopy)->Arg(1 << 8)->Arg(1 << 12)->Arg(1 << 16)->Arg(1 << 22);
BENCHMARK(listText)->Arg(1 << 4)->Arg(1 << 8)->Arg(1 << 12)->Arg(1 << 16);
BENCHMARK(listTextStreamed)->Arg(1 << 4)->Arg(1 << 8)->Arg(1 << 12)->Arg(1 << 16);

} // namespace
