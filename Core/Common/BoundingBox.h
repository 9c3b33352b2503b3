// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/Point.h"

#include <limits>
#include <numeric>

namespace Math
{

/// A box along the axes, both corners included. A flat box, even a single point, is not empty.
///
/// The empty box has its minimum at +infinity and its maximum at -infinity, so that it may be widened, also
/// by comparing corners, without a special first step.
template <typename T>
class BoundingBoxT
{
public:
    /// The empty box.
    constexpr BoundingBoxT() noexcept = default;
    /// The corners are taken as they are: an inverted box is empty.
    constexpr BoundingBoxT(const Point3T<double>& minimum, const Point3T<double>& maximum) noexcept
        : m_min(converted(minimum)), m_max(converted(maximum))
    {
    }

    [[nodiscard]] constexpr const Point3T<T>& GetMin() const noexcept { return m_min; }
    [[nodiscard]] constexpr const Point3T<T>& GetMax() const noexcept { return m_max; }
    /// The middle of the box; the origin for an empty one.
    [[nodiscard]] constexpr Point3T<T> GetCenter() const noexcept
    {
        return IsEmpty() ? Point3T<T>()
                         : Point3T<T>(std::midpoint(m_min.x, m_max.x), std::midpoint(m_min.y, m_max.y),
                                      std::midpoint(m_min.z, m_max.z));
    }
    /// \name Extents in x, y and z; 0 for an empty box.
    /// \{
    [[nodiscard]] constexpr T GetWidth() const noexcept { return IsEmpty() ? T{} : m_max.x - m_min.x; }
    [[nodiscard]] constexpr T GetHeight() const noexcept { return IsEmpty() ? T{} : m_max.y - m_min.y; }
    [[nodiscard]] constexpr T GetDepth() const noexcept { return IsEmpty() ? T{} : m_max.z - m_min.z; }
    /// \}

    /// True when the box holds no point: on some axis the minimum is not at or below the maximum.
    [[nodiscard]] constexpr bool IsEmpty() const noexcept
    {
        return !(m_min.x <= m_max.x && m_min.y <= m_max.y && m_min.z <= m_max.z);
    }

    /// Widens the box so that it holds the point; a coordinate that is NaN changes nothing.
    constexpr void Add(const Point3T<T>& point) noexcept
    {
        widen(m_min.x, m_max.x, point.x);
        widen(m_min.y, m_max.y, point.y);
        widen(m_min.z, m_max.z, point.z);
    }

    friend constexpr bool operator==(const BoundingBoxT&, const BoundingBoxT&) = default;

private:
    static constexpr T infinity = std::numeric_limits<T>::infinity();

    static constexpr Point3T<T> converted(const Point3T<double>& point) noexcept
    {
        return {static_cast<T>(point.x), static_cast<T>(point.y), static_cast<T>(point.z)};
    }
    static constexpr void widen(T& minimum, T& maximum, T value) noexcept
    {
        minimum = value < minimum ? value : minimum;
        maximum = value > maximum ? value : maximum;
    }

    Point3T<T> m_min{infinity, infinity, infinity};
    Point3T<T> m_max{-infinity, -infinity, -infinity};
};

} // namespace Math
