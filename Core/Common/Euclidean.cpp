// SPDX-License-Identifier: Apache-2.0
#include "Core/Common/Euclidean.h"

#include <cmath>

namespace Math
{

namespace
{

RotationMatrix3 aboutX(double angle) noexcept
{
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    return RotationMatrix3({1.0, 0.0, 0.0, 0.0, c, -s, 0.0, s, c});
}

RotationMatrix3 aboutY(double angle) noexcept
{
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    return RotationMatrix3({c, 0.0, s, 0.0, 1.0, 0.0, -s, 0.0, c});
}

RotationMatrix3 aboutZ(double angle) noexcept
{
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    return RotationMatrix3({c, -s, 0.0, s, c, 0.0, 0.0, 0.0, 1.0});
}

} // namespace

Euclidean::Euclidean(double rotationX, double rotationY, double rotationZ, double translationX,
                     double translationY, double translationZ) noexcept
    : m_rotation(aboutZ(rotationZ) * aboutY(rotationY) * aboutX(rotationX)),
      m_translation(translationX, translationY, translationZ)
{
}

} // namespace Math
