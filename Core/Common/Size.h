// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace Math
{

/// Extents of a plane, in pixels or in the unit of its context.
template <typename T>
struct Size2T
{
    constexpr Size2T() noexcept = default;
    constexpr Size2T(T widthIn, T heightIn) noexcept : width(widthIn), height(heightIn) {}

    T width{};
    T height{};

    friend constexpr bool operator==(const Size2T&, const Size2T&) = default;
};

/// Extents of a volume.
template <typename T>
struct Size3T
{
    constexpr Size3T() noexcept = default;
    constexpr Size3T(T widthIn, T heightIn, T depthIn) noexcept
        : width(widthIn), height(heightIn), depth(depthIn)
    {
    }

    T width{};
    T height{};
    T depth{};

    friend constexpr bool operator==(const Size3T&, const Size3T&) = default;
};

} // namespace Math
