// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/DataType.h"

#include <cstddef>

namespace DataObjects::Private
{

/// Converts `count` pixels from one element type to another by the rules of PixelRules.h.
///
/// The arrays do not overlap and are aligned for their element type. Above the size of the last-level cache
/// the result bypasses the cache, so hand over whole planes, not single rows, where they are contiguous.
using RowConverter = void (*)(const void* source, void* destination, std::size_t count);

/// The converter of a pair of types, tuned to this processor; null when one is not of the six.
[[nodiscard]] RowConverter rowConverter(E_DataType from, E_DataType to) noexcept;

/// The same, but `unsigned int` to `int` saturates as every other pair does.
[[nodiscard]] RowConverter saturatingRowConverter(E_DataType from, E_DataType to) noexcept;

} // namespace DataObjects::Private
