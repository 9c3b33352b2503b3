// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/Formats/ChunkCoder.h"
#include "Core/Buffer/Formats/Hdf5.h"

#include <QByteArray>

#include <memory>
#include <mutex>
#include <optional>

namespace BufferApi::Formats::Native
{

/// Rows of a chunk of a column that grows frame by frame.
inline constexpr unsigned long long framesPerChunk = 128;
/// Bytes of a chunk of text.
inline constexpr unsigned long long textPerChunk = 1ULL << 16U;

/// Writes a one-dimensional dataset from its start to its end; packed, in chunks, of which the last one waits
/// in memory.
class ColumnWriter
{
public:
    /// A column that grows. \param coder outlives the column
    ColumnWriter(Hdf5::Group& group, const std::string& name, Hdf5::Element element,
                 unsigned long long chunkElements, ChunkCoder& coder);
    /// A column of known length.
    ColumnWriter(Hdf5::Group& group, const std::string& name, Hdf5::Element element, ChunkCoder& coder,
                 unsigned long long length);

    [[nodiscard]] Hdf5::Dataset& dataset() noexcept { return m_dataset; }
    [[nodiscard]] unsigned long long size() const noexcept { return m_size; }

    void append(const void* elements, unsigned long long count);
    template <typename T>
    void append(T value)
    {
        append(&value, 1);
    }
    /// Appends so many zeros.
    void pad(unsigned long long count);
    /// Writes what waits; the column may grow on afterwards.
    void flush();

private:
    ColumnWriter(Hdf5::Dataset dataset, ChunkCoder& coder);
    void writeChunk();

    Hdf5::Dataset m_dataset;
    ChunkCoder& m_coder;
    QByteArray m_waiting;
    /// Where the chunk that is not yet full lies in the file.
    std::optional<Hdf5::FilePiece> m_replaced;
    unsigned long long m_size = 0;
};

/// A dimension without values, such as the bytes of a text; it has to be resized along with its column.
[[nodiscard]] Hdf5::Dataset createDimension(Hdf5::Group& group, const std::string& name);

struct OpenFile;

/// Reads a one-dimensional dataset by pieces; several threads may read at once.
class ColumnReader
{
public:
    /// Other integers are read as `element` too. \param file outlives the column
    ColumnReader(Hdf5::Dataset dataset, Hdf5::Element element, OpenFile& file);

    [[nodiscard]] unsigned long long size() const noexcept { return m_dataset.extents()[0]; }
    [[nodiscard]] const Hdf5::Dataset& dataset() const noexcept { return m_dataset; }
    /// Raises RTE::FileReadError when the column is no longer than that or its bytes are damaged.
    void read(unsigned long long first, unsigned long long count, void* destination) const;
    template <typename T>
    [[nodiscard]] T at(unsigned long long index) const
    {
        T value{};
        read(index, 1, &value);
        return value;
    }

    /// Bytes of a text; memory is taken as they prove to be there.
    [[nodiscard]] QByteArray text(unsigned long long first, unsigned long long count) const;

private:
    void loadChunk(unsigned long long chunk) const;

    Hdf5::Dataset m_dataset;
    Hdf5::Element m_element;
    OpenFile& m_file;
    mutable std::mutex m_mutex;
    mutable QByteArray m_chunk;
    mutable std::optional<unsigned long long> m_loaded;
};

/// Whether a chunk is no larger than the file and what it unpacks to is possible.
[[nodiscard]] bool hasPossibleSize(const Hdf5::Dataset& dataset, const Hdf5::PlacedChunk& chunk,
                                   unsigned long long fileBytes);

/// Finds a chunk and checks its stored size before it is read.
[[nodiscard]] Hdf5::PlacedChunk checkedChunk(const Hdf5::Dataset& dataset, const Hdf5::Extents& offset,
                                             unsigned long long fileBytes);

} // namespace BufferApi::Formats::Native
