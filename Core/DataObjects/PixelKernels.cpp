// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/PixelKernels.h"

#include "Core/Common/CacheSize.h"
#include "Core/Common/PixelTypes.h"
#include "Core/DataObjects/PixelRules.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <numeric>
#include <tuple>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "Core/DataObjects/PixelKernels.cpp"
#include <hwy/foreach_target.h>

#include <hwy/cache_control.h>
#include <hwy/highway.h>

#ifndef DATAOBJECTS_PIXEL_KERNELS
#define DATAOBJECTS_PIXEL_KERNELS
namespace DataObjects::Private
{

/// The kernels of one element type for one kind of processor.
template <typename T>
struct KernelsOf
{
    void (*fill)(T*, std::size_t, T);
    void (*multiply)(T*, std::size_t, double);
    void (*add)(T*, std::size_t, double);
    void (*divide)(T*, std::size_t, double);
    void (*divideBy)(T*, std::size_t, const T*);
};

using AllKernels = std::tuple<KernelsOf<unsigned char>, KernelsOf<unsigned short>, KernelsOf<int>,
                              KernelsOf<unsigned int>, KernelsOf<float>, KernelsOf<double>>;

} // namespace DataObjects::Private
#endif

HWY_BEFORE_NAMESPACE();
namespace DataObjects::Private::HWY_NAMESPACE
{

namespace hn = hwy::HWY_NAMESPACE;

/// \name Loops over one rule, which the compiler turns into vectors
/// \{
template <typename T>
void addEach(T* pixels, std::size_t count, double operand)
{
    for (std::size_t i = 0; i < count; ++i) {
        pixels[i] = Rules<T>::sum(pixels[i], operand);
    }
}

template <typename T>
void multiplyEach(T* pixels, std::size_t count, double operand)
{
    for (std::size_t i = 0; i < count; ++i) {
        pixels[i] = Rules<T>::product(pixels[i], operand);
    }
}

template <typename T>
void divideEach(T* pixels, std::size_t count, double operand)
{
    for (std::size_t i = 0; i < count; ++i) {
        pixels[i] = Rules<T>::quotient(pixels[i], operand);
    }
}

template <typename T>
void divideEachByZero(T* pixels, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i) {
        pixels[i] = Rules<T>::overZero(pixels[i]);
    }
}

template <typename T>
void divideEachBy(T* pixels, std::size_t count, const T* divisors)
{
    for (std::size_t i = 0; i < count; ++i) {
        pixels[i] = Rules<T>::ratio(pixels[i], divisors[i]);
    }
}
/// \}

/// Pixels before the first one on a vector's boundary, at most `count`.
template <typename T, class D>
std::size_t unalignedPixels(D d, const T* pixels, std::size_t count)
{
    const std::size_t bytes = hn::Lanes(d) * sizeof(T);
    const std::size_t beyond = reinterpret_cast<std::uintptr_t>(pixels) % bytes;
    return std::min(count, (bytes - beyond) % bytes / sizeof(T));
}

template <typename T>
void fill(T* pixels, std::size_t count, T value)
{
    const hn::ScalableTag<T> d;
    const auto values = hn::Set(d, value);
    const bool streams = count * sizeof(T) > RTE::lastLevelCacheBytes();
    std::size_t i = unalignedPixels(d, pixels, count);
    std::fill_n(pixels, i, value);
    if (streams) {
        for (; i + hn::Lanes(d) <= count; i += hn::Lanes(d)) {
            hn::Stream(values, d, pixels + i);
        }
        hwy::FlushStream();
    } else {
        for (; i + hn::Lanes(d) <= count; i += hn::Lanes(d)) {
            hn::Store(values, d, pixels + i);
        }
    }
    std::fill(pixels + i, pixels + count, value);
}

