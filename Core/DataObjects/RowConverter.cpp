// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/RowConverter.h"

#include "Core/DataObjects/CacheLines.h"
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

/// A whole number added to this has its bits at the low end of the sum.
template <typename Real>
inline constexpr Real shifter = sizeof(Real) == sizeof(float) ? Real{0x1p23} : Real{0x1p52};

/// Numbers within the range of T, which lies below the shifter, to T by truncation.
template <typename T, class D>
hn::Vec<hn::Rebind<T, D>> truncateInRange(D d, hn::Vec<D> values)
{
    const hn::RebindToUnsigned<D> dBits;
    const auto sums = hn::Add(hn::Trunc(values), hn::Set(d, shifter<hn::TFromD<D>>));
    return hn::TruncateTo(hn::Rebind<T, D>(), hn::BitCast(dBits, sums));
}

/// Positive floats to `unsigned int` in two halves: what is above 2^31 is lowered by it and gets it back as
/// the sign bit.
template <class D>
hn::Vec<hn::RebindToUnsigned<D>> toUnsigned(D d, hn::Vec<D> values)
{
    const hn::RebindToUnsigned<D> dUnsigned;
    const auto half = hn::Set(d, 0x1p31F);
    const auto isUpper = hn::Ge(values, half);
    const auto lowered = hn::IfThenElse(isUpper, hn::Sub(values, half), values);
    const auto signBit =
        hn::IfThenElseZero(hn::RebindMask(dUnsigned, isUpper), hn::Set(dUnsigned, 0x80000000U));
    return hn::Xor(hn::BitCast(dUnsigned, hn::ConvertTo(hn::RebindToSigned<D>(), lowered)), signBit);
}

/// Real numbers to T: clamped, truncated toward zero, NaN is 0.
template <typename T, class D>
hn::Vec<hn::Rebind<T, D>> truncateTo(D d, hn::Vec<D> values)
{
    using Real = hn::TFromD<D>;
    if constexpr (std::is_same_v<T, int>) {
        const auto numbers = hn::IfThenElseZero(hn::Eq(values, values), values);
        if constexpr (sizeof(Real) == sizeof(T)) {
            return hn::ConvertTo(hn::Rebind<T, D>(), numbers);
        } else {
            return hn::DemoteTo(hn::Rebind<T, D>(), numbers);
        }
    } else {
        const auto positive = hn::IfThenElseZero(hn::Gt(values, hn::Zero(d)), values);
        if constexpr (sizeof(Real) == sizeof(T)) {
            return toUnsigned(d, positive);
        } else {
            return truncateInRange<T>(d, hn::Min(positive, hn::Set(d, static_cast<Real>(highest<T>))));
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

/// The pairs for which the compiler makes no good vectors of the rule. Without vectors the rule is as good,
/// and Highway's scalar form gives the lowest `int` for what lies just above it.
template <typename From, typename To>
inline constexpr bool isByVectors = HWY_TARGET != HWY_SCALAR &&
                                    ((std::floating_point<From> && sizeof(To) <= 4) ||
                                     (std::is_same_v<From, int> && sizeof(To) == 2));

/// The whole vectors of a run; returns how many pixels they were.
template <typename From, typename To>
std::size_t convertVectors(const From* source, To* destination, std::size_t count)
{
    const hn::ScalableTag<From> d;
    const hn::Rebind<To, decltype(d)> dTo;
    std::size_t i = 0;
    for (; i + hn::Lanes(d) <= count; i += hn::Lanes(d)) {
        const auto values = hn::LoadU(d, source + i);
        if constexpr (std::is_same_v<From, int>) {
            hn::StoreU(hn::DemoteTo(dTo, values), dTo, destination + i);
        } else if constexpr (std::integral<To>) {
            hn::StoreU(truncateTo<To>(d, values), dTo, destination + i);
        } else {
            hn::StoreU(clampedToFloat(d, values), dTo, destination + i);
        }
    }
    return i;
}

template <typename From, typename To>
using Rule = To (*)(From);

/// By the rule alone, which the compiler turns into vectors.
template <typename From, typename To, Rule<From, To> rule>
void convertEach(const From* source, To* destination, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i) {
        destination[i] = rule(source[i]);
    }
}

template <typename From, typename To, Rule<From, To> rule>
void convertRun(const From* source, To* destination, std::size_t count)
{
    std::size_t done = 0;
    if constexpr (isByVectors<From, To>) {
        done = convertVectors(source, destination, count);
    }
    convertEach<From, To, rule>(source + done, destination + done, count - done);
}

/// Converts into a small buffer and writes that past the cache, which saves reading the destination first.
/// The destination begins at a cache line.
template <typename From, typename To, Rule<From, To> rule>
void convertStreaming(const From* source, To* destination, std::size_t count)
{
    // Small steps keep reading and writing interleaved.
    const hn::ScalableTag<To> d;
    HWY_ALIGN std::array<To, 4 * cacheLine / sizeof(To)> stage;
    std::size_t done = 0;
    for (; done + stage.size() <= count; done += stage.size()) {
        const From* const step = source + done;
        prefetchAhead(step, stage.size());
        convertRun<From, To, rule>(step, stage.data(), stage.size());
        for (std::size_t i = 0; i < stage.size(); i += hn::Lanes(d)) {
            hn::Stream(hn::Load(d, stage.data() + i), d, destination + done + i);
        }
    }
    hwy::FlushStream();
    convertRun<From, To, rule>(source + done, destination + done, count - done);
}

template <typename From, typename To, Rule<From, To> rule = convertPixel<To, From>>
void convert(const void* source, void* destination, std::size_t count)
{
    const auto* from = static_cast<const From*>(source);
    auto* to = static_cast<To*>(destination);
    if constexpr (std::is_same_v<From, To>) {
        std::memcpy(to, from, count * sizeof(To));
    } else {
        const std::size_t head = pixelsBeforeLine(to, count);
        const auto body = isWorthStreaming(count * (sizeof(From) + sizeof(To)))
                              ? convertStreaming<From, To, rule>
                              : convertRun<From, To, rule>;
        convertEach<From, To, rule>(from, to, head);
        body(from + head, to + head, count - head);
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

RowConverter chooseSaturating(std::size_t from, std::size_t to)
{
    const bool keepsBits = from == PixelTypes::number<unsigned int> && to == PixelTypes::number<int>;
    return keepsBits ? convert<unsigned int, int, clampInteger<int, unsigned int>>
                     : chooseConverter(from, to);
}

} // namespace DataObjects::Private::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace DataObjects::Private
{

HWY_EXPORT(chooseConverter);
HWY_EXPORT(chooseSaturating);

namespace
{

bool areElementTypes(E_DataType from, E_DataType to) noexcept
{
    return PixelTypes::contains(static_cast<int>(from)) && PixelTypes::contains(static_cast<int>(to));
}

} // namespace

RowConverter rowConverter(E_DataType from, E_DataType to) noexcept
{
    return areElementTypes(from, to) ? HWY_DYNAMIC_DISPATCH(chooseConverter)(static_cast<std::size_t>(from),
                                                                             static_cast<std::size_t>(to))
                                     : nullptr;
}

RowConverter saturatingRowConverter(E_DataType from, E_DataType to) noexcept
{
    return areElementTypes(from, to) ? HWY_DYNAMIC_DISPATCH(chooseSaturating)(static_cast<std::size_t>(from),
                                                                              static_cast<std::size_t>(to))
                                     : nullptr;
}

} // namespace DataObjects::Private
#endif
