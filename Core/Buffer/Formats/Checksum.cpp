// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/Checksum.h"

#include "Core/Common/TargetClones.h"

#include <algorithm>
#include <cstring>

namespace BufferApi::Formats
{

namespace
{

constexpr unsigned long long modulus = 65535;
constexpr unsigned lanes = 32;
// The weighted sum of a lane stays below 2^32 for so many steps of the largest word.
constexpr unsigned long long stepsPerBlock = 360;
constexpr unsigned bytesAhead = 1024;

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

} // namespace

/// Adds `steps` groups of `lanes` words, weighted by the number of words from each to the end; bytes ahead
/// are fetched meanwhile.
DATAOBJECTS_TARGET_CLONES
Fletcher32::Sums Fletcher32::sumBlock(const unsigned char* data, unsigned long long steps)
{
    unsigned int plain[lanes] = {};
    unsigned int weighted[lanes] = {};
    for (unsigned long long step = 0; step < steps; ++step) {
        unsigned short words[lanes];
        const unsigned long long offset = step * sizeof(words);
        std::memcpy(words, data + offset, sizeof(words));
        __builtin_prefetch(data + offset + bytesAhead);
        for (unsigned lane = 0; lane < lanes; ++lane) {
            plain[lane] += words[lane];
            weighted[lane] += plain[lane];
        }
    }
    Sums sums;
    for (unsigned lane = 0; lane < lanes; ++lane) {
        sums.plain += plain[lane];
        sums.weighted += static_cast<unsigned long long>(lanes) * weighted[lane];
        sums.weighted -= static_cast<unsigned long long>(lane) * plain[lane];
    }
    return sums;
}

void Fletcher32::append(Sums& sums, const Sums& block, unsigned long long words)
{
    sums.weighted = (sums.weighted + sums.plain * words + block.weighted) % modulus;
    sums.plain = (sums.plain + block.plain) % modulus;
}

void Fletcher32::addWords(const unsigned char* data, unsigned long long words)
{
    const unsigned long long whole = words / lanes * lanes;
    unsigned long long word = 0;
    while (word < whole) {
        const unsigned long long steps = std::min((whole - word) / lanes, stepsPerBlock);
        append(m_sums, sumBlock(data + 2 * word, steps), steps * lanes);
        word += steps * lanes;
    }
    for (; word < words; ++word) {
        const unsigned long long value = data[2 * word] | static_cast<unsigned>(data[2 * word + 1]) << 8U;
        append(m_sums, {value, value}, 1);
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
    Sums sums = m_sums;
    if (m_half) {
        append(sums, {*m_half, *m_half}, 1);
    }
    return finished(sums.weighted, m_isAllZero) << 16U | finished(sums.plain, m_isAllZero);
}

} // namespace BufferApi::Formats