/// Adds a whole number within -highest to highest of T, saturating.
template <typename T>
void addWhole(T* pixels, std::size_t count, int operand)
{
    const hn::ScalableTag<T> d;
    const auto up = hn::Set(d, static_cast<T>(std::max(operand, 0)));
    const auto down = hn::Set(d, static_cast<T>(std::max(-operand, 0)));
    std::size_t i = unalignedPixels(d, pixels, count);
    addEach(pixels, i, operand);
    for (; i + hn::Lanes(d) <= count; i += hn::Lanes(d)) {
        const auto raised = hn::SaturatedAdd(hn::Load(d, pixels + i), up);
        hn::Store(hn::SaturatedSub(raised, down), d, pixels + i);
    }
    addEach(pixels + i, count - i, operand);
}

/// Adds to bytes or words. Truncated sums are sums with the whole part of the operand, as long as rounding in
/// `double` cannot lift a sum to the next whole number: all sums that matter lie below 2^17, where doubles
/// are 2^-36 apart, so a fraction of at most 1 - 2^-36 never does.
template <typename T>
void addToSmall(T* pixels, std::size_t count, double operand)
{
    const double whole = std::floor(operand);
    if (operand - whole <= 1 - 0x1p-36) {
        addWhole(pixels, count, static_cast<int>(std::clamp(whole, -highest<T>, highest<T>)));
    } else {
        addEach(pixels, count, operand);
    }
}

/// Replaces each byte by the entry of a table.
void lookUp(unsigned char* pixels, std::size_t count, const std::array<unsigned char, 256>& table)
{
    std::size_t i = 0;
#if HWY_ARCH_X86 && HWY_TARGET != HWY_SCALAR
    // A byte shuffle looks up 16 entries and gives 0 for an index below 0. Step k, with the index lowered by
    // 16 k, adds by exclusive or what distinguishes row k of the table from the row before.
    constexpr std::size_t halfRows = 8;
    const hn::ScalableTag<unsigned char> d;
    const hn::ScalableTag<signed char> dIndex;
    std::array<hn::Vec<decltype(d)>, 2 * halfRows> steps;
    for (std::size_t row = 0; row < steps.size(); ++row) {
        steps[row] = hn::LoadDup128(d, table.data() + 16 * row);
    }
    for (std::size_t row = halfRows; --row > 0;) {
        steps[row] = hn::Xor(steps[row], steps[row - 1]);
        steps[row + halfRows] = hn::Xor(steps[row + halfRows], steps[row + halfRows - 1]);
    }
    const auto rowLength = hn::Set(dIndex, 16);
    for (; i + hn::Lanes(d) <= count; i += hn::Lanes(d)) {
        const auto values = hn::LoadU(d, pixels + i);
        auto lower = hn::BitCast(dIndex, values);
        auto upper = hn::BitCast(dIndex, hn::Xor(values, hn::Set(d, 0x80)));
        auto result = hn::Zero(d);
#pragma GCC unroll 8
        for (std::size_t row = 0; row < halfRows; ++row) {
            result = hn::Xor3(result, hn::TableLookupBytesOr0(steps[row], hn::BitCast(d, lower)),
                              hn::TableLookupBytesOr0(steps[row + halfRows], hn::BitCast(d, upper)));
            lower = hn::SaturatedSub(lower, rowLength);
            upper = hn::SaturatedSub(upper, rowLength);
        }
        hn::StoreU(result, d, pixels + i);
    }
#endif
    for (; i < count; ++i) {
        pixels[i] = table[pixels[i]];
    }
}

using Pass = void (*)(unsigned char*, std::size_t, double);

/// A byte has 256 values: the pass runs over those, the pixels are looked up.
template <Pass pass>
void lookUpResultOf(unsigned char* pixels, std::size_t count, double operand)
{
    std::array<unsigned char, 256> table;
    if (count < table.size()) {
        pass(pixels, count, operand);
        return;
    }
    std::iota(table.begin(), table.end(), static_cast<unsigned char>(0));
    pass(table.data(), table.size(), operand);
    lookUp(pixels, count, table);
}

