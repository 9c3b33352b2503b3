// SPDX-License-Identifier: Apache-2.0
/// \file
/// What one pixel becomes. Kernels are faster forms of these rules and equal them bit for bit.
#pragma once

#include <algorithm>
#include <concepts>
#include <limits>
#include <type_traits>
#include <utility>

namespace DataObjects::Private
{

/// The bounds of an integer type, exact in `double`.
template <std::integral T>
inline constexpr double lowest = static_cast<double>(std::numeric_limits<T>::min());
template <std::integral T>
inline constexpr double highest = static_cast<double>(std::numeric_limits<T>::max());

/// Integers to integers: clamped.
template <std::integral To, std::integral From>
[[nodiscard]] constexpr To clampInteger(From value) noexcept
{
    using Limits = std::numeric_limits<To>;
    if (std::cmp_less(value, Limits::min())) {
        return Limits::min();
    }
    return std::cmp_greater(value, Limits::max()) ? Limits::max() : static_cast<To>(value);
}

/// `unsigned int` to `int`: the bits as they are. Only the highest value saturates, which callers rely on.
[[nodiscard]] constexpr int keepBits(unsigned int value) noexcept
{
    return static_cast<int>(value == 0xFFFFFFFFU ? 0x7FFFFFFFU : value);
}

/// Real numbers to integers: clamped, truncated toward zero, NaN is 0.
template <std::integral To, std::floating_point From>
[[nodiscard]] constexpr To truncateSaturated(From value) noexcept
{
    if (value != value) {
        return 0;
    }
    if (value <= static_cast<From>(lowest<To>)) {
        return std::numeric_limits<To>::min();
    }
    return value >= static_cast<From>(highest<To>) ? std::numeric_limits<To>::max() : static_cast<To>(value);
}

/// `double` to `float`: clamped to the finite range, NaN stays.
[[nodiscard]] constexpr float clampToFloat(double value) noexcept
{
    constexpr double limit = std::numeric_limits<float>::max();
    return static_cast<float>(std::clamp(value, -limit, limit));
}

/// The conversion between any two of the element types.
template <typename To, typename From>
[[nodiscard]] constexpr To convertPixel(From value) noexcept
{
    if constexpr (std::is_same_v<From, unsigned int> && std::is_same_v<To, int>) {
        return keepBits(value);
    } else if constexpr (std::is_same_v<From, double> && std::is_same_v<To, float>) {
        return clampToFloat(value);
    } else if constexpr (std::floating_point<To>) {
        return static_cast<To>(value);
    } else if constexpr (std::floating_point<From>) {
        return truncateSaturated<To>(value);
    } else {
        return clampInteger<To>(value);
    }
}

/// Arithmetic on integers: formed in `double`, clamped, truncated; NaN becomes the lowest value.
template <typename T>
struct Rules
{
    [[nodiscard]] static constexpr T fromDouble(double value) noexcept
    {
        const double raised = value > lowest<T> ? value : lowest<T>;
        return static_cast<T>(raised < highest<T> ? raised : highest<T>);
    }
    /// `unsigned short` alone is rounded half up; a value of 0 or less ends at 0 with either sign of the
    /// half.
    [[nodiscard]] static constexpr T fromScaled(double value) noexcept
    {
        return fromDouble(std::is_same_v<T, unsigned short> ? value + 0.5 : value);
    }
    [[nodiscard]] static constexpr T sum(T pixel, double operand) noexcept
    {
        return fromDouble(static_cast<double>(pixel) + operand);
    }
    [[nodiscard]] static constexpr T product(T pixel, double operand) noexcept
    {
        return fromScaled(static_cast<double>(pixel) * operand);
    }
    /// Negative pixels too become the highest value.
    [[nodiscard]] static constexpr T overZero(T pixel) noexcept
    {
        return pixel != 0 ? std::numeric_limits<T>::max() : T{0};
    }
    [[nodiscard]] static constexpr T quotient(T pixel, double operand) noexcept
    {
        return fromScaled(static_cast<double>(pixel) / operand);
    }
    /// Pixel over pixel: truncated in all integer types, and a negative pixel over 0 is 0.
    [[nodiscard]] static constexpr T ratio(T pixel, T divisor) noexcept
    {
        const T whole = fromDouble(static_cast<double>(pixel) / static_cast<double>(divisor));
        const T saturated = pixel > 0 ? std::numeric_limits<T>::max() : T{0};
        return divisor != 0 ? whole : saturated;
    }
};
;

/// Arithmetic on real numbers: in the type itself, with the operand rounded to it, except for a quotient by a
/// number.
template <std::floating_point T>
struct Rules<T>
{
    [[nodiscard]] static constexpr T sum(T pixel, double operand) noexcept
    {
        return pixel + static_cast<T>(operand);
    }
    [[nodiscard]] static constexpr T product(T pixel, double operand) noexcept
    {
        return pixel * static_cast<T>(operand);
    }
    [[nodiscard]] static constexpr T overZero(T pixel) noexcept
    {
        return pixel != 0 ? std::numeric_limits<T>::max() : pixel;
    }
    [[nodiscard]] static constexpr T quotient(T pixel, double operand) noexcept
    {
        return static_cast<T>(static_cast<double>(pixel) / operand);
    }
    [[nodiscard]] static constexpr T ratio(T pixel, T divisor) noexcept
    {
        const T quotient = pixel / divisor;
        return divisor != 0 ? quotient : overZero(pixel);
    }
};

} // namespace DataObjects::Private
