// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/ChunkCoder.h"
#include "Core/Buffer/Formats/Hdf5.h"
#include "Core/Buffer/Formats/Hdf5Bytes.h"
#include "Core/Buffer/Formats/Hdf5Call.h"
#include "Core/Buffer/Formats/Hdf5Storage.h"

#include <hdf5_hl.h>

#include <algorithm>
#include <array>
#include <utility>

namespace BufferApi::Hdf5
{

namespace
{

bool isKnownOrder(const std::vector<H5Z_filter_t>& filters)
{
    static constexpr std::array order{H5Z_FILTER_SHUFFLE, H5Z_FILTER_DEFLATE, H5Z_FILTER_FLETCHER32};
    auto next = order.begin();
    for (const H5Z_filter_t filter : filters) {
        next = std::find(next, order.end(), filter);
        if (next == order.end()) {
            return false;
        }
        ++next;
    }
    return true;
}

} // namespace

Dataset::Dataset(Handle handle, ContextPointer file, std::string name)
    : Object(std::move(handle), std::move(file), std::move(name))
{
    readLayout();
}

Dataset::Dataset(Handle handle, ContextPointer file, std::string name, DatasetLayout layout, Handle twin)
    : Object(std::move(handle), std::move(file), std::move(name), std::move(twin)),
      m_layout(std::move(layout)),
      m_chunkBytes(saturatingProduct(m_layout.chunk, elementSize(m_layout.element)))
{
}

void Dataset::readLayout()
{
    const Serial serial;
    const Handle space =
        checkedHandle(*m_file, m_name, H5Sclose, [&] { return H5Dget_space(m_handle.get()); });
    const int rank = checked(*m_file, m_name, [&] { return H5Sget_simple_extent_ndims(space.get()); });
    m_layout.extents.resize(static_cast<std::size_t>(rank));
    m_layout.maximum.resize(static_cast<std::size_t>(rank));
    checked(*m_file, m_name, [&] {
        return H5Sget_simple_extent_dims(space.get(), m_layout.extents.data(), m_layout.maximum.data());
    });

    const Handle type = checkedHandle(*m_file, m_name, H5Tclose, [&] { return H5Dget_type(m_handle.get()); });
    const FoundElement found = findElement(*m_file, m_name, type.get());
    if (!found.element) {
        fail(QStringLiteral("unsupported element type"));
    }
    m_layout.element = *found.element;

    const Handle properties =
        checkedHandle(*m_file, m_name, H5Pclose, [&] { return H5Dget_create_plist(m_handle.get()); });
    const auto kind = checked(*m_file, m_name, [&] { return H5Pget_layout(properties.get()); });
    if (kind == H5D_VIRTUAL ||
        checked(*m_file, m_name, [&] { return H5Pget_external_count(properties.get()); }) != 0) {
        fail(QStringLiteral("the data lies in other files"));
    }
    m_layout.filters = readFilters(properties.get());
    const auto elementBytes =
        checked(*m_file, m_name, [&] { return static_cast<long long>(H5Tget_size(type.get())); });
    if (kind == H5D_CHUNKED) {
        m_chunk.resize(static_cast<std::size_t>(rank));
        checked(*m_file, m_name, [&] { return H5Pget_chunk(properties.get(), rank, m_chunk.data()); });
        m_chunkBytes = saturatingProduct(m_chunk, static_cast<unsigned long long>(elementBytes));
        if (m_chunkBytes == 0) {
            fail(QStringLiteral("its chunks are empty"));
        }
        // The library reads on behind what such a filter gives.
        if (m_filteredElements && *m_filteredElements != saturatingProduct(m_chunk, 1)) {
            fail(QStringLiteral("its chunks are not those of its filters"));
        }
        unsigned options = 0;
        checked(*m_file, m_name, [&] { return H5Pget_chunk_opts(properties.get(), &options); });
        m_hasPlainEdges = (options & H5D_CHUNK_DONT_FILTER_PARTIAL_CHUNKS) != 0;
        m_layout.chunk = found.isExact && m_hasKnownFilters ? m_chunk : Extents();
    } else {
        checkOneBlock(static_cast<unsigned long long>(elementBytes), kind == H5D_CONTIGUOUS);
    }
}

void Dataset::checkOneBlock(unsigned long long elementBytes, bool maybeUnwritten) const
{
    const unsigned long long stored = H5Dget_storage_size(m_handle.get());
    const bool isUnwritten = stored == 0 && maybeUnwritten;
    if (!isUnwritten && stored < saturatingProduct(m_layout.extents, elementBytes)) {
        fail(QStringLiteral("its data is shorter than its extents"));
    }
}

bool Dataset::hasChecksums() const
{
    return (m_layout.filters.deflate || m_layout.filters.fletcher32) && !m_hasPlainEdges &&
           describesChunksSafely();
}

bool Dataset::describesChunksSafely() const
{
    // Headers of the first format and the tree of chunks that belongs to it have no checksums.
    H5F_info2_t file;
    H5O_info_t object;
    H5D_chunk_index_t index = H5D_CHUNK_IDX_BTREE;
    const Serial serial;
    checked(*m_file, m_name, [&] { return H5Fget_info2(m_handle.get(), &file); });
    checked(*m_file, m_name, [&] { return H5Oget_info2(m_handle.get(), &object, H5O_INFO_HDR); });
    checked(*m_file, m_name, [&] { return H5Dget_chunk_index_type(m_handle.get(), &index); });
    return file.super.version >= 2 && object.hdr.version >= 2 && index != H5D_CHUNK_IDX_BTREE;
}

Filters Dataset::readFilters(hid_t properties)
{
    const int count = checked(*m_file, m_name, [&] { return H5Pget_nfilters(properties); });
    std::vector<H5Z_filter_t> filters;
    for (unsigned index = 0; index < static_cast<unsigned>(count); ++index) {
        std::array<unsigned, 3> numbers{};
        filters.push_back(checked(*m_file, m_name, [&] {
            unsigned flags = 0;
            std::size_t given = numbers.size();
            return H5Pget_filter2(properties, index, &flags, &given, numbers.data(), 0, nullptr, nullptr);
        }));
        if (filters.back() == H5Z_FILTER_SCALEOFFSET || filters.back() == H5Z_FILTER_NBIT) {
            m_filteredElements = numbers[2];
        }
    }
    m_hasKnownFilters = isKnownOrder(filters);
    const auto has = [&](H5Z_filter_t filter) {
        return std::find(filters.begin(), filters.end(), filter) != filters.end();
    };
    return {has(H5Z_FILTER_SHUFFLE), has(H5Z_FILTER_DEFLATE), has(H5Z_FILTER_FLETCHER32)};
}

void Dataset::resize(const Extents& extents)
{
    forEachTable(m_handle, m_twin, [&](hid_t id) {
        checked(*m_file, m_name, [&] { return H5Dset_extent(id, extents.data()); });
    });
    m_layout.extents = extents;
}

std::optional<PlacedChunk> Dataset::findChunk(const Extents& offset) const
{
    std::optional<PlacedChunk> chunk;
    checked(*m_file, m_name, [&] {
        const herr_t result = lookUp(offset, chunk);
        if (result >= 0 || chunk) {
            return result;
        }
        // The library tells the reason of its latest call alone.
        return isMissing(offset) ? 0 : lookUp(offset, chunk);
    });
    return chunk;
}

bool Dataset::isMissing(const Extents& offset) const
{
    hsize_t bytes = 0;
    return H5Dget_chunk_info_by_coord(m_handle.get(), offset.data(), nullptr, nullptr, &bytes) >= 0 &&
           bytes == 0;
}

std::optional<PlacedChunk> Dataset::tryFindChunk(const Extents& offset) const
{
    const Serial serial;
    std::optional<PlacedChunk> chunk;
    const herr_t result = lookUp(offset, chunk);
    if (m_file->takeFailure().isNull() && result >= 0) {
        return chunk;
    }
    static_cast<void>(failureReason());
    return {};
}

herr_t Dataset::lookUp(const Extents& offset, std::optional<PlacedChunk>& chunk) const
{
    InputBytes& file = *m_file->input();
    uint32_t mask = 0;
    char nowhere = 0;
    file.expectChunk(&nowhere);
    const herr_t result = H5Dread_chunk(m_handle.get(), H5P_DEFAULT, offset.data(), &mask, &nowhere);
    if (const auto piece = file.takePlace()) {
        constexpr unsigned int allFilters = ~0U;
        chunk = PlacedChunk{*piece, m_hasPlainEdges && isOnEdge(offset) ? allFilters : mask};
    }
    return result;
}

bool Dataset::isOnEdge(const Extents& offset) const
{
    for (std::size_t i = 0; i < offset.size(); ++i) {
        if (m_chunk[i] > m_layout.extents[i] - offset[i]) {
            return true;
        }
    }
    return false;
}

void Dataset::readStored(const FilePiece& piece, void* destination) const
{
    m_file->input()->readStored(piece, destination);
}

void Dataset::checkUnchanged() const
{
    m_file->input()->checkUnchanged();
}

FilePiece Dataset::storeChunk(const StoredChunk& chunk)
{
    Storage& storage = *m_file->storage();
    const FilePiece place = storage.storeChunk(chunk);
    if (!storage.failure().isNull()) {
        m_file->fail(storage.failure());
    }
    return place;
}

void Dataset::addChunk(const Extents& offset, const FilePiece& place,
                       const std::optional<FilePiece>& replaced)
{
    Storage& storage = *m_file->storage();
    forEachTable(m_handle, m_twin, [&](hid_t id) {
        const void* stored = storage.expectChunk(place);
        checked(*m_file, m_name,
                [&] { return H5Dwrite_chunk(id, H5P_DEFAULT, 0, offset.data(), place.bytes, stored); });
        storage.checkTaken();
    });
    if (replaced) {
        storage.giveUp(*replaced);
    }
}

void Dataset::checkChunks(const Extents& offset, const Extents& count) const
{
    Formats::ChunkCoder coder;
    Extents first = offset;
    std::transform(first.begin(), first.end(), m_chunk.begin(), first.begin(),
                   [](auto at, auto extent) { return at - at % extent; });
    Extents next = first;
    for (std::size_t dimension = next.size(); dimension > 0;) {
        if (dimension == next.size()) {
            checkChunk(next, coder);
        }
        const std::size_t i = dimension - 1;
        next[i] += m_chunk[i];
        const bool isWithin = next[i] < offset[i] + count[i];
        next[i] = isWithin ? next[i] : first[i];
        dimension = isWithin ? next.size() : i;
    }
}

void Dataset::checkChunk(const Extents& offset, Formats::ChunkCoder& coder) const
{
    const auto chunk = findChunk(offset);
    // One that was never written has the fill value.
    if (!chunk) {
        return;
    }
    const DatasetLayout bytes{Element::U8, {}, {}, {m_chunkBytes}, m_layout.filters};
    const unsigned long long size = chunk->piece.bytes;
    if (size > m_file->input()->size() || m_chunkBytes / Formats::mostPerPackedByte > size) {
        fail(QStringLiteral("a chunk has an impossible size"));
    }
    unsigned char* stored = coder.storedBytes(size);
    readStored(chunk->piece, stored);
    if (const char* reason = coder.decode(bytes, {stored, size}, chunk->filterMask, nullptr, 0)) {
        fail(QLatin1String(reason));
    }
}

void Dataset::readThroughLibrary(const Extents& offset, const Extents& count, Element element,
                                 void* destination) const
{
    // The library reads on behind a chunk that unpacks to fewer bytes than its header tells, which may be
    // damage where nothing shows it.
    if (!m_chunk.empty() && m_hasKnownFilters && !describesChunksSafely()) {
        checkChunks(offset, count);
    }
    const Handle space =
        checkedHandle(*m_file, m_name, H5Sclose, [&] { return H5Dget_space(m_handle.get()); });
    checked(*m_file, m_name, [&] {
        return H5Sselect_hyperslab(space.get(), H5S_SELECT_SET, offset.data(), nullptr, count.data(),
                                   nullptr);
    });
    const Handle memory = checkedHandle(*m_file, m_name, H5Sclose, [&] {
        return H5Screate_simple(static_cast<int>(count.size()), count.data(), nullptr);
    });
    checked(*m_file, m_name, [&] {
        return H5Dread(m_handle.get(), typeOf(element), memory.get(), space.get(), H5P_DEFAULT, destination);
    });
    // The pixels may have come from a block that was read before the file was changed.
    checkUnchanged();
}

void Dataset::makeScale(const std::string& title)
{
    forEachTable(m_handle, m_twin, [&](hid_t id) {
        checked(*m_file, m_name, [&] { return H5DSset_scale(id, title.c_str()); });
    });
}

void Dataset::attachScale(const Dataset& scale, unsigned int dimension)
{
    checked(*m_file, m_name,
            [&] { return H5DSattach_scale(m_handle.get(), scale.m_handle.get(), dimension); });
    if (m_twin.isOpen()) {
        checked(*m_file, m_name,
                [&] { return H5DSattach_scale(m_twin.get(), scale.m_twin.get(), dimension); });
    }
}

} // namespace BufferApi::Hdf5
