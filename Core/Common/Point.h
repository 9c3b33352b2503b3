// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/Export.h"
#include "Core/Common/Vector.h"

#include <iosfwd>

namespace Math
{

/// A position in the plane: x along a row, y across rows. With `unsigned int` it names a pixel.
template <typename T>
struct Point2T
{
    constexpr Point2T() noexcept = default;
    constexpr Point2T(T xIn, T yIn) noexcept : x(xIn), y(yIn) {}

    /// Writes the values "x" and "y" into the node and returns it. For `unsigned int`, `int`, `float`,
    /// `double`.
    DATAOBJECTS_COMMON_EXPORT Storage::Settings& SerializeTo(Storage::Settings& settings) const;
    /// Reads what SerializeTo wrote; a value that is not there becomes 0.
    DATAOBJECTS_COMMON_EXPORT void DeserializeFrom(const Storage::Settings& settings);

    T x{};
    T y{};

    friend constexpr bool operator==(const Point2T&, const Point2T&) = default;
};

/// A position in space: x along a row, y across rows, z across planes.
template <typename T>
struct Point3T
{
    constexpr Point3T() noexcept = default;
    constexpr Point3T(T xIn, T yIn, T zIn) noexcept : x(xIn), y(yIn), z(zIn) {}
    /// The end of a vector that starts at the origin.
    constexpr explicit Point3T(const Vector3T<T>& vector) noexcept : x(vector.x), y(vector.y), z(vector.z) {}

    constexpr void Set(T xIn, T yIn, T zIn) noexcept
    {
        x = xIn;
        y = yIn;
        z = zIn;
    }

    /// The squared distance, formed in `double` for every T.
    [[nodiscard]] constexpr double DistanceToSqr(const Point3T& other) const noexcept
    {
        const double dx = static_cast<double>(x) - static_cast<double>(other.x);
        const double dy = static_cast<double>(y) - static_cast<double>(other.y);
        const double dz = static_cast<double>(z) - static_cast<double>(other.z);
        return dx * dx + dy * dy + dz * dz;
    }

    T x{};
    T y{};
    T z{};

    friend constexpr bool operator==(const Point3T&, const Point3T&) = default;
};

template <typename T>
constexpr Vector3T<T>::Vector3T(const Point3T<T>& point) noexcept : x(point.x), y(point.y), z(point.z)
{
}

/// Writes "(1.5, 2, -3)" with shortest round-trip numbers, whatever the stream's own format.
DATAOBJECTS_COMMON_EXPORT std::ostream& operator<<(std::ostream& stream, const Point3T<float>& point);

} // namespace Math
