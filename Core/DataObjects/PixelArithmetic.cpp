// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/PixelArithmetic.h"

#include "Core/Common/PixelTypes.h"
#include "Core/DataObjects/CacheLines.h"
#include "Core/DataObjects/PixelRules.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <numeric>
#include <tuple>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "Core/DataObjects/PixelArithmetic.cpp"
#include <hwy/foreach_target.h>

#include <hwy/cache_control.h>
#include <hwy/highway.h>

#ifndef DATAOBJECTS_PIXEL_ARITHMETIC
#define DATAOBJECTS_PIXEL_ARITHMETIC
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

/// Bytes that a plain loop takes between two looks ahead; whole vectors on every processor.
inline constexpr std::size_t stepBytes = 1024;

/// Runs a plain loop from a cache line on, after the pixels before it.
template <auto pass, typename T>
void alongLines(T* pixels, std::size_t count, double operand)
{
    constexpr std::size_t step = stepBytes / sizeof(T);
    std::size_t done = pixelsBeforeLine(pixels, count);
    pass(pixels, done, operand);
    for (; done + step <= count; done += step) {
        prefetchAhead(pixels + done, step);
        pass(pixels + done, step, operand);
    }
    pass(pixels + done, count - done, operand);
}

template <typename T>
void fill(T* pixels, std::size_t count, T value)
{
    const hn::ScalableTag<T> d;
    const auto values = hn::Set(d, value);
    std::size_t i = pixelsBeforeLine(pixels, count);
    std::fill_n(pixels, i, value);
    // Other stores read each line first, which for a fill is half the work.
    if (isWorthStreaming(4 * count * sizeof(T))) {
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
    std::size_t i = pixelsBeforeLine(pixels, count);
    addEach(pixels, i, operand);
    for (; i + hn::Lanes(d) <= count; i += hn::Lanes(d)) {
        prefetchAhead(pixels + i);
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
        prefetchAhead(pixels + i);
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

/// Multiplies words by a factor that is not negative, rounding half up.
void scaleWords(unsigned short* pixels, std::size_t count, double factor)
{
    std::size_t i = pixelsBeforeLine(pixels, count);
    multiplyEach(pixels, i, factor);
#if HWY_TARGET != HWY_SCALAR
    // Ored into a whole number, the bits of 2^52 make it a double that is larger by 2^52.
    constexpr double offset = 0x1p52;
    // Added to a number from 1/2 to 2^36, this rounds it down to a multiple of 2^-16: the whole part ends up
    // in the second lowest 16 bits. A sum halfway between two multiples goes to the even one, so whole
    // numbers stay.
    constexpr double floorShifter = 0x1p36 - 0x1p-17;
    const hn::ScalableTag<double> d;
    const hn::RebindToUnsigned<decltype(d)> dBits;
    const hn::Repartition<std::uint32_t, decltype(d)> dPair;
    const hn::Rebind<unsigned short, decltype(dPair)> dWord;
    const auto offsets = hn::Set(d, offset);
    const auto lower = hn::Set(dBits, 0xFFFFFFFFU);
    const auto factors = hn::Set(d, std::min(factor, std::numeric_limits<double>::max()));
    const auto half = hn::Set(d, 0.5);
    const auto limit = hn::Set(d, highest<unsigned short> + 0.5);
    const auto shifter = hn::Set(d, floorShifter);
    for (; i + hn::Lanes(dPair) <= count; i += hn::Lanes(dPair)) {
        prefetchAhead(pixels + i);
        const auto pairs = hn::BitCast(dBits, hn::PromoteTo(dPair, hn::LoadU(dWord, pixels + i)));
        const auto evenBits = hn::Or(hn::And(pairs, lower), hn::BitCast(dBits, offsets));
        const auto oddBits = hn::Or(hn::ShiftRight<32>(pairs), hn::BitCast(dBits, offsets));
        const auto even = hn::Mul(hn::Sub(hn::BitCast(d, evenBits), offsets), factors);
        const auto odd = hn::Mul(hn::Sub(hn::BitCast(d, oddBits), offsets), factors);
        const auto evenFloor = hn::Add(hn::Min(hn::Add(even, half), limit), shifter);
        const auto oddFloor = hn::Add(hn::Min(hn::Add(odd, half), limit), shifter);
        const auto evenWords = hn::BitCast(dPair, hn::ShiftRight<16>(hn::BitCast(dBits, evenFloor)));
        const auto oddWords = hn::BitCast(dPair, hn::ShiftLeft<16>(hn::BitCast(dBits, oddFloor)));
        hn::StoreU(hn::TruncateTo(dWord, hn::OddEven(oddWords, evenWords)), dWord, pixels + i);
    }
#endif
    multiplyEach(pixels + i, count - i, factor);
}

void multiplyWords(unsigned short* pixels, std::size_t count, double operand)
{
    if (operand >= 0) {
        scaleWords(pixels, count, operand);
    } else {
        std::fill_n(pixels, count, static_cast<unsigned short>(0));
    }
}

/// Tries all 65536 words: does multiplication by `factor` equal division by `divisor`?
bool isReciprocal(double factor, double divisor)
{
    std::array<unsigned short, 1024> quotients;
    std::array<unsigned short, 1024> products;
    for (std::size_t first = 0; first < 0x10000; first += quotients.size()) {
        std::iota(quotients.begin(), quotients.end(), static_cast<unsigned short>(first));
        products = quotients;
        divideEach(quotients.data(), quotients.size(), divisor);
        multiplyWords(products.data(), products.size(), factor);
        if (quotients != products) {
            return false;
        }
    }
    return true;
}

/// Division takes several times as long as multiplication, which for nearly all divisors rounds to the same
/// words: with the reciprocal or, where that fell short of a tie, with the next larger number.
void divideWords(unsigned short* pixels, std::size_t count, double operand)
{
    constexpr std::size_t worthTheTrial = 1U << 18U;
    if (count >= worthTheTrial) {
        const double reciprocal = 1 / operand;
        const double larger = std::nextafter(reciprocal, std::numeric_limits<double>::infinity());
        for (const double factor : {reciprocal, larger}) {
            if (isReciprocal(factor, operand)) {
                multiplyWords(pixels, count, factor);
                return;
            }
        }
    }
    alongLines<divideEach<unsigned short>>(pixels, count, operand);
}

/// \name Quotients of pixels by way of approximate reciprocals
///
/// For whole numbers a and b a quotient that is no whole number stays away from the next one by 1 / b, which
/// is at least 1 / a' of the quotient, where a' is the highest pixel. So the reciprocal may err, as long as
/// it errs upward by less: truncation then gives the exact quotient. Each returns how many pixels it did.
/// \{

/// Bytes need the twelve bits of the approximation, words one Newton step more. What is divided by 0 becomes
/// infinite and is clamped, except that 0 becomes NaN and ends as 0.
template <typename T>
std::size_t divideVectorsBy(T* pixels, std::size_t count, const T* divisors)
{
    constexpr float upward = sizeof(T) == 1 ? 1 + 0x1p-10F : 1 + 0x1p-18F;
    // As in scaleWords, to multiples of 1/2; needs a number of at least 1/4.
    constexpr float floorShifter = 0x1p22F - 0.25F;
    const hn::ScalableTag<float> d;
    const hn::RebindToUnsigned<decltype(d)> dBits;
    const hn::RebindToSigned<decltype(d)> dInt;
    const hn::Rebind<T, decltype(d)> dPixel;
    const auto half = hn::Set(d, 0.5F);
    const auto two = hn::Set(d, 2.0F);
    const auto limit = hn::Set(d, static_cast<float>(highest<T>));
    std::size_t i = 0;
    for (; i + hn::Lanes(d) <= count; i += hn::Lanes(d)) {
        prefetchAhead(pixels + i);
        prefetchAhead(divisors + i);
        const auto above = hn::ConvertTo(d, hn::PromoteTo(dInt, hn::LoadU(dPixel, pixels + i)));
        const auto below = hn::ConvertTo(d, hn::PromoteTo(dInt, hn::LoadU(dPixel, divisors + i)));
        auto reciprocal = hn::ApproximateReciprocal(below);
        if constexpr (sizeof(T) == 2) {
            const auto refined = hn::Mul(reciprocal, hn::NegMulAdd(reciprocal, below, two));
            reciprocal = hn::IfThenElse(hn::Eq(below, hn::Zero(d)), reciprocal, refined);
        }
        const auto quotient = hn::Mul(above, hn::Mul(reciprocal, hn::Set(d, upward)));
        const auto number = hn::IfThenElse(hn::Gt(quotient, half), quotient, half);
        const auto floored = hn::Add(hn::Min(number, limit), hn::Set(d, floorShifter));
        hn::StoreU(hn::TruncateTo(dPixel, hn::ShiftRight<1>(hn::BitCast(dBits, floored))), dPixel,
                   pixels + i);
    }
    return i;
}

/// The reciprocal of whole numbers: two Newton steps make 45 bits of it, the second one errs upward.
template <class D>
hn::Vec<D> upwardReciprocal(D d, hn::Vec<D> numbers, hn::Vec<hn::Rebind<float, D>> rounded)
{
    const auto two = hn::Set(d, 2.0);
    const auto near = hn::PromoteTo(d, hn::ApproximateReciprocal(rounded));
    const auto nearer = hn::Mul(near, hn::NegMulAdd(near, numbers, two));
    return hn::Mul(nearer, hn::NegMulAdd(nearer, numbers, hn::Set(d, 2 + 0x1p-38)));
}

inline std::size_t divideVectorsBy(int* pixels, std::size_t count, const int* divisors)
{
    const hn::ScalableTag<double> d;
    const hn::Rebind<float, decltype(d)> dFloat;
    const hn::Rebind<int, decltype(d)> dInt;
    const auto zero = hn::Zero(dInt);
    std::size_t i = 0;
    for (; i + hn::Lanes(d) <= count; i += hn::Lanes(d)) {
        prefetchAhead(pixels + i);
        prefetchAhead(divisors + i);
        const auto above = hn::LoadU(dInt, pixels + i);
        const auto below = hn::LoadU(dInt, divisors + i);
        const auto reciprocal = upwardReciprocal(d, hn::PromoteTo(d, below), hn::ConvertTo(dFloat, below));
        const auto quotient = hn::DemoteTo(dInt, hn::Mul(hn::PromoteTo(d, above), reciprocal));
        const auto overZero =
            hn::IfThenElseZero(hn::Gt(above, zero), hn::Set(dInt, std::numeric_limits<int>::max()));
        hn::StoreU(hn::IfThenElse(hn::Eq(below, zero), overZero, quotient), dInt, pixels + i);
    }
    return i;
}

template <class D>
hn::Vec<D> toDouble(D d, hn::Vec<hn::Rebind<unsigned int, D>> numbers)
{
    const hn::RebindToUnsigned<D> dBits;
    const auto offset = hn::Set(d, 0x1p52);
    return hn::Sub(hn::BitCast(d, hn::Or(hn::PromoteTo(dBits, numbers), hn::BitCast(dBits, offset))), offset);
}

inline std::size_t divideVectorsBy(unsigned int* pixels, std::size_t count, const unsigned int* divisors)
{
    constexpr double floorShifter = 0x1p42 - 0x1p-11;
    const hn::ScalableTag<double> d;
    const hn::RebindToUnsigned<decltype(d)> dBits;
    const hn::Rebind<float, decltype(d)> dFloat;
    const hn::Rebind<unsigned int, decltype(d)> dPixel;
    const auto half = hn::Set(d, 0.5);
    const auto zero = hn::Zero(dPixel);
    std::size_t i = 0;
    for (; i + hn::Lanes(d) <= count; i += hn::Lanes(d)) {
        prefetchAhead(pixels + i);
        prefetchAhead(divisors + i);
        const auto above = hn::LoadU(dPixel, pixels + i);
        const auto below = hn::LoadU(dPixel, divisors + i);
        const auto numbers = toDouble(d, below);
        const auto reciprocal = upwardReciprocal(d, numbers, hn::DemoteTo(dFloat, numbers));
        const auto number = hn::Max(hn::Mul(toDouble(d, above), reciprocal), half);
        const auto floored = hn::Add(number, hn::Set(d, floorShifter));
        const auto quotient = hn::TruncateTo(dPixel, hn::ShiftRight<10>(hn::BitCast(dBits, floored)));
        const auto overZero = hn::IfThenElse(hn::Eq(above, zero), zero, hn::Not(zero));
        hn::StoreU(hn::IfThenElse(hn::Eq(below, zero), overZero, quotient), dPixel, pixels + i);
    }
    return i;
}
/// \}

template <typename T>
void multiply(T* pixels, std::size_t count, double operand)
{
    if constexpr (sizeof(T) == 1) {
        lookUpResultOf<multiplyEach<T>>(pixels, count, operand);
    } else if constexpr (sizeof(T) == 2) {
        multiplyWords(pixels, count, operand);
    } else {
        alongLines<multiplyEach<T>>(pixels, count, operand);
    }
}

template <typename T>
void add(T* pixels, std::size_t count, double operand)
{
    if constexpr (sizeof(T) <= 2) {
        addToSmall(pixels, count, operand);
    } else {
        alongLines<addEach<T>>(pixels, count, operand);
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
        divideWords(pixels, count, operand);
    } else {
        alongLines<divideEach<T>>(pixels, count, operand);
    }
}

template <typename T>
void divideBy(T* pixels, std::size_t count, const T* divisors)
{
    std::size_t done = pixelsBeforeLine(pixels, count);
    divideEachBy(pixels, done, divisors);
#if HWY_ARCH_X86 && HWY_TARGET != HWY_SCALAR
    if constexpr (std::integral<T>) {
        done += divideVectorsBy(pixels + done, count - done, divisors + done);
    }
#endif
    constexpr std::size_t step = stepBytes / sizeof(T);
    for (; done + step <= count; done += step) {
        prefetchAhead(pixels + done, step);
        prefetchAhead(divisors + done, step);
        divideEachBy(pixels + done, step, divisors + done);
    }
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
    if (count == 0) {
        return;
    }
    // Not the value but the bits decide: -0.0 is no block of zeros.
    const auto bytes = std::bit_cast<std::array<unsigned char, sizeof(T)>>(value);
    const bool isOneByte = bytes == std::array<unsigned char, sizeof(T)>{} || sizeof(T) == 1;
    // Beyond the cache memset is half as fast as streaming stores.
    if (isOneByte && !isWorthStreaming(2 * count * sizeof(T))) {
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
