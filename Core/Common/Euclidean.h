// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/Vector.h"

#include <array>

namespace Math
{

/// A 3 x 3 matrix in row-major order, M1 to M9; the identity by default.
class RotationMatrix3
{
public:
    constexpr RotationMatrix3() noexcept = default;
    constexpr explicit RotationMatrix3(const std::array<double, 9>& elements) noexcept : m_elements(elements)
    {
    }

    /// \name Elements, row by row.
    /// \{
    [[nodiscard]] constexpr double& M1() noexcept { return m_elements[0]; }
    [[nodiscard]] constexpr double& M2() noexcept { return m_elements[1]; }
    [[nodiscard]] constexpr double& M3() noexcept { return m_elements[2]; }
    [[nodiscard]] constexpr double& M4() noexcept { return m_elements[3]; }
    [[nodiscard]] constexpr double& M5() noexcept { return m_elements[4]; }
    [[nodiscard]] constexpr double& M6() noexcept { return m_elements[5]; }
    [[nodiscard]] constexpr double& M7() noexcept { return m_elements[6]; }
    [[nodiscard]] constexpr double& M8() noexcept { return m_elements[7]; }
    [[nodiscard]] constexpr double& M9() noexcept { return m_elements[8]; }
    [[nodiscard]] constexpr const std::array<double, 9>& Elements() const noexcept { return m_elements; }
    /// \}

    [[nodiscard]] constexpr RotationMatrix3 GetTransposed() const noexcept
    {
        const auto& m = m_elements;
        return RotationMatrix3({m[0], m[3], m[6], m[1], m[4], m[7], m[2], m[5], m[8]});
    }
    [[nodiscard]] constexpr Vector3T<double> operator*(const Vector3T<double>& v) const noexcept
    {
        const auto& m = m_elements;
        return {m[0] * v.x + m[1] * v.y + m[2] * v.z, m[3] * v.x + m[4] * v.y + m[5] * v.z,
                m[6] * v.x + m[7] * v.y + m[8] * v.z};
    }
    [[nodiscard]] constexpr RotationMatrix3 operator*(const RotationMatrix3& other) const noexcept
    {
        RotationMatrix3 product;
        for (std::size_t row = 0; row < 3; ++row) {
            for (std::size_t column = 0; column < 3; ++column) {
                double sum = 0.0;
                for (std::size_t k = 0; k < 3; ++k) {
                    sum += m_elements[3 * row + k] * other.m_elements[3 * k + column];
                }
                product.m_elements[3 * row + column] = sum;
            }
        }
        return product;
    }

    friend constexpr bool operator==(const RotationMatrix3&, const RotationMatrix3&) = default;

private:
    std::array<double, 9> m_elements{1.0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 1.0};
};

/// A rigid motion: rotation R and translation t, which maps x to R x + t. The identity by default.
class Euclidean
{
public:
    constexpr Euclidean() noexcept = default;
    /// Rotates about the fixed axes, first x, then y, then z, by angles in radians, right-handed:
    /// R = Rz(rotationZ) Ry(rotationY) Rx(rotationX). Then moves by the translation.
    DATAOBJECTS_COMMON_EXPORT Euclidean(double rotationX, double rotationY, double rotationZ,
                                        double translationX, double translationY,
                                        double translationZ) noexcept;

    [[nodiscard]] constexpr RotationMatrix3& R() noexcept { return m_rotation; }
    [[nodiscard]] constexpr const RotationMatrix3& R() const noexcept { return m_rotation; }
    [[nodiscard]] constexpr Vector3T<double>& T() noexcept { return m_translation; }
    [[nodiscard]] constexpr const Vector3T<double>& T() const noexcept { return m_translation; }

    [[nodiscard]] constexpr Vector3T<double> operator*(const Vector3T<double>& x) const noexcept
    {
        return m_rotation * x + m_translation;
    }
    /// The motion that applies `first` and then this one.
    [[nodiscard]] constexpr Euclidean operator*(const Euclidean& first) const noexcept
    {
        return Euclidean(m_rotation * first.m_rotation, *this * first.m_translation);
    }
    /// The motion back. The inverse of a rotation is its transpose: R must still be a rotation.
    [[nodiscard]] constexpr Euclidean GetInverted() const noexcept
    {
        const RotationMatrix3 back = m_rotation.GetTransposed();
        return Euclidean(back, -(back * m_translation));
    }

    friend constexpr bool operator==(const Euclidean&, const Euclidean&) = default;

private:
    constexpr Euclidean(const RotationMatrix3& rotation, const Vector3T<double>& translation) noexcept
        : m_rotation(rotation), m_translation(translation)
    {
    }

    RotationMatrix3 m_rotation;
    Vector3T<double> m_translation;
};

} // namespace Math
