// SPDX-License-Identifier: Apache-2.0
/// \file
/// What each pixel has to become, one value at a time, and the values on which kernels go wrong.
#pragma once

#include "Core/Common/CacheSize.h"
#include "Core/Common/PixelTypes.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <type_traits>
#include <utility>
#include <vector>

namespace PixelReference
{

using Byte = unsigned char;
using Word = unsigned short;
using UInt = unsigned int;

template <typename T>
inline constexpr bool isReal = std::is_floating_point_v<T>;

template <typename T>
inline constexpr T maximum = std::numeric_limits<T>::max();

template <typename T>
inline constexpr T minimum = std::numeric_limits<T>::lowest();

/// From `double` to an integer, by truncation into the range; `nan` is what NaN becomes.
template <typename T>
T truncate(double value, T nan)
{
    if (std::isnan(value)) {
        return nan;
    }
    const double whole = std::trunc(value);
    if (whole <= static_cast<double>(minimum<T>)) {
        return minimum<T>;
    }
    return whole >= static_cast<double>(maximum<T>) ? maximum<T> : static_cast<T>(whole);
}

template <typename To, typename From>
To converted(From value)
{
    if constexpr (std::is_same_v<To, From>) {
        return value;
    } else if constexpr (std::is_same_v<From, UInt> && std::is_same_v<To, int>) {
        return value == 0xFFFFFFFFU ? 0x7FFFFFFF : static_cast<int>(value);
    } else if constexpr (std::is_same_v<From, double> && std::is_same_v<To, float>) {
        if (std::abs(value) > 3.4028234663852886e38) {
            return std::copysign(3.4028234663852886e38F, static_cast<float>(std::copysign(1.0, value)));
        }
        return static_cast<float>(value);
    } else if constexpr (isReal<To>) {
        return static_cast<To>(value);
    } else if constexpr (isReal<From>) {
        return truncate<To>(static_cast<double>(value), 0);
    } else {
        const auto wide = static_cast<std::int64_t>(value);
        if (wide < std::int64_t{minimum<To>}) {
            return minimum<To>;
        }
        return wide > std::int64_t{maximum<To>} ? maximum<To> : static_cast<To>(value);
    }
}

/// Integer arithmetic after the operation in `double`: NaN ends at 0 or the lowest `int`.
template <typename T>
T settled(double value)
{
    return truncate<T>(value, minimum<T>);
}

/// Products and quotients of words are rounded; nothing else is.
template <typename T>
T settledScaled(double value)
{
    if constexpr (std::is_same_v<T, Word>) {
        return settled<T>(value > 0 ? value + 0.5 : value - 0.5);
    } else {
        return settled<T>(value);
    }
}

template <typename T>
T sum(T pixel, double operand)
{
    if constexpr (isReal<T>) {
        return pixel + static_cast<T>(operand);
    } else {
        return settled<T>(static_cast<double>(pixel) + operand);
    }
}

template <typename T>
T difference(T pixel, double operand)
{
    if constexpr (isReal<T>) {
        return pixel - static_cast<T>(operand);
    } else {
        return settled<T>(static_cast<double>(pixel) - operand);
    }
}

template <typename T>
T product(T pixel, double operand)
{
    if constexpr (isReal<T>) {
        return pixel * static_cast<T>(operand);
    } else {
        return settledScaled<T>(static_cast<double>(pixel) * operand);
    }
}

template <typename T>
T quotient(T pixel, double operand)
{
    if (operand == 0.0) {
        return pixel == 0 ? pixel : maximum<T>;
    }
    if constexpr (isReal<T>) {
        return static_cast<T>(static_cast<double>(pixel) / operand);
    } else {
        return settledScaled<T>(static_cast<double>(pixel) / operand);
    }
}

/// Pixel over pixel.
template <typename T>
T ratio(T pixel, T divisor)
{
    if constexpr (isReal<T>) {
        return divisor != 0 ? pixel / divisor : (pixel == 0 ? pixel : maximum<T>);
    } else {
        if (divisor == 0) {
            return pixel > 0 ? maximum<T> : T{0};
        }
        return settled<T>(static_cast<double>(pixel) / static_cast<double>(divisor));
    }
}

/// Numbers at and around every bound of every type, ties, and the strange ones.
inline std::vector<double> remarkableNumbers()
{
    using Limits = std::numeric_limits<double>;
    std::vector<double> numbers{0.0,        0.1, 0.9,  1.005, 1.0 / 3.0, 1e-12,  1e-9, 1.0 - 1e-12,
                                1.0 - 1e-9, 1.7, 10.0, 49.0,  98.0,      1000.0, 1e10, 1e300};
    const double ends[] = {Limits::max(),
                           Limits::min(),
                           Limits::denorm_min(),
                           Limits::infinity(),
                           Limits::quiet_NaN(),
                           double{maximum<float>},
                           double{std::numeric_limits<float>::denorm_min()}};
    numbers.insert(numbers.end(), std::begin(ends), std::end(ends));
    for (const auto& [from, to] : {std::pair(0.5, 0.0), std::pair(1.0, 0.0), std::pair(1.0, 2.0),
                                   std::pair(double{maximum<float>}, 1e300)}) {
        numbers.push_back(std::nextafter(from, to));
    }
    for (const double bound :
         {1.0, 2.0, 127.0, 255.0, 32767.0, 65535.0, 16777216.0, 2147483647.0, 4294967295.0}) {
        for (const double step : {-1.0, -0.5, 0.0, 0.25, 0.5, 1.0, 1.5}) {
            numbers.push_back(bound + step);
        }
    }
    for (std::size_t i = numbers.size(); i-- > 0;) {
        numbers.push_back(-numbers[i]);
    }
    return numbers;
}

/// Random numbers of all magnitudes that matter, whole and broken, of both signs.
inline std::vector<double> randomNumbers(std::size_t count, unsigned int seed)
{
    std::mt19937_64 generator(seed);
    std::uniform_real_distribution<double> exponent(-3.0, 11.0);
    std::vector<double> numbers(count);
    for (double& number : numbers) {
        const double magnitude = std::pow(10.0, exponent(generator));
        const auto form = generator() % 4;
        number = (form % 2 == 0 ? magnitude : std::round(magnitude)) * (form < 2 ? 1.0 : -1.0);
    }
    return numbers;
}

/// More bytes than the caches hold: kernels write so many past them.
inline std::size_t bytesBeyondTheCache()
{
    return RTE::lastLevelCacheBytes() + 50'003;
}

/// Every value of the small types; the remarkable ones and random ones of the others. Never a whole number of
/// vectors long.
template <typename T>
std::vector<T> samples()
{
    std::vector<T> values;
    if constexpr (sizeof(T) <= 2) {
        for (unsigned int value = 0; value <= maximum<T>; ++value) {
            values.push_back(static_cast<T>(value));
        }
    } else {
        for (const std::vector<double>& numbers : {remarkableNumbers(), randomNumbers(3000, 1)}) {
            for (const double number : numbers) {
                if constexpr (isReal<T>) {
                    values.push_back(static_cast<T>(number));
                } else {
                    values.push_back(truncate<T>(number, 0));
                }
            }
        }
    }
    while (values.size() % 8 != 7) {
        values.push_back(maximum<T>);
    }
    return values;
}

} // namespace PixelReference
