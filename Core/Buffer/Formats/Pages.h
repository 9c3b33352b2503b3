// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>

namespace BufferApi::Formats
{

/// The unit in which the system holds files and memory. With larger ones all stays right, only slower.
inline constexpr unsigned long long pageBytes = 4096;

/// How many of the bytes at an address of a file are read or written before their checksum is taken: so few
/// that they are still in the cache, and up to the end of a page, which the system takes as a whole.
constexpr unsigned long long bytesAtOnce(unsigned long long address, unsigned long long left) noexcept
{
    return std::min(left, 32 * pageBytes - address % pageBytes);
}

} // namespace BufferApi::Formats