/// Multiplies words in one step, rounding to the nearest and to even.
void scaleWords(unsigned short* pixels, std::size_t count, double factor)
{
    // Added to a number below 2^16, this leaves the rounded number in the low bits of the sum.
    constexpr double shifter = 0x1p52;
    const hn::ScalableTag<double> d;
    const hn::Rebind<std::uint64_t, decltype(d)> dBits;
    const hn::Rebind<std::int32_t, decltype(d)> dInt;
    const hn::Rebind<unsigned short, decltype(d)> dWord;
    const auto factors = hn::Set(d, factor);
    const auto shifters = hn::Set(d, shifter);
    const auto limit = hn::Set(d, shifter + highest<unsigned short>);
    std::size_t i = 0;
    for (; i + hn::Lanes(d) <= count; i += hn::Lanes(d)) {
        const auto values = hn::PromoteTo(d, hn::PromoteTo(dInt, hn::LoadU(dWord, pixels + i)));
        const auto sums = hn::Min(hn::MulAdd(values, factors, shifters), limit);
        hn::StoreU(hn::TruncateTo(dWord, hn::BitCast(dBits, sums)), dWord, pixels + i);
    }
    multiplyEach(pixels + i, count - i, factor);
}

using WordPass = void (*)(unsigned short*, std::size_t, double);

/// Tries all 65536 words: does scaling by `factor` equal `pass`?
template <WordPass pass>
bool scalingEquals(double factor, double operand)
{
    std::array<unsigned short, 1024> expected;
    std::array<unsigned short, 1024> scaled;
    for (std::size_t first = 0; first < 0x10000; first += expected.size()) {
        std::iota(expected.begin(), expected.end(), static_cast<unsigned short>(first));
        scaled = expected;
        pass(expected.data(), expected.size(), operand);
        scaleWords(scaled.data(), scaled.size(), factor);
        if (std::memcmp(expected.data(), scaled.data(), sizeof expected) != 0) {
            return false;
        }
    }
    return true;
}

/// The exact passes over words round twice, and halves up. Scaling by a factor that is a trace larger lifts
/// exact halves over the tie, and nothing else for nearly every operand; where the image is large, it is
/// tried whether this operand is one of them.
template <WordPass pass>
void scaleOr(unsigned short* pixels, std::size_t count, double factor, double operand)
{
    constexpr std::size_t worthTheTrial = 1U << 18U;
    const double lifted = factor * (1 + 0x1p-48);
    if (count >= worthTheTrial && scalingEquals<pass>(lifted, operand)) {
        scaleWords(pixels, count, lifted);
    } else {
        pass(pixels, count, operand);
    }
}

/// Divides words or bytes in `float`. The approximate reciprocal with one Newton step is good to 2^-20, and a
/// quotient of half a pixel more stays away from whole numbers by 2^-17 of itself, so truncation is exact.
template <typename T>
std::size_t divideSmallBy(T* pixels, std::size_t count, const T* divisors)
{
    const hn::ScalableTag<float> d;
    const hn::Rebind<std::int32_t, decltype(d)> dInt;
    const hn::Rebind<T, decltype(d)> dSmall;
    const auto half = hn::Set(d, 0.5F);
    const auto two = hn::Set(d, 2.0F);
    std::size_t i = 0;
    for (; i + hn::Lanes(d) <= count; i += hn::Lanes(d)) {
        const auto above = hn::PromoteTo(dInt, hn::LoadU(dSmall, pixels + i));
        const auto below = hn::ConvertTo(d, hn::PromoteTo(dInt, hn::LoadU(dSmall, divisors + i)));
        const auto near = hn::ApproximateReciprocal(below);
        const auto reciprocal = hn::Mul(near, hn::NegMulAdd(near, below, two));
        const auto quotient =
            hn::ConvertTo(dInt, hn::Mul(hn::Add(hn::ConvertTo(d, above), half), reciprocal));
        const auto saturated = hn::IfThenElseZero(hn::Gt(above, hn::Zero(dInt)), hn::Set(dInt, 0xFFFF));
        const auto isZero = hn::RebindMask(dInt, hn::Eq(below, hn::Zero(d)));
        hn::StoreU(hn::DemoteTo(dSmall, hn::IfThenElse(isZero, saturated, quotient)), dSmall, pixels + i);
    }
    return i;
}

