// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/Formats/ChecksumKernel.h"

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
    void append(const Private::WordSums& block);
    void addWords(const unsigned char* data, unsigned long long words);

    unsigned long long m_plain = 0;
    unsigned long long m_weighted = 0;
    bool m_isAllZero = true;
    /// The first byte of a word whose second one is still to come.
    std::optional<unsigned char> m_half;
};

} // namespace BufferApi::Formats
