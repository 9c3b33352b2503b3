// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/NativeColumns.h"

#include "Core/Buffer/Formats/NativePlanes.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace BufferApi::Formats::Native
{

namespace
{

Hdf5::Filters columnFilters(Hdf5::Element element)
{
    return {Hdf5::elementSize(element) > 1, true, false};
}

Hdf5::Dataset growingDataset(Hdf5::Group& group, const std::string& name, Hdf5::Element element,
                             unsigned long long chunkElements)
{
    return group.createDataset(name,
                               {element, {0}, {Hdf5::unlimited}, {chunkElements}, columnFilters(element)});
}

/// HDF5 wants no chunk beyond a fixed length, and none of length 0.
Hdf5::Dataset fixedDataset(Hdf5::Group& group, const std::string& name, Hdf5::Element element,
                           unsigned long long length)
{
    const unsigned long long chunk = std::clamp(length, 1ULL, textPerChunk / Hdf5::elementSize(element));
    const unsigned long long maximum = length == 0 ? Hdf5::unlimited : length;
    return group.createDataset(name, {element, {length}, {maximum}, {chunk}, columnFilters(element)});
}

} // namespace

ColumnWriter::ColumnWriter(Hdf5::Dataset dataset, ChunkCoder& coder)
    : m_dataset(std::move(dataset)), m_coder(coder)
{
}

ColumnWriter::ColumnWriter(Hdf5::Group& group, const std::string& name, Hdf5::Element element,
                           unsigned long long chunkElements, ChunkCoder& coder)
    : ColumnWriter(growingDataset(group, name, element, chunkElements), coder)
{
}

ColumnWriter::ColumnWriter(Hdf5::Group& group, const std::string& name, Hdf5::Element element,
                           ChunkCoder& coder, unsigned long long length)
    : ColumnWriter(fixedDataset(group, name, element, length), coder)
{
}

void ColumnWriter::append(const void* elements, unsigned long long count)
{
    const Hdf5::DatasetLayout& layout = m_dataset.layout();
    const unsigned long long element = Hdf5::elementSize(layout.element);
    const auto* next = static_cast<const char*>(elements);
    while (count > 0) {
        const unsigned long long taken = std::min(count, layout.chunk[0] - m_size % layout.chunk[0]);
        m_waiting.append(next, static_cast<qsizetype>(taken * element));
        m_size += taken;
        next += taken * element;
        count -= taken;
        if (m_size % layout.chunk[0] == 0) {
            writeChunk();
            m_waiting.clear();
            m_replaced.reset();
        }
    }
}

void ColumnWriter::pad(unsigned long long count)
{
    const QByteArray zero(static_cast<qsizetype>(Hdf5::elementSize(m_dataset.layout().element)), '\0');
    for (; count > 0; --count) {
        append(zero.constData(), 1);
    }
}

void ColumnWriter::flush()
{
    if (!m_waiting.isEmpty()) {
        writeChunk();
    }
}

void ColumnWriter::writeChunk()
{
    const Hdf5::DatasetLayout& layout = m_dataset.layout();
    if (layout.maximum[0] == Hdf5::unlimited) {
        m_dataset.resize({m_size});
    }
    const unsigned long long first = (m_size - 1) / layout.chunk[0] * layout.chunk[0];
    const auto bytes = static_cast<unsigned long long>(m_waiting.size());
    Hdf5::StoredChunk stored = m_coder.encode(layout, m_waiting.constData(), bytes);
    if (m_replaced && m_replaced->bytes == stored.size()) {
        // HDF5 leaves a chunk of the same size where the old one lies, which a lasting file still needs. What
        // follows the end of a deflate stream is not looked at.
        ++stored.zeros;
    }
    const Hdf5::FilePiece place = m_dataset.storeChunk(stored);
    m_dataset.addChunk({first}, place, m_replaced);
    m_replaced = place;
}

Hdf5::Dataset createDimension(Hdf5::Group& group, const std::string& name)
{
    Hdf5::Dataset dataset = growingDataset(group, name, Hdf5::Element::U8, textPerChunk);
    // The text by which netCDF knows a dimension that has no variable; the number is not used.
    dataset.makeScale("This is a netCDF dimension but not a netCDF variable.         0");
    return dataset;
}

ColumnReader::ColumnReader(Hdf5::Dataset dataset, Hdf5::Element element, OpenFile& file)
    : m_dataset(std::move(dataset)), m_element(element), m_file(file)
{
    if (m_dataset.extents().size() != 1) {
        m_dataset.fail(QStringLiteral("it does not have one dimension"));
    }
    const Hdf5::DatasetLayout& layout = m_dataset.layout();
    if (layout.element == Hdf5::Element::F32 || layout.element == Hdf5::Element::F64) {
        m_dataset.fail(QStringLiteral("it does not hold integers"));
    }
    const unsigned long long most = file.bytes * mostPerPackedByte / Hdf5::elementSize(layout.element);
    if (size() > most || m_dataset.libraryChunkBytes() / mostPerPackedByte > file.bytes) {
        m_dataset.fail(QStringLiteral("its extents are larger than the file can hold"));
    }
}

void ColumnReader::read(unsigned long long first, unsigned long long count, void* destination) const
{
    if (first > size() || count > size() - first) {
        m_dataset.fail(QStringLiteral("it is too short"));
    }
    if (count == 0) {
        return;
    }
    const Hdf5::DatasetLayout& layout = m_dataset.layout();
    if (layout.chunk.empty() || layout.element != m_element) {
        m_dataset.readThroughLibrary({first}, {count}, m_element, destination);
        return;
    }
    const unsigned long long element = Hdf5::elementSize(layout.element);
    const std::scoped_lock lock(m_mutex);
    for (auto* next = static_cast<char*>(destination); count > 0;) {
        loadChunk(first / layout.chunk[0]);
        const unsigned long long offset = first % layout.chunk[0];
        const unsigned long long taken = std::min(count, layout.chunk[0] - offset);
        std::memcpy(next, m_chunk.constData() + offset * element, taken * element);
        next += taken * element;
        first += taken;
        count -= taken;
    }
}

QByteArray ColumnReader::text(unsigned long long first, unsigned long long count) const
{
    QByteArray result;
    for (unsigned long long done = 0; done < count;) {
        const unsigned long long next = std::min(textPerChunk, count - done);
        result.resize(static_cast<qsizetype>(done + next));
        read(first + done, next, result.data() + done);
        done += next;
    }
    return result;
}

void ColumnReader::loadChunk(unsigned long long chunk) const
{
    if (m_loaded == chunk) {
        return;
    }
    const Hdf5::DatasetLayout& layout = m_dataset.layout();
    const Hdf5::Extents offset{chunk * layout.chunk[0]};
    const auto [piece, mask] = checkedChunk(m_dataset, offset, m_file.bytes);
    const CoderPool::Lease coder(m_file.coders);
    unsigned char* stored = (*coder).storedBytes(piece.bytes);
    m_dataset.readStored(piece, stored);
    m_dataset.checkUnchanged();
    m_loaded.reset();
    m_chunk.resize(static_cast<qsizetype>(chunkBytes(layout)));
    if (const char* reason =
            (*coder).decode(layout, {stored, piece.bytes}, mask, m_chunk.data(), chunkBytes(layout))) {
        m_dataset.fail(QLatin1String(reason));
    }
    m_loaded = chunk;
}

bool hasPossibleSize(const Hdf5::Dataset& dataset, const Hdf5::PlacedChunk& chunk,
                     unsigned long long fileBytes)
{
    const unsigned long long stored = chunk.piece.bytes;
    return stored > 0 && stored <= fileBytes && chunkBytes(dataset.layout()) / mostPerPackedByte <= stored;
}

Hdf5::PlacedChunk checkedChunk(const Hdf5::Dataset& dataset, const Hdf5::Extents& offset,
                               unsigned long long fileBytes)
{
    const auto chunk = dataset.findChunk(offset);
    if (!chunk) {
        dataset.fail(QStringLiteral("a part of the data is missing"));
    }
    if (!hasPossibleSize(dataset, *chunk, fileBytes)) {
        dataset.fail(QStringLiteral("a chunk has an impossible size"));
    }
    return *chunk;
}

} // namespace BufferApi::Formats::Native
