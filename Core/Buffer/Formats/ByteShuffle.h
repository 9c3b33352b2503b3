// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace BufferApi::Formats
{

/// Brings byte k of every element together: all first bytes, then all second bytes, and so on.
/// `destination[k * stride + i]` becomes byte k of element i; sizes 1, 2, 4 and 8 are made for.
/// \param stride at least `count`
void shuffleBytes(const void* elements, unsigned long long count, unsigned int elementSize,
                  unsigned char* destination, unsigned long long stride);

/// The reverse of `shuffleBytes`.
void unshuffleBytes(const unsigned char* source, unsigned long long stride, unsigned long long count,
                    unsigned int elementSize, void* elements);

} // namespace BufferApi::Formats
