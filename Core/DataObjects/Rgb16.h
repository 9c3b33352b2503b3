// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/Export.h"

#include <algorithm>

namespace Storage
{
class Settings;
}

namespace DataObjects
{

/// A colour pixel: red, green and blue, 16 bits each.
///
/// It is trivial, as every pixel is: `Rgb16()` is black, but `Rgb16 pixel;` is uninitialised.
struct DATAOBJECTS_DATAOBJECTS_EXPORT Rgb16
{
    Rgb16() = default;
    constexpr Rgb16(unsigned short r, unsigned short g, unsigned short b) noexcept : red(r), green(g), blue(b)
    {
    }
    /// From a packed colour: red is what stands above bit 15, green bits 8 to 15, blue bits 0 to 7.
    constexpr explicit Rgb16(unsigned int packed) noexcept
        : Rgb16(static_cast<unsigned short>(packed >> 16U), static_cast<unsigned short>(packed >> 8U & 0xFFU),
                static_cast<unsigned short>(packed & 0xFFU))
    {
    }

    /// \name Arithmetic
    /// Component by component, clamped to 0..65535.
    /// \{
    constexpr Rgb16& operator+=(const Rgb16& other) noexcept
    {
        red = sum(red, other.red);
        green = sum(green, other.green);
        blue = sum(blue, other.blue);
        return *this;
    }
    constexpr Rgb16& operator-=(const Rgb16& other) noexcept
    {
        red = difference(red, other.red);
        green = difference(green, other.green);
        blue = difference(blue, other.blue);
        return *this;
    }
    [[nodiscard]] friend constexpr Rgb16 operator+(Rgb16 a, const Rgb16& b) noexcept { return a += b; }
    [[nodiscard]] friend constexpr Rgb16 operator-(Rgb16 a, const Rgb16& b) noexcept { return a -= b; }
    /// \}

    /// The mean of the components.
    [[nodiscard]] constexpr float Intensity() const noexcept
    {
        // Whole numbers up to 2^24 are exact, so that the division alone rounds.
        return static_cast<float>(red + green + blue) / 3.0F;
    }
    [[nodiscard]] constexpr unsigned short maxComponent() const noexcept
    {
        return std::max({red, green, blue});
    }

    /// Writes class "Rgb16", version 1 and the values "red", "green" and "blue" into the node and returns it.
    Storage::Settings& SerializeTo(Storage::Settings& settings) const;
    /// Reads what SerializeTo wrote; a component that is not there becomes 0.
    /// \throws RTE::ParseError if a component is no number from 0 to 65535
    void DeserializeFrom(const Storage::Settings& settings);

    friend constexpr bool operator==(const Rgb16&, const Rgb16&) noexcept = default;

    unsigned short red;
    unsigned short green;
    unsigned short blue;

private:
    [[nodiscard]] static constexpr unsigned short sum(unsigned short a, unsigned short b) noexcept
    {
        return static_cast<unsigned short>(std::min(a + b, 0xFFFF));
    }
    [[nodiscard]] static constexpr unsigned short difference(unsigned short a, unsigned short b) noexcept
    {
        return static_cast<unsigned short>(std::max(a - b, 0));
    }
};

} // namespace DataObjects
