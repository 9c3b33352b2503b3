// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/LinearScale.h"

#include <array>

namespace TestSupport
{

inline const Zt::LinearScale kelvin(0.5, 273.0, "K", "Temperature");
/// What a scalar field has that nobody gave a scale.
inline const Zt::LinearScale plain(1.0, 0.0, "", "");

/// A scale that differs from others by its factor.
inline Zt::LinearScale scaleOf(double factor, double offset = 0.0)
{
    return {factor, offset, "mm", "Axis"};
}

using FourScales = std::array<Zt::LinearScale, 4>;

/// Those of X, Y, Z and I.
template <typename Object>
[[nodiscard]] FourScales scalesOf(const Object& object)
{
    return {object.GetScaleX(), object.GetScaleY(), object.GetScaleZ(), object.GetScaleI()};
}

inline const FourScales defaultScales{
    Zt::LinearScale(Zt::ScalePreset::X), Zt::LinearScale(Zt::ScalePreset::Y),
    Zt::LinearScale(Zt::ScalePreset::Z), Zt::LinearScale(Zt::ScalePreset::I)};

} // namespace TestSupport
