// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>

namespace BufferApi::Formats
{

/// Fletcher's checksum of 32 bits in the form that HDF5's filter of this name stores behind a chunk: over
/// 16-bit words, most significant byte first, an odd last byte followed by a zero.
/// Source: J. Fletcher, "An Arithmetic Checksum for Serial Transmissions", IEEE Trans. Comm. 30 (1982).
class Fletcher32
{
public:
    /// Takes the next bytes, in pieces of any size.
    void add(const void* data, unsigned long long bytes);
    [[nodiscard]] unsigned int value() const;

private:
    struct Sums
    {
        unsigned long long plain = 0;
        unsigned long long weighted = 0;
    };

    static void append(Sums& sums, const Sums& block, unsigned long long words);
    static Sums sumBlock(const unsigned char* data, unsigned long long steps);
    void addWords(const unsigned char* data, unsigned long long words);

    Sums m_sums;
    bool m_isAllZero = true;
    /// The first byte of a word whose second one is still to come.
    std::optional<unsigned char> m_half;
};

} // namespace BufferApi::Formats
