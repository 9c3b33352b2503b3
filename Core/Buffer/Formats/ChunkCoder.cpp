// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/ChunkCoder.h"

#include "Core/Buffer/Formats/ByteShuffle.h"
#include "Core/Buffer/Formats/Checksum.h"

#include <isa-l/igzip_lib.h>

#include <cstring>
#include <limits>
#include <utility>

namespace BufferApi::Formats
{

/// HDF5 counts the filters in the order of the pipeline.
Hdf5::Filters filtersOf(const Hdf5::DatasetLayout& layout, unsigned int filterMask) noexcept
{
    Hdf5::Filters left = layout.filters;
    unsigned position = 0;
    for (bool* filter : {&left.shuffle, &left.deflate, &left.fletcher32}) {
        if (*filter) {
            *filter = (filterMask >> position & 1U) == 0;
            ++position;
        }
    }
    return left;
}

unsigned int readChecksum(const unsigned char* bytes) noexcept
{
    unsigned int value = 0;
    std::memcpy(&value, bytes, checksumBytes);
    return value;
}

unsigned long long chunkBytes(const Hdf5::DatasetLayout& layout) noexcept
{
    unsigned long long bytes = Hdf5::elementSize(layout.element);
    for (const unsigned long long extent : layout.chunk) {
        bytes *= extent;
    }
    return bytes;
}

ChunkCoder::ChunkCoder() : m_inflate(std::make_unique_for_overwrite<inflate_state>()) {}

ChunkCoder::~ChunkCoder() = default;

Hdf5::StoredChunk ChunkCoder::encode(const Hdf5::DatasetLayout& layout, const void* data,
                                     unsigned long long bytes)
{
    const unsigned long long whole = chunkBytes(layout);
    const Hdf5::Filters& filters = layout.filters;
    std::span<const unsigned char> plain(static_cast<const unsigned char*>(data), bytes);
    if (filters == Hdf5::Filters{false, false, true}) {
        return {plain, whole - bytes, true};
    }
    if (filters.shuffle || bytes < whole) {
        unsigned char* copy = m_plain.reserve(whole);
        const auto size = filters.shuffle ? static_cast<unsigned>(Hdf5::elementSize(layout.element)) : 1U;
        if (bytes < whole) {
            std::memset(copy, 0, whole);
        }
        shuffleBytes(data, bytes / size, size, copy, whole / size);
        plain = {copy, whole};
    }
    RTE::verify(filters.deflate && !filters.fletcher32, "Unknown form of a chunk");
    return {m_deflater.pack(plain)};
}

const char* ChunkCoder::decode(const Hdf5::DatasetLayout& layout, std::span<const unsigned char> stored,
                               unsigned int filterMask, void* destination, unsigned long long bytes)
{
    const unsigned long long whole = chunkBytes(layout);
    const Hdf5::Filters filters = filtersOf(layout, filterMask);
    if (filters.fletcher32) {
        if (stored.size() < checksumBytes) {
            return "a chunk is too short";
        }
        stored = stored.first(stored.size() - checksumBytes);
        Fletcher32 sum;
        sum.add(stored.data(), stored.size());
        if (sum.value() != readChecksum(stored.data() + stored.size())) {
            return "checksum mismatch";
        }
    }
    if (filters.deflate) {
        const bool isDirect = !filters.shuffle && bytes == whole;
        auto* plain = isDirect ? static_cast<unsigned char*>(destination) : m_plain.reserve(whole);
        if (const char* reason = inflate(stored, plain, whole)) {
            return reason;
        }
        stored = {plain, whole};
    }
    if (stored.size() != whole) {
        return "a chunk has the wrong size";
    }
    const auto size = filters.shuffle ? static_cast<unsigned>(Hdf5::elementSize(layout.element)) : 1U;
    if (bytes > 0 && stored.data() != destination) {
        unshuffleBytes(stored.data(), whole / size, bytes / size, size, destination);
    }
    return nullptr;
}

const char* ChunkCoder::inflate(std::span<const unsigned char> source, unsigned char* destination,
                                unsigned long long bytes)
{
    constexpr unsigned long long limit = std::numeric_limits<unsigned int>::max();
    if (source.size() > limit || bytes > limit) {
        return "a chunk is too large";
    }
    inflate_state& state = *m_inflate;
    isal_inflate_init(&state);
    state.crc_flag = ISAL_ZLIB;
    state.next_in = const_cast<unsigned char*>(source.data());
    state.avail_in = static_cast<unsigned int>(source.size());
    state.next_out = destination;
    state.avail_out = static_cast<unsigned int>(bytes);
    if (isal_inflate(&state) != ISAL_DECOMP_OK || state.block_state != ISAL_BLOCK_FINISH ||
        state.total_out != bytes) {
        return "packed bytes are damaged";
    }
    return nullptr;
}

CoderPool::Lease::Lease(CoderPool& pool) : m_pool(pool)
{
    {
        const std::scoped_lock lock(pool.m_mutex);
        if (!pool.m_idle.empty()) {
            m_coder = std::move(pool.m_idle.back());
            pool.m_idle.pop_back();
        }
    }
    if (!m_coder) {
        m_coder = std::make_unique<ChunkCoder>();
    }
}

CoderPool::Lease::~Lease()
{
    const std::scoped_lock lock(m_pool.m_mutex);
    m_pool.m_idle.push_back(std::move(m_coder));
}

} // namespace BufferApi::Formats
