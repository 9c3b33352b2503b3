// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/RowConverter.h"

#include "Core/Common/CacheSize.h"
#include "Core/DataObjects/PixelRules.h"

#include <array>
#include <cstdint>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "Core/DataObjects/RowConverter.cpp"
#include <hwy/foreach_target.h>

#include <hwy/cache_control.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace DataObjects::Private::HWY_NAMESPACE
{

namespace hn = hwy::HWY_NAMESPACE;

template <class DInt, class D>
hn::Vec<DInt> toInt(DInt dInt, D, hn::Vec<D> values)
{
    if constexpr (sizeof(hn::TFromD<D>) == sizeof(std::int32_t)) {
        return hn::ConvertTo(dInt, values);
    } else {
        return hn::DemoteTo(dInt, values);
    }
}

/// Beyond `int` in two halves: what lies above 2^31 is lowered by it and gets it back as the sign bit.
template <class DUInt, class D>
hn::Vec<DUInt> toUnsigned(DUInt dUInt, D d, hn::Vec<D> values)
{
    if constexpr (sizeof(hn::TFromD<D>) == sizeof(std::uint32_t)) {
        const hn::Rebind<std::int32_t, D> dInt;
        const auto half = hn::Set(d, 0x1p31F);
        const auto isUpper = hn::Ge(values, half);
        const auto lowered = hn::IfThenElse(isUpper, hn::Sub(values, half), values);
        const auto signBit = hn::IfThenElseZero(hn::RebindMask(dUInt, isUpper), hn::Set(dUInt, 0x80000000U));
        return hn::Xor(hn::BitCast(dUInt, hn::ConvertTo(dInt, lowered)), signBit);
    } else {
        // Added to a whole number below 2^52, 2^52 leaves that number in the low bits.
        const hn::Rebind<std::uint64_t, D> dBits;
        const auto whole = hn::Trunc(hn::Min(values, hn::Set(d, highest<unsigned int>)));
        return hn::TruncateTo(dUInt, hn::BitCast(dBits, hn::Add(whole, hn::Set(d, 0x1p52))));
    }
}

/// Real numbers to T: clamped, truncated toward zero, NaN is 0.
template <typename T, class D>
auto truncatedTo(D d, hn::Vec<D> values)
{
    const hn::Rebind<T, D> dTo;
    const hn::Rebind<std::int32_t, D> dInt;
    if constexpr (std::is_same_v<T, int>) {
        return toInt(dInt, d, hn::IfThenElseZero(hn::Eq(values, values), values));
    } else {
        const auto positive = hn::IfThenElseZero(hn::Gt(values, hn::Zero(d)), values);
        if constexpr (std::is_same_v<T, unsigned int>) {
            return toUnsigned(dTo, d, positive);
        } else {
            const auto limit = hn::Set(d, static_cast<hn::TFromD<D>>(highest<T>));
            return hn::DemoteTo(dTo, toInt(dInt, d, hn::Min(positive, limit)));
        }
    }
}

/// `double` to `float`: clamped to the finite range; comparisons leave NaN alone.
template <class D>
auto clampedToFloat(D d, hn::Vec<D> values)
{
    const hn::Rebind<float, D> dTo;
    const auto limit = hn::Set(d, static_cast<double>(std::numeric_limits<float>::max()));
    const auto lowered = hn::IfThenElse(hn::Gt(values, limit), limit, values);
    return hn::DemoteTo(dTo, hn::IfThenElse(hn::Lt(lowered, hn::Neg(limit)), hn::Neg(limit), lowered));
}

/// The whole vectors of a run; returns how many pixels they were.
template <typename From, typename To>
std::size_t convertVectors(const From* source, To* destination, std::size_t count)
{
    const hn::ScalableTag<From> d;
    const hn::Rebind<To, decltype(d)> dTo;
    std::size_t i = 0;
    for (; i + hn::Lanes(d) <= count; i += hn::Lanes(d)) {
        const auto values = hn::LoadU(d, source + i);
        if constexpr (std::integral<To>) {
            hn::StoreU(truncatedTo<To>(d, values), dTo, destination + i);
        } else {
            hn::StoreU(clampedToFloat(d, values), dTo, destination + i);
        }
    }
    return i;
}

/// By the rule alone, which the compiler turns into vectors.
template <typename From, typename To>
void convertEach(const From* source, To* destination, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i) {
        destination[i] = convertPixel<To>(source[i]);
    }
}

