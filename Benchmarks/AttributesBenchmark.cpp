// SPDX-License-Identifier: Apache-2.0
// Named attributes in memory and on a frame, beside bare maps of the same names and values, and the bytes of
// the names and numbers copied.
#include "Core/Buffer/BufferApi.h"
#include "Core/DataObjects/AttributesContainer.h"
#include "Core/DataObjects/BufferAttributes.h"

#include <benchmark/benchmark.h>

#include <cstring>

namespace
{

using DataObjects::AttributesContainer;
using DataObjects::AttributeValue;
using DataObjects::BufferAttributes;

/// Names as a recording has them, and numbers as text.
struct Sample
{
    explicit Sample(std::int64_t count)
    {
        for (std::int64_t i = 0; i < count; ++i) {
            names.push_back("Acq.Device" + std::to_string(i * 7919 % count) + ".Value");
            values.emplace_back(QString::number(0.5 + static_cast<double>(i)));
            bytes += names.back().size() + sizeof(double);
        }
    }

    /// The sum of what the values read as.
    [[nodiscard]] double sum() const
    {
        const auto count = static_cast<double>(names.size());
        return 0.5 * count + 0.5 * count * (count - 1.0);
    }

    std::vector<std::string> names;
    std::vector<AttributeValue> values;
    std::size_t bytes = 0;
};

class BareMap
{
public:
    void set(const std::string& name, const AttributeValue& value) { m_map.insert_or_assign(name, value); }
    void clear() { m_map.clear(); }
    [[nodiscard]] AttributeValue attributeValue(const std::string& name) const
    {
        const auto found = m_map.find(name);
        return found == m_map.end() ? AttributeValue() : found->second;
    }

private:
    std::map<std::string, AttributeValue> m_map;
};

/// The same with the element type of the container.
class BarePointerMap
{
public:
    void set(const std::string& name, const AttributeValue& value)
    {
        m_map.insert_or_assign(name, std::make_unique<AttributeValue>(value));
    }
    void clear() { m_map.clear(); }
    [[nodiscard]] AttributeValue attributeValue(const std::string& name) const
    {
        const auto found = m_map.find(name);
        return found == m_map.end() ? AttributeValue() : *found->second;
    }

private:
    AttributesContainer::Map m_map;
};

class OnFrame
{
public:
    void set(const std::string& name, const AttributeValue& value) { m_attributes.set(name, value); }
    void clear() { m_attributes.clear(); }
    [[nodiscard]] AttributeValue attributeValue(const std::string& name) const
    {
        return m_attributes.attributeValue(name);
    }

private:
    std::unique_ptr<BufferApi::I_Frame> m_frame{BufferApi::CreateImageFrame(BufferApi::DT_BYTE, 1, 1, 1)};
    BufferAttributes m_attributes{*m_frame};
};

template <typename Target>
void fill(Target& target, const Sample& sample)
{
    for (std::size_t i = 0; i < sample.names.size(); ++i) {
        target.set(sample.names[i], sample.values[i]);
    }
}

template <typename Target>
double readAll(const Target& target, const Sample& sample)
{
    double sum = 0.0;
    for (const std::string& name : sample.names) {
        sum += target.attributeValue(name).template value<double>();
    }
    return sum;
}

/// Times `call` on a target that holds the sample.
template <typename Target, typename Call>
void run(benchmark::State& state, Call call)
{
    const Sample sample(state.range(0));
    Target target;
    fill(target, sample);
    if (readAll(target, sample) != sample.sum()) {
        state.SkipWithError("wrong result");
        return;
    }
    for (auto _ : state) {
        call(target, sample);
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(sample.bytes));
}

template <typename Target>
void setNew(benchmark::State& state)
{
    run<Target>(state, [](Target& target, const Sample& sample) {
        target.clear();
        fill(target, sample);
    });
}

template <typename Target>
void setAgain(benchmark::State& state)
{
    run<Target>(state, [](Target& target, const Sample& sample) { fill(target, sample); });
}

template <typename Target>
void readNumbers(benchmark::State& state)
{
    run<Target>(state, [](const Target& target, const Sample& sample) {
        benchmark::DoNotOptimize(readAll(target, sample));
    });
}

template <typename Target>
void readValues(benchmark::State& state)
{
    run<Target>(state, [](const Target& target, const Sample& sample) {
        for (const std::string& name : sample.names) {
            benchmark::DoNotOptimize(target.attributeValue(name));
        }
    });
}

template <typename Target>
void copyAll(benchmark::State& state)
{
    run<Target>(state, [](const Target& target, const Sample& /*sample*/) {
        benchmark::DoNotOptimize(Target(target));
    });
}

void copyBytes(benchmark::State& state)
{
    const Sample sample(state.range(0));
    std::string from(sample.bytes, 'x');
    std::string to(sample.bytes, ' ');
    for (auto _ : state) {
        std::memcpy(to.data(), from.data(), from.size());
        benchmark::DoNotOptimize(to.data());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(sample.bytes));
}

void sizes(benchmark::internal::Benchmark* benchmark)
{
    benchmark->Arg(10)->Arg(100)->Arg(1000)->Arg(10000);
}

BENCHMARK(setNew<AttributesContainer>)->Apply(sizes);
BENCHMARK(setNew<BareMap>)->Apply(sizes);
BENCHMARK(setNew<BarePointerMap>)->Apply(sizes);
BENCHMARK(setNew<OnFrame>)->Apply(sizes);
BENCHMARK(setAgain<AttributesContainer>)->Apply(sizes);
BENCHMARK(setAgain<BareMap>)->Apply(sizes);
BENCHMARK(setAgain<BarePointerMap>)->Apply(sizes);
BENCHMARK(setAgain<OnFrame>)->Apply(sizes);
BENCHMARK(readValues<AttributesContainer>)->Apply(sizes);
BENCHMARK(readValues<BareMap>)->Apply(sizes);
BENCHMARK(readValues<BarePointerMap>)->Apply(sizes);
BENCHMARK(readValues<OnFrame>)->Apply(sizes);
BENCHMARK(readNumbers<AttributesContainer>)->Apply(sizes);
BENCHMARK(readNumbers<BareMap>)->Apply(sizes);
BENCHMARK(readNumbers<BarePointerMap>)->Apply(sizes);
BENCHMARK(readNumbers<OnFrame>)->Apply(sizes);
BENCHMARK(copyAll<AttributesContainer>)->Apply(sizes);
BENCHMARK(copyAll<BareMap>)->Apply(sizes);
BENCHMARK(copyBytes)->Apply(sizes);

} // namespace
