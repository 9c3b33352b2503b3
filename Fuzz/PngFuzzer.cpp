// SPDX-License-Identifier: Apache-2.0
#include "Fuzz/Reader.h"

#include <zlib.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

extern "C" std::size_t LLVMFuzzerMutate(unsigned char* bytes, std::size_t count, std::size_t most);

namespace
{

constexpr std::size_t signatureBytes = 8;

std::uint32_t bigEndian(std::uint32_t value)
{
    return std::endian::native == std::endian::little ? __builtin_bswap32(value) : value;
}

std::uint32_t numberAt(const unsigned char* bytes)
{
    std::uint32_t value = 0;
    std::memcpy(&value, bytes, sizeof(value));
    return bigEndian(value);
}

/// Each chunk is length, name, content, checksum over name and content.
void repairChecksums(unsigned char* bytes, std::size_t count)
{
    constexpr std::size_t around = 12;
    for (std::size_t at = signatureBytes; count - at >= around;) {
        const std::size_t length = numberAt(bytes + at);
        if (length > count - at - around) {
            return;
        }
        const uLong checksum = crc32(0, bytes + at + 4, static_cast<uInt>(length + 4));
        const std::uint32_t stored = bigEndian(static_cast<std::uint32_t>(checksum));
        std::memcpy(bytes + at + 8 + length, &stored, sizeof(stored));
        at += length + around;
    }
}

} // namespace

/// Most inputs get right checksums again, as libpng looks no further otherwise.
extern "C" __attribute__((visibility("default"))) std::size_t
LLVMFuzzerCustomMutator(unsigned char* bytes, std::size_t count, std::size_t most, unsigned int seed)
{
    count = LLVMFuzzerMutate(bytes, count, most);
    if (seed % 8 != 0 && count > signatureBytes) {
        repairChecksums(bytes, count);
    }
    return count;
}

extern "C" __attribute__((visibility("default"))) int LLVMFuzzerTestOneInput(const unsigned char* bytes,
                                                                             std::size_t count)
{
    Fuzz::read(bytes, count, {"\x89PNG\r\n\x1a\n"});
    return 0;
}