template <typename From, typename To>
void convertRun(const From* source, To* destination, std::size_t count)
{
    std::size_t done = 0;
    if constexpr (std::floating_point<From> && sizeof(To) <= 4) {
        done = convertVectors(source, destination, count);
    }
    convertEach(source + done, destination + done, count - done);
}

/// Converts into a small buffer and writes that past the cache, which saves reading the destination.
template <typename From, typename To>
void convertStreaming(const From* source, To* destination, std::size_t count)
{
    const hn::ScalableTag<To> d;
    HWY_ALIGN std::array<To, 4096 / sizeof(To)> stage;
    const std::size_t vectorBytes = hn::Lanes(d) * sizeof(To);
    const std::size_t beyond = reinterpret_cast<std::uintptr_t>(destination) % vectorBytes;
    std::size_t done = std::min(count, (vectorBytes - beyond) % vectorBytes / sizeof(To));
    convertRun(source, destination, done);
    for (; done + stage.size() <= count; done += stage.size()) {
        convertRun(source + done, stage.data(), stage.size());
        for (std::size_t i = 0; i < stage.size(); i += hn::Lanes(d)) {
            hn::Stream(hn::Load(d, stage.data() + i), d, destination + done + i);
        }
    }
    hwy::FlushStream();
    convertRun(source + done, destination + done, count - done);
}

template <typename From, typename To>
void convert(const void* source, void* destination, std::size_t count)
{
    const auto* from = static_cast<const From*>(source);
    auto* to = static_cast<To*>(destination);
    if constexpr (std::is_same_v<From, To>) {
        std::memcpy(to, from, count * sizeof(To));
    } else if (count * (sizeof(From) + sizeof(To)) > RTE::lastLevelCacheBytes()) {
        convertStreaming(from, to, count);
    } else {
        convertRun(from, to, count);
    }
}

/// By the number of the destination's type.
using ConvertersFrom = std::array<RowConverter, 8>;

template <typename From>
constexpr ConvertersFrom convertersFrom()
{
    ConvertersFrom converters{};
#define DATAOBJECTS_ENTRY(type, number, name) converters[number] = convert<From, type>;
    DATAOBJECTS_PIXEL_TYPES(DATAOBJECTS_ENTRY)
#undef DATAOBJECTS_ENTRY
    return converters;
}

RowConverter chooseConverter(std::size_t from, std::size_t to)
{
    static constexpr auto table = [] {
        std::array<ConvertersFrom, 8> all{};
#define DATAOBJECTS_ENTRY(type, number, name) all[number] = convertersFrom<type>();
        DATAOBJECTS_PIXEL_TYPES(DATAOBJECTS_ENTRY)
#undef DATAOBJECTS_ENTRY
        return all;
    }();
    return table[from][to];
}

} // namespace DataObjects::Private::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace DataObjects::Private
{

HWY_EXPORT(chooseConverter);

RowConverter rowConverter(E_DataType from, E_DataType to) noexcept
{
    if (!PixelTypes::contains(static_cast<int>(from)) || !PixelTypes::contains(static_cast<int>(to))) {
        return nullptr;
    }
    return HWY_DYNAMIC_DISPATCH(chooseConverter)(static_cast<std::size_t>(from),
                                                 static_cast<std::size_t>(to));
}

} // namespace DataObjects::Private
#endif
