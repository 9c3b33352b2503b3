// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/Raise.h"

#include <limits>

namespace RTE
{

/// A minimum and a maximum, both included, kept as given: the maximum may lie below the minimum.
template <typename T>
class RangeT
{
public:
    /// From 0 to 0.
    constexpr RangeT() noexcept = default;
    constexpr RangeT(T minimum, T maximum) noexcept : m_min(minimum), m_max(maximum) {}

    [[nodiscard]] constexpr T GetMin() const noexcept { return m_min; }
    [[nodiscard]] constexpr T GetMax() const noexcept { return m_max; }
    constexpr void SetMin(T minimum) noexcept { m_min = minimum; }
    constexpr void SetMax(T maximum) noexcept { m_max = maximum; }

    [[nodiscard]] constexpr bool Contains(T value) const noexcept { return m_min <= value && value <= m_max; }

    friend constexpr bool operator==(const RangeT&, const RangeT&) = default;

private:
    T m_min{};
    T m_max{};
};

/// Every `increment`-th index from `first` on, `count` of them.
class IndexRange
{
public:
    /// Maps each index to itself.
    constexpr IndexRange() noexcept = default;
    constexpr IndexRange(unsigned int first, unsigned int count, unsigned int increment = 1) noexcept
        : m_first(first), m_count(count), m_increment(increment)
    {
    }

    [[nodiscard]] constexpr unsigned int GetCount() const noexcept { return m_count; }
    /// The index that stands at position `index` of the range.
    /// \throws RTE::OutOfRangeError "index" at or beyond the count
    [[nodiscard]] unsigned int Map(unsigned int index) const
    {
        verifyIndex(index, m_count, "index");
        return m_first + index * m_increment;
    }

private:
    unsigned int m_first = 0;
    unsigned int m_count = std::numeric_limits<unsigned int>::max();
    unsigned int m_increment = 1;
};

} // namespace RTE
