// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/Checksum.h"

#include <algorithm>
#include <cstring>

namespace BufferApi::Formats
{

namespace
{

constexpr unsigned long long modulus = 65535;
// Their weighted sum stays far below 2^64.
constexpr unsigned long long mostOneByOne = 1ULL << 20U;

/// The filter folds carries back in, which leaves 65535 where the remainder of a sum above 0 is 0; swapping
/// the bytes of the sum is the same as swapping those of every word.
unsigned int finished(unsigned long long remainder, bool isAllZero)
{
    const auto sum = static_cast<unsigned int>(remainder == 0 && !isAllZero ? modulus : remainder);
    return ((sum & 0xFFU) << 8U) | (sum >> 8U);
}

bool isZero(const unsigned char* data, unsigned long long bytes)
{
    return bytes == 0 || (data[0] == 0 && std::memcmp(data, data + 1, bytes - 1) == 0);
}

Private::WordSums sumOneByOne(const unsigned char* data, unsigned long long words)
{
    Private::WordSums sums{words};
    for (unsigned long long i = 0; i < words; ++i) {
        sums.plain += data[2 * i] | static_cast<unsigned>(data[2 * i + 1]) << 8U;
        sums.weighted += sums.plain;
    }
    return sums;
}

} // namespace

void Fletcher32::append(const Private::WordSums& block)
{
    m_weighted = (m_weighted + m_plain * block.words + block.weighted) % modulus;
    m_plain = (m_plain + block.plain) % modulus;
}

void Fletcher32::addWords(const unsigned char* data, unsigned long long words)
{
    while (words > 0) {
        Private::WordSums block = Private::sumVectors(data, 2 * words);
        if (block.words == 0) {
            block = sumOneByOne(data, std::min(words, mostOneByOne));
        }
        append(block);
        data += 2 * block.words;
        words -= block.words;
    }
}

void Fletcher32::add(const void* source, unsigned long long bytes)
{
    const auto* data = static_cast<const unsigned char*>(source);
    m_isAllZero = m_isAllZero && isZero(data, bytes);
    if (m_half && bytes > 0) {
        const unsigned char word[] = {*m_half, data[0]};
        m_half.reset();
        addWords(word, 1);
        ++data;
        --bytes;
    }
    addWords(data, bytes / 2);
    if (bytes % 2 != 0) {
        m_half = data[bytes - 1];
    }
}

unsigned int Fletcher32::value() const
{
    Fletcher32 whole = *this;
    if (m_half) {
        whole.append({1, *m_half, *m_half});
    }
    return finished(whole.m_weighted, m_isAllZero) << 16U | finished(whole.m_plain, m_isAllZero);
}

} // namespace BufferApi::Formats
