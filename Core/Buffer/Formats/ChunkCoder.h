// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/Formats/Deflate.h"
#include "Core/Buffer/Formats/Hdf5.h"

#include <memory>
#include <mutex>
#include <span>
#include <vector>

struct inflate_state;

namespace BufferApi::Formats
{

/// Does what HDF5's filters shuffle, deflate and Fletcher32 do to a chunk, outside of HDF5 and faster.
///
/// A chunk is given by its leading bytes; what the rows of an edge chunk leave over is zero in the file. Not
/// synchronised: one coder per thread, see CoderPool.
class ChunkCoder
{
public:
    ChunkCoder();
    ~ChunkCoder();

    /// The bytes to store: packed ones, which are valid until the next call, or the given ones with a
    /// checksum behind them.
    [[nodiscard]] Hdf5::StoredChunk encode(const Hdf5::DatasetLayout& layout, const void* data,
                                           unsigned long long bytes);
    /// Fills the destination with the leading `bytes` of the chunk; with none the chunk is only checked.
    /// \param filterMask bit n set: the stored bytes did not go through filter n
    /// \returns the reason when the stored bytes are damaged, null otherwise
    [[nodiscard]] const char* decode(const Hdf5::DatasetLayout& layout, std::span<const unsigned char> stored,
                                     unsigned int filterMask, void* destination, unsigned long long bytes);

    /// For the stored bytes that are to be decoded.
    [[nodiscard]] unsigned char* storedBytes(unsigned long long bytes) { return m_stored.reserve(bytes); }

private:
    [[nodiscard]] const char* inflate(std::span<const unsigned char> source, unsigned char* destination,
                                      unsigned long long bytes);

    std::unique_ptr<inflate_state> m_inflate;
    Deflater m_deflater;
    Scratch m_plain;
    Scratch m_stored;
};

inline constexpr unsigned long long checksumBytes = 4;
/// A byte of a deflate stream stands for so many bytes at most.
inline constexpr unsigned long long mostPerPackedByte = 1032;

/// What is left of the filters of a layout for a chunk that did not go through those of the mask.
[[nodiscard]] Hdf5::Filters filtersOf(const Hdf5::DatasetLayout& layout, unsigned int filterMask) noexcept;

/// The checksum that stands in the file.
[[nodiscard]] unsigned int readChecksum(const unsigned char* bytes) noexcept;

/// Bytes of a whole chunk before the filters.
[[nodiscard]] unsigned long long chunkBytes(const Hdf5::DatasetLayout& layout) noexcept;

/// Coders of one open file, so that a read does not have to allocate one and threads do not wait for each
/// other.
class CoderPool
{
public:
    /// Gives its coder back when it goes.
    class Lease
    {
    public:
        explicit Lease(CoderPool& pool);
        Lease(const Lease&) = delete;
        Lease& operator=(const Lease&) = delete;
        ~Lease();

        [[nodiscard]] ChunkCoder& operator*() const noexcept { return *m_coder; }

    private:
        CoderPool& m_pool;
        std::unique_ptr<ChunkCoder> m_coder;
    };

private:
    std::mutex m_mutex;
    std::vector<std::unique_ptr<ChunkCoder>> m_idle;
};

} // namespace BufferApi::Formats
