// SPDX-License-Identifier: Apache-2.0
#include "Fuzz/Reader.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <vector>

extern "C" std::size_t LLVMFuzzerMutate(unsigned char* bytes, std::size_t count, std::size_t most);

namespace
{

constexpr std::size_t checksumBytes = 4;

/// HDF5's checksum of metadata: Bob Jenkins, "lookup3.c", hashlittle, 2006.
class Lookup3
{
public:
    static std::uint32_t of(const unsigned char* bytes, std::size_t count)
    {
        Lookup3 hash(static_cast<std::uint32_t>(count));
        for (; count > blockBytes; count -= blockBytes, bytes += blockBytes) {
            hash.add(bytes, blockBytes);
            hash.mix();
        }
        if (count > 0) {
            hash.add(bytes, count);
            hash.finish();
        }
        return hash.m_c;
    }

private:
    static constexpr std::size_t blockBytes = 12;

    explicit Lookup3(std::uint32_t count) : m_a(0xdeadbeef + count), m_b(m_a), m_c(m_a) {}

    void add(const unsigned char* bytes, std::size_t count)
    {
        std::array<std::uint32_t, 3> words{};
        std::memcpy(words.data(), bytes, count);
        m_a += words[0];
        m_b += words[1];
        m_c += words[2];
    }
    static void step(std::uint32_t& x, std::uint32_t& y, std::uint32_t& z, int bits)
    {
        x = (x - z) ^ std::rotl(z, bits);
        z += y;
    }
    void mix()
    {
        step(m_a, m_b, m_c, 4);
        step(m_b, m_c, m_a, 6);
        step(m_c, m_a, m_b, 8);
        step(m_a, m_b, m_c, 16);
        step(m_b, m_c, m_a, 19);
        step(m_c, m_a, m_b, 4);
    }
    static void last(std::uint32_t& x, std::uint32_t y, int bits) { x = (x ^ y) - std::rotl(y, bits); }
    void finish()
    {
        last(m_c, m_b, 14);
        last(m_a, m_c, 11);
        last(m_b, m_a, 25);
        last(m_c, m_b, 16);
        last(m_a, m_c, 4);
        last(m_b, m_a, 14);
        last(m_c, m_b, 24);
    }

    std::uint32_t m_a;
    std::uint32_t m_b;
    std::uint32_t m_c;
};

/// Bytes of the input.
struct Range
{
    std::size_t begin = 0;
    std::size_t count = 0;
};

template <typename T>
T numberAt(const unsigned char* bytes)
{
    T value = 0;
    std::memcpy(&value, bytes, sizeof(value));
    return value;
}

/// Where the headers of objects and their continuations begin.
std::vector<std::size_t> findHeaders(const unsigned char* bytes, std::size_t count)
{
    std::vector<std::size_t> headers;
    for (std::size_t at = 0; at + 2 * checksumBytes < count; ++at) {
        if (std::memcmp(bytes + at, "OHDR", 4) == 0 || std::memcmp(bytes + at, "OCHK", 4) == 0) {
            headers.push_back(at);
        }
    }
    return headers;
}

/// The header without the checksum that follows; how long it is is found by trying. Empty when there is none.
Range headerAt(const unsigned char* bytes, std::size_t count, std::size_t begin)
{
    constexpr std::size_t longest = 1024;
    const std::size_t most = std::min(longest, count - begin - checksumBytes);
    for (std::size_t length = checksumBytes; length <= most; ++length) {
        if (Lookup3::of(bytes + begin, length) == numberAt<std::uint32_t>(bytes + begin + length)) {
            return {begin, length};
        }
    }
    return {};
}

/// Values of the attributes in a header. What looks like an attribute's message is taken for one: type 12,
/// its size, flags, creation order; version 3, flags, sizes of name, type and space, encoding of the name;
/// these; the value.
std::vector<Range> findValues(const unsigned char* bytes, const Range& header)
{
    constexpr std::size_t messageHeader = 6;
    constexpr std::size_t fixed = 9;
    std::vector<Range> values;
    const std::size_t end = header.begin + header.count;
    for (std::size_t at = header.begin; at + messageHeader + fixed < end; ++at) {
        const unsigned char* message = bytes + at + messageHeader;
        const std::size_t size = numberAt<std::uint16_t>(bytes + at + 1);
        const std::size_t before = fixed + numberAt<std::uint16_t>(message + 2) +
                                   numberAt<std::uint16_t>(message + 4) +
                                   numberAt<std::uint16_t>(message + 6);
        if (bytes[at] == 12 && message[0] == 3 && before < size && at + messageHeader + size <= end) {
            values.push_back({at + messageHeader + before, size - before});
        }
    }
    return values;
}

void mutateIn(unsigned char* bytes, const Range& range)
{
    unsigned char* begin = bytes + range.begin;
    std::vector<unsigned char> content(begin, begin + range.count);
    LLVMFuzzerMutate(content.data(), content.size(), content.size());
    std::copy(content.begin(), content.end(), begin);
}

} // namespace

/// HDF5 takes memory for as much as a header without checksum promises, reads, and gives it back when the
/// file has less. It can do without what it does not get; our own code would end the process here.
extern "C" __attribute__((visibility("default"))) const char* __asan_default_options()
{
    return "allocator_may_return_null=1:max_allocation_size_mb=512";
}

/// Most changes are in the value of one attribute, under a right checksum; HDF5 looks no further otherwise.
/// The rest of its metadata is not changed in this way: HDF5 trusts it once the checksum is right, and
/// crashes.
extern "C" __attribute__((visibility("default"))) std::size_t
LLVMFuzzerCustomMutator(unsigned char* bytes, std::size_t count, std::size_t most, unsigned int seed)
{
    const std::vector<std::size_t> headers = findHeaders(bytes, count);
    if (seed % 8 == 0 || headers.empty()) {
        return LLVMFuzzerMutate(bytes, count, most);
    }
    const Range header = headerAt(bytes, count, headers[seed / 8 % headers.size()]);
    const std::vector<Range> values = findValues(bytes, header);
    if (values.empty()) {
        return LLVMFuzzerMutate(bytes, count, most);
    }
    mutateIn(bytes, values[seed / 8 / headers.size() % values.size()]);
    const std::uint32_t checksum = Lookup3::of(bytes + header.begin, header.count);
    std::memcpy(bytes + header.begin + header.count, &checksum, sizeof(checksum));
    return count;
}

extern "C" __attribute__((visibility("default"))) int LLVMFuzzerTestOneInput(const unsigned char* bytes,
                                                                             std::size_t count)
{
    Fuzz::read(bytes, count, {"\x89HDF\r\n\x1a\n"});
    return 0;
}
