// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/ByteShuffle.h"

#include "Core/Common/TargetClones.h"

#include <cstdint>
#include <cstring>

namespace BufferApi::Formats
{

namespace
{

using Bytes = unsigned char;

// Elements are taken as one unsigned word and cut by shifts, which compilers turn into vector code; blocks
// keep the loop's counts constant.
constexpr unsigned block = 64;

template <typename Word>
inline __attribute__((always_inline)) void shuffleWords(const Bytes* source, unsigned long long count,
                                                        Bytes* destination, unsigned long long stride)
{
    unsigned long long first = 0;
    for (; first + block <= count; first += block) {
        Word words[block];
        std::memcpy(words, source + first * sizeof(Word), sizeof(words));
        for (unsigned k = 0; k < sizeof(Word); ++k) {
            Bytes column[block];
            for (unsigned i = 0; i < block; ++i) {
                column[i] = static_cast<Bytes>(words[i] >> (8U * k));
            }
            std::memcpy(destination + k * stride + first, column, block);
        }
    }
    for (; first < count; ++first) {
        for (unsigned k = 0; k < sizeof(Word); ++k) {
            destination[k * stride + first] = source[first * sizeof(Word) + k];
        }
    }
}

template <typename Word>
inline __attribute__((always_inline)) void unshuffleWords(const Bytes* source, unsigned long long stride,
                                                          unsigned long long count, Bytes* destination)
{
    unsigned long long first = 0;
    for (; first + block <= count; first += block) {
        Word words[block] = {};
        for (unsigned k = 0; k < sizeof(Word); ++k) {
            Bytes column[block];
            std::memcpy(column, source + k * stride + first, block);
            for (unsigned i = 0; i < block; ++i) {
                words[i] =
                    static_cast<Word>(words[i] | static_cast<Word>(static_cast<Word>(column[i]) << (8U * k)));
            }
        }
        std::memcpy(destination + first * sizeof(Word), words, sizeof(words));
    }
    for (; first < count; ++first) {
        for (unsigned k = 0; k < sizeof(Word); ++k) {
            destination[first * sizeof(Word) + k] = source[k * stride + first];
        }
    }
}

DATAOBJECTS_TARGET_CLONES
void shuffle2(const Bytes* source, unsigned long long count, Bytes* destination, unsigned long long stride)
{
    shuffleWords<std::uint16_t>(source, count, destination, stride);
}

DATAOBJECTS_TARGET_CLONES
void shuffle4(const Bytes* source, unsigned long long count, Bytes* destination, unsigned long long stride)
{
    shuffleWords<std::uint32_t>(source, count, destination, stride);
}

DATAOBJECTS_TARGET_CLONES
void shuffle8(const Bytes* source, unsigned long long count, Bytes* destination, unsigned long long stride)
{
    shuffleWords<std::uint64_t>(source, count, destination, stride);
}

DATAOBJECTS_TARGET_CLONES
void unshuffle2(const Bytes* source, unsigned long long stride, unsigned long long count, Bytes* destination)
{
    unshuffleWords<std::uint16_t>(source, stride, count, destination);
}

DATAOBJECTS_TARGET_CLONES
void unshuffle4(const Bytes* source, unsigned long long stride, unsigned long long count, Bytes* destination)
{
    unshuffleWords<std::uint32_t>(source, stride, count, destination);
}

DATAOBJECTS_TARGET_CLONES
void unshuffle8(const Bytes* source, unsigned long long stride, unsigned long long count, Bytes* destination)
{
    unshuffleWords<std::uint64_t>(source, stride, count, destination);
}

} // namespace

void shuffleBytes(const void* elements, unsigned long long count, unsigned int elementSize,
                  unsigned char* destination, unsigned long long stride)
{
    const auto* source = static_cast<const Bytes*>(elements);
    switch (elementSize) {
    case 2:
        return shuffle2(source, count, destination, stride);
    case 4:
        return shuffle4(source, count, destination, stride);
    case 8:
        return shuffle8(source, count, destination, stride);
    default:
        std::memcpy(destination, source, count);
    }
}

void unshuffleBytes(const unsigned char* source, unsigned long long stride, unsigned long long count,
                    unsigned int elementSize, void* elements)
{
    auto* destination = static_cast<Bytes*>(elements);
    switch (elementSize) {
    case 2:
        return unshuffle2(source, stride, count, destination);
    case 4:
        return unshuffle4(source, stride, count, destination);
    case 8:
        return unshuffle8(source, stride, count, destination);
    default:
        std::memcpy(destination, source, count);
    }
}

} // namespace BufferApi::Formats
