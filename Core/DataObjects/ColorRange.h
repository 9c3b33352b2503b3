// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

namespace DataObjects::Private
{

/// Maps a value c to trunc(top * t) in `double`, with t = (c - minimum) / range kept between 0 and 1.
struct ColorRange
{
    double minimum;
    double range; ///< greater than 0
    double top;   ///< 2^n - 1 with n up to 16
};

/// Maps all words in place. When there are more of them than the range has values, the mapping is made up
/// first, which may take a table of 128 KiB.
void applyColorRange(unsigned short* words, std::size_t count, const ColorRange& colorRange);

} // namespace DataObjects::Private