template <typename T>
void multiply(T* pixels, std::size_t count, double operand)
{
    if constexpr (sizeof(T) == 1) {
        lookUpResultOf<multiplyEach<T>>(pixels, count, operand);
    } else if constexpr (sizeof(T) == 2) {
        scaleOr<multiplyEach<T>>(pixels, count, operand, operand);
    } else {
        multiplyEach(pixels, count, operand);
    }
}

template <typename T>
void add(T* pixels, std::size_t count, double operand)
{
    if constexpr (sizeof(T) <= 2) {
        addToSmall(pixels, count, operand);
    } else {
        addEach(pixels, count, operand);
    }
}

template <typename T>
void divide(T* pixels, std::size_t count, double operand)
{
    if (operand == 0) {
        divideEachByZero(pixels, count);
    } else if constexpr (sizeof(T) == 1) {
        lookUpResultOf<divideEach<T>>(pixels, count, operand);
    } else if constexpr (sizeof(T) == 2) {
        scaleOr<divideEach<T>>(pixels, count, 1 / operand, operand);
    } else {
        divideEach(pixels, count, operand);
    }
}

template <typename T>
void divideBy(T* pixels, std::size_t count, const T* divisors)
{
    std::size_t done = 0;
#if HWY_ARCH_X86
    if constexpr (sizeof(T) <= 2) {
        done = divideSmallBy(pixels, count, divisors);
    }
#endif
    divideEachBy(pixels + done, count - done, divisors + done);
}

template <typename T>
constexpr KernelsOf<T> kernelsOf{fill<T>, multiply<T>, add<T>, divide<T>, divideBy<T>};

const AllKernels& allKernels()
{
    static constexpr AllKernels kernels{kernelsOf<unsigned char>, kernelsOf<unsigned short>,
                                        kernelsOf<int>,           kernelsOf<unsigned int>,
                                        kernelsOf<float>,         kernelsOf<double>};
    return kernels;
}

} // namespace DataObjects::Private::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace DataObjects::Private
{

HWY_EXPORT(allKernels);

namespace
{

template <typename T>
const KernelsOf<T>& kernels()
{
    return std::get<KernelsOf<T>>(HWY_DYNAMIC_DISPATCH(allKernels)());
}

} // namespace

template <typename T>
void fill(T* pixels, std::size_t count, T value)
{
    // Not the value but the bits decide: -0.0 is no block of zeros.
    const auto bytes = std::bit_cast<std::array<unsigned char, sizeof(T)>>(value);
    if (bytes == std::array<unsigned char, sizeof(T)>{} || sizeof(T) == 1) {
        std::memset(pixels, bytes[0], count * sizeof(T));
    } else {
        kernels<T>().fill(pixels, count, value);
    }
}

template <typename T>
void multiply(T* pixels, std::size_t count, double operand)
{
    kernels<T>().multiply(pixels, count, operand);
}

template <typename T>
void add(T* pixels, std::size_t count, double operand)
{
    kernels<T>().add(pixels, count, operand);
}

template <typename T>
void divide(T* pixels, std::size_t count, double operand)
{
    kernels<T>().divide(pixels, count, operand);
}

template <typename T>
void divideBy(T* pixels, std::size_t count, const T* divisors)
{
    kernels<T>().divideBy(pixels, count, divisors);
}

#define DATAOBJECTS_INSTANTIATE(type, number, name)                                                          \
    template void fill(type*, std::size_t, type);                                                            \
    template void multiply(type*, std::size_t, double);                                                      \
    template void add(type*, std::size_t, double);                                                           \
    template void divide(type*, std::size_t, double);                                                        \
    template void divideBy(type*, std::size_t, const type*);
DATAOBJECTS_PIXEL_TYPES(DATAOBJECTS_INSTANTIATE)
#undef DATAOBJECTS_INSTANTIATE

} // namespace DataObjects::Private
#endif
