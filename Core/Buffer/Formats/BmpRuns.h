// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>
#include <vector>

namespace BufferApi::Formats
{

/// What a run-length coded bitmap holds.
struct BmpRuns
{
    /// Of a palette index, 4 or 8; there is a code for these two only.
    unsigned int bits = 0;
    unsigned int width = 0;
    unsigned int height = 0;

    /// The palette indices, row by row as they are stored; what the code skips has index 0. Pixels beyond the
    /// end of a row, to which some programs fill it up, are dropped.
    /// \returns nothing when the code goes beyond the last row or ends before its end mark
    [[nodiscard]] std::vector<unsigned char> decode(std::span<const unsigned char> code) const;
    /// Whether so many bytes can hold that many pixels: two bytes make a run of 255 at most.
    [[nodiscard]] bool fitInto(unsigned long long bytes) const noexcept
    {
        return 1ULL * width * height / 128 <= bytes;
    }
};

} // namespace BufferApi::Formats
