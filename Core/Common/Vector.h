// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/Export.h"

#include <cmath>

namespace Storage
{
class Settings;
}

namespace Math
{

template <typename T>
struct Point3T;

/// A displacement or direction in the plane, such as a velocity; the unit is that of its context.
template <typename T>
struct Vector2T
{
    constexpr Vector2T() noexcept = default;
    constexpr Vector2T(T xIn, T yIn) noexcept : x(xIn), y(yIn) {}

    [[nodiscard]] double Length() const noexcept
    {
        return std::hypot(static_cast<double>(x), static_cast<double>(y));
    }
    /// The vector of length 1 in the same direction; a vector without direction (length 0) stays as it is.
    [[nodiscard]] Vector2T Normalized() const noexcept
    {
        const double length = Length();
        return length == 0.0 ? *this : Vector2T(static_cast<T>(x / length), static_cast<T>(y / length));
    }

    /// Writes the values "x" and "y" into the node and returns it. For `float` and `double`.
    DATAOBJECTS_COMMON_EXPORT Storage::Settings& SerializeTo(Storage::Settings& settings) const;
    /// Reads what SerializeTo wrote; a value that is not there becomes 0.
    DATAOBJECTS_COMMON_EXPORT void DeserializeFrom(const Storage::Settings& settings);

    T x{};
    T y{};

    friend constexpr bool operator==(const Vector2T&, const Vector2T&) = default;
};

/// A displacement or direction in space.
template <typename T>
struct Vector3T
{
    constexpr Vector3T() noexcept = default;
    constexpr Vector3T(T xIn, T yIn, T zIn) noexcept : x(xIn), y(yIn), z(zIn) {}
    /// The vector from the origin to `point`. Needs Point.h.
    constexpr explicit Vector3T(const Point3T<T>& point) noexcept;

    [[nodiscard]] double Length() const noexcept
    {
        return std::hypot(static_cast<double>(x), static_cast<double>(y), static_cast<double>(z));
    }

    T x{};
    T y{};
    T z{};

    friend constexpr bool operator==(const Vector3T&, const Vector3T&) = default;
    friend constexpr Vector3T operator+(const Vector3T& a, const Vector3T& b) noexcept
    {
        return {a.x + b.x, a.y + b.y, a.z + b.z};
    }
    friend constexpr Vector3T operator-(const Vector3T& a) noexcept { return {-a.x, -a.y, -a.z}; }
};

} // namespace Math
