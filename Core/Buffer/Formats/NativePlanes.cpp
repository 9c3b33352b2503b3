// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/NativePlanes.h"

#include "Core/Buffer/Formats/Checksum.h"
#include "Core/Buffer/Formats/Hdf5Call.h"
#include "Core/Buffer/Formats/NativeColumns.h"
#include "Core/Buffer/Formats/Pages.h"
#include "Core/Buffer/LazyPlane.h"
#include "Core/Common/Array.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace BufferApi::Formats::Native
{

namespace
{

// A chunk and what it is coded to should stay in the processor's second cache.
constexpr unsigned long long mostChunkBytes = 1ULL << 20U;
// So many chunks are made known to HDF5, or found, at once.
constexpr unsigned long long chunksAtOnce = 64;

/// Rows of a chunk, such that the last chunk of a plane is nearly as full as the others.
unsigned long long chunkRows(const PlaneGeometry& geometry)
{
    const unsigned long long height = std::max(1U, geometry.component().height);
    const unsigned long long rowBytes = std::max(1ULL, geometry.rowBytes());
    const unsigned long long most = std::clamp(mostChunkBytes / rowBytes, 1ULL, height);
    const unsigned long long chunks = (height + most - 1) / most;
    return (height + chunks - 1) / chunks;
}

Hdf5::DatasetLayout layoutOf(const PlaneGeometry& geometry, bool isPacked)
{
    Hdf5::DatasetLayout layout{geometry.element(),
                               geometry.extents(0),
                               geometry.extents(Hdf5::unlimited),
                               geometry.block(chunkRows(geometry)),
                               {}};
    const bool hasSeveralBytes = Hdf5::elementSize(layout.element) > 1;
    layout.filters = {isPacked && hasSeveralBytes, isPacked, !isPacked};
    for (std::size_t i = 0; i < layout.maximum.size(); ++i) {
        // HDF5 wants no chunk beyond a fixed length, and none of length 0.
        layout.maximum[i] = layout.maximum[i] == 0 ? Hdf5::unlimited : layout.maximum[i];
        layout.chunk[i] = std::max(1ULL, layout.chunk[i]);
    }
    return layout;
}

void toChannels(const RgbQuad* pixels, unsigned long long count, unsigned int channels, unsigned char* values)
{
    for (unsigned long long i = 0; i < count; ++i, values += channels) {
        values[0] = pixels[i].red;
        values[1] = pixels[i].green;
        values[2] = pixels[i].blue;
        if (channels == 4) {
            values[3] = pixels[i].reserved;
        }
    }
}

void fromChannels(const unsigned char* values, unsigned long long count, unsigned int channels,
                  unsigned char* pixels)
{
    for (unsigned long long i = 0; i < count; ++i, values += channels) {
        const unsigned char reserved = channels == 4 ? values[3] : static_cast<unsigned char>(0);
        const RgbQuad pixel{values[2], values[1], values[0], reserved};
        std::memcpy(pixels + i * sizeof(RgbQuad), &pixel, sizeof(RgbQuad));
    }
}

} // namespace

PlaneGeometry::PlaneGeometry(const ComponentStructure& component, unsigned int depth, unsigned int choices)
    : m_component(component), m_depth(depth), m_choices(choices)
{
}

Hdf5::Element PlaneGeometry::element() const noexcept
{
    return m_component.type == DT_RGB ? Hdf5::Element::U8 : static_cast<Hdf5::Element>(m_component.type);
}

unsigned long long PlaneGeometry::rowBytes() const noexcept
{
    return Hdf5::elementSize(element()) * m_component.width * m_component.channels;
}

Hdf5::Extents PlaneGeometry::withFrameAndPlane(unsigned long long row, unsigned long long choice,
                                               unsigned long long z) const
{
    return m_choices > 1 ? Hdf5::Extents{row, choice, z} : Hdf5::Extents{row, z};
}

Hdf5::Extents PlaneGeometry::extents(unsigned long long rows) const
{
    Hdf5::Extents extents = withFrameAndPlane(rows, m_choices, m_depth);
    extents.push_back(m_component.height);
    extents.push_back(m_component.width);
    if (m_component.type == DT_RGB) {
        extents.push_back(m_component.channels);
    }
    return extents;
}

Hdf5::Extents PlaneGeometry::offset(const PlanePosition& position, unsigned long long y) const
{
    Hdf5::Extents offset = withFrameAndPlane(position.row, position.choice, position.z);
    offset.push_back(y);
    offset.resize(offset.size() + (m_component.type == DT_RGB ? 2 : 1));
    return offset;
}

Hdf5::Extents PlaneGeometry::block(unsigned long long rows) const
{
    Hdf5::Extents block = withFrameAndPlane(1, 1, 1);
    block.push_back(rows);
    block.push_back(m_component.width);
    if (m_component.type == DT_RGB) {
        block.push_back(m_component.channels);
    }
    return block;
}

unsigned long long PlaneGeometry::indexOf(const PlanePosition& position) const noexcept
{
    return (position.row * m_choices + position.choice) * m_depth + position.z;
}

PlanePosition PlaneGeometry::positionOf(unsigned long long index) const noexcept
{
    const unsigned long long plane = index / m_depth;
    return {plane / m_choices, static_cast<unsigned int>(plane % m_choices),
            static_cast<unsigned int>(index % m_depth)};
}

PlaneWriter::PlaneWriter(Hdf5::Group& group, const std::string& name, const PlaneGeometry& geometry,
                         bool isPacked, ChunkCoder& coder)
    : m_geometry(geometry), m_dataset(group.createDataset(name, layoutOf(geometry, isPacked))), m_coder(coder)
{
}

void PlaneWriter::write(const PlanePosition& position, const I_PlaneBase& plane)
{
    const ComponentStructure& component = m_geometry.component();
    if (component.width == 0 || component.height == 0) {
        return;
    }
    const unsigned char* pixels = pixelsOf(plane);
    const unsigned long long memoryRow = GetDataTypeSize(component.type) * component.width;
    const unsigned long long step = m_dataset.layout().chunk[m_geometry.dimensionY()];
    for (unsigned long long y = 0; y < component.height; y += step) {
        const unsigned long long rows = std::min(step, component.height - y);
        const unsigned char* values = inFileOrder(pixels + y * memoryRow, rows);
        Hdf5::StoredChunk chunk = m_coder.encode(m_dataset.layout(), values, rows * m_geometry.rowBytes());
        chunk.memoryOffset = y * memoryRow;
        m_written.push_back({position, y, m_dataset.storeChunk(chunk)});
    }
    if (m_written.size() >= chunksAtOnce) {
        flush();
    }
}

void PlaneWriter::flush()
{
    const Hdf5::Serial serial;
    if (m_dataset.extents()[0] != m_rows) {
        m_dataset.resize(m_geometry.extents(m_rows));
    }
    for (const WrittenChunk& chunk : m_written) {
        m_dataset.addChunk(m_geometry.offset(chunk.position, chunk.y), chunk.place);
    }
    m_written.clear();
}

const unsigned char* PlaneWriter::pixelsOf(const I_PlaneBase& plane)
{
    if (isUnread(plane)) {
        unsigned char* copy =
            m_plane.reserve(planeBytes(plane.GetDataType(), plane.GetWidth(), plane.GetHeight()));
        readPlane(plane, copy);
        return copy;
    }
    const void* data = plane.GetData();
    if (data == nullptr) {
        m_dataset.fail(QStringLiteral("a plane has no data"));
    }
    return static_cast<const unsigned char*>(data);
}

const unsigned char* PlaneWriter::inFileOrder(const unsigned char* pixels, unsigned long long rows)
{
    const ComponentStructure& component = m_geometry.component();
    if (component.type != DT_RGB) {
        return pixels;
    }
    unsigned char* values = m_channels.reserve(rows * m_geometry.rowBytes());
    toChannels(reinterpret_cast<const RgbQuad*>(pixels), rows * component.width, component.channels, values);
    return values;
}

PlaneReader::PlaneReader(Hdf5::Dataset dataset, const PlaneGeometry& geometry, std::shared_ptr<OpenFile> file)
    : m_file(std::move(file)), m_dataset(std::move(dataset)), m_geometry(geometry)
{
    checkExtents();
    checkChunks();
}

void PlaneReader::checkExtents() const
{
    const Hdf5::DatasetLayout& layout = m_dataset.layout();
    if (layout.extents != m_geometry.extents(layout.extents.empty() ? 0 : layout.extents[0])) {
        m_dataset.fail(QStringLiteral("its extents are not those of the frames"));
    }
    if (layout.element != m_geometry.element()) {
        m_dataset.fail(QStringLiteral("its element type is not that of the component"));
    }
    const unsigned long long bytes =
        Hdf5::saturatingProduct(layout.extents, Hdf5::elementSize(layout.element)) / mostPerPackedByte;
    if (bytes > m_file->bytes) {
        m_dataset.fail(QStringLiteral("its extents are larger than the file can hold"));
    }
    const unsigned long long planeBytes = m_geometry.rowBytes() * m_geometry.component().height;
    const bool isStoredAsItIs = !layout.chunk.empty() && !layout.filters.deflate;
    if (isStoredAsItIs && planeBytes > m_file->bytes) {
        m_dataset.fail(QStringLiteral("its planes are larger than the file"));
    }
}

void PlaneReader::checkChunks()
{
    const Hdf5::Extents& chunk = m_dataset.layout().chunk;
    const std::size_t y = m_geometry.dimensionY();
    // Chunks of other shapes, which other programs make, are read through HDF5's own filters.
    if (!chunk.empty() && chunk == m_geometry.block(chunk[y])) {
        m_chunkRows = chunk[y];
    }
    if (m_dataset.libraryChunkBytes() / mostPerPackedByte > m_file->bytes) {
        m_dataset.fail(QStringLiteral("its chunks are larger than the file can hold"));
    }
}

void PlaneReader::read(const PlanePosition& position, unsigned char* destination) const
{
    const ComponentStructure& component = m_geometry.component();
    const unsigned long long height = component.width == 0 ? 0 : component.height;
    const unsigned long long memoryRow = GetDataTypeSize(component.type) * component.width;
    const std::vector<Hdf5::PlacedChunk> chunks = findChunks(position);
    const unsigned long long step = m_chunkRows == 0 ? height : m_chunkRows;
    const CoderPool::Lease coder(m_file->coders);
    const bool isColour = component.type == DT_RGB;
    const bool isFresh = !isColour && RTE::lacksPages(destination, height * memoryRow);
    Scratch channels;
    for (unsigned long long y = 0; y < height; y += step) {
        const unsigned long long rows = std::min(step, height - y);
        unsigned char* pixels = destination + y * memoryRow;
        unsigned char* values = isColour ? channels.reserve(rows * m_geometry.rowBytes()) : pixels;
        if (chunks.empty()) {
            m_dataset.readThroughLibrary(m_geometry.offset(position, y), m_geometry.block(rows),
                                         m_geometry.element(), values);
        } else {
            readChunk(position, chunks[y / step], {values, rows * m_geometry.rowBytes(), isFresh}, *coder);
        }
        if (isColour) {
            fromChannels(values, rows * component.width, component.channels, pixels);
        }
    }
    m_dataset.checkUnchanged();
}

std::vector<Hdf5::PlacedChunk> PlaneReader::findChunks(const PlanePosition& position) const
{
    const unsigned long long plane = m_geometry.indexOf(position);
    const Hdf5::Serial serial;
    const bool isNext = m_next == plane;
    m_next = plane + 1;
    if (plane - m_firstFound >= m_found.size()) {
        std::vector<Hdf5::PlacedChunk> chunks;
        for (unsigned long long y = 0; y < rowsInChunks(); y += m_chunkRows) {
            chunks.push_back(checkedChunk(m_dataset, m_geometry.offset(position, y), m_file->bytes));
        }
        m_found.assign(1, std::move(chunks));
        m_firstFound = plane;
        m_ahead = isNext ? std::min(chunksAtOnce, 2 * std::max(1ULL, m_ahead)) : 0;
        findAhead(plane + 1);
    }
    return m_found[plane - m_firstFound];
}

unsigned long long PlaneReader::rowsInChunks() const noexcept
{
    const ComponentStructure& component = m_geometry.component();
    return m_chunkRows > 0 && component.width > 0 ? component.height : 0;
}

void PlaneReader::findAhead(unsigned long long plane) const
{
    const unsigned long long end = m_geometry.indexOf({rows(), 0, 0});
    for (unsigned long long count = 0; count < m_ahead && plane < end; ++plane) {
        const PlanePosition position = m_geometry.positionOf(plane);
        std::vector<Hdf5::PlacedChunk> chunks;
        for (unsigned long long y = 0; y < rowsInChunks(); y += m_chunkRows) {
            const auto chunk = m_dataset.tryFindChunk(m_geometry.offset(position, y));
            if (!chunk || !hasPossibleSize(m_dataset, *chunk, m_file->bytes)) {
                return;
            }
            chunks.push_back(*chunk);
        }
        count += std::max<std::size_t>(1, chunks.size());
        m_found.push_back(std::move(chunks));
    }
}

void PlaneReader::readChunk(const PlanePosition& position, const Hdf5::PlacedChunk& chunk,
                            const Target& target, ChunkCoder& coder) const
{
    const Hdf5::Filters filters = filtersOf(m_dataset.layout(), chunk.filterMask);
    const char* reason = filters.shuffle || filters.deflate
                             ? readCoded(chunk, target, coder)
                             : readAsItIs(chunk.piece, filters.fletcher32, target, coder);
    if (reason != nullptr) {
        m_dataset.checkUnchanged();
        m_dataset.fail(QStringLiteral("frame row %1, plane %2: %3")
                           .arg(position.row)
                           .arg(position.z)
                           .arg(QLatin1String(reason)));
    }
}

const char* PlaneReader::readCoded(const Hdf5::PlacedChunk& chunk, const Target& target,
                                   ChunkCoder& coder) const
{
    unsigned char* stored = coder.storedBytes(chunk.piece.bytes);
    m_dataset.readStored(chunk.piece, stored);
    if (target.isFresh) {
        RTE::populatePages(target.values, target.bytes);
    }
    return coder.decode(m_dataset.layout(), {stored, chunk.piece.bytes}, chunk.filterMask, target.values,
                        target.bytes);
}

const char* PlaneReader::readAsItIs(const Hdf5::FilePiece& piece, bool hasChecksum, const Target& target,
                                    ChunkCoder& coder) const
{
    const auto [values, bytes, isFresh] = target;
    const unsigned long long whole = chunkBytes(m_dataset.layout());
    if (piece.bytes != whole + (hasChecksum ? checksumBytes : 0)) {
        return "a chunk has the wrong size";
    }
    Fletcher32 sum;
    unsigned long long count = 0;
    for (unsigned long long done = 0; done < bytes; done += count) {
        count = bytesAtOnce(piece.address + done, bytes - done);
        if (isFresh) {
            // A page belongs to the piece in which it begins.
            RTE::populatePages(values + done, std::min(count + pageBytes, bytes - done));
        }
        m_dataset.readStored({piece.address + done, count}, values + done);
        if (hasChecksum) {
            sum.add(values + done, count);
        }
    }
    if (!hasChecksum) {
        return nullptr;
    }
    const unsigned long long missing = whole - bytes;
    unsigned char* tail = coder.storedBytes(missing + checksumBytes);
    m_dataset.readStored({piece.address + bytes, missing + checksumBytes}, tail);
    sum.add(tail, missing);
    return sum.value() == readChecksum(tail + missing) ? nullptr : "checksum mismatch";
}

} // namespace BufferApi::Formats::Native
