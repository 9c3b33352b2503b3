// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace BufferApi::Formats::Private
{

/// Of 16-bit words in the machine's order, neither of them reduced.
struct WordSums
{
    unsigned long long words = 0;
    unsigned long long plain = 0;
    /// Each word times the number of words from it to the end.
    unsigned long long weighted = 0;
};

/// Sums up whole vectors from the beginning of `bytes` bytes, at most some 64 KiB of them; `words` tells how
/// many words they were, 0 where the bytes fill none.
[[nodiscard]] WordSums sumVectors(const unsigned char* data, unsigned long long bytes);

} // namespace BufferApi::Formats::Private
