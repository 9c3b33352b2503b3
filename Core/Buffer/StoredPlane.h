// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/I_Plane.h"

#include <memory>
#include <vector>

namespace BufferApi
{

using PlaneList = std::vector<std::unique_ptr<I_PlaneBase>>;

/// A plane with an array of its own, uninitialised. \throws std::bad_alloc, also when the size overflows
[[nodiscard]] std::unique_ptr<I_PlaneBase> newPlane(E_DataType type, unsigned int width, unsigned int height);

/// A plane without data, for `adoptArray`.
[[nodiscard]] std::unique_ptr<I_PlaneBase> hollowPlane(E_DataType type, unsigned int width,
                                                       unsigned int height);

/// Gives a hollow plane its array. Separate from the making, so that nothing can fail once the first array
/// has changed hands.
void adoptArray(I_PlaneBase& plane, void* array) noexcept;

/// Marks a plane as part of a component or an attribute for good; false when it is one's already.
[[nodiscard]] bool claimPlane(I_PlaneBase& plane);

/// Sets all bytes of a plane of this store.
void fillBytes(I_PlaneBase& plane, unsigned char value);

} // namespace BufferApi
