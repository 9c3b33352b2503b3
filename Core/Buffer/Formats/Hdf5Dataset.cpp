// SPDX-License-Identifier: Apache-2.0
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
      m_libraryChunkBytes(saturatingProduct(m_layout.chunk, elementSize(m_layout.element)))
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
    FoundElement found;
    checked(*m_file, m_name, [&] {
        found = findElement(type.get());
        return 0;
    });
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
    bool onlyKnown = found.isExact && kind == H5D_CHUNKED;
    m_layout.filters = readFilters(properties.get(), onlyKnown);
    if (kind == H5D_CHUNKED) {
        Extents chunk(static_cast<std::size_t>(rank));
        checked(*m_file, m_name, [&] { return H5Pget_chunk(properties.get(), rank, chunk.data()); });
        m_libraryChunkBytes = saturatingProduct(chunk, elementSize(m_layout.element));
        m_layout.chunk = onlyKnown ? std::move(chunk) : Extents();
    }
}

bool Dataset::hasChecksums() const
{
    if (!m_layout.filters.deflate && !m_layout.filters.fletcher32) {
        return false;
    }
    // Headers of the first format and the tree of chunks that belongs to it have none.
    H5F_info2_t file;
    H5D_chunk_index_t index = H5D_CHUNK_IDX_BTREE;
    const Serial serial;
    checked(*m_file, m_name, [&] { return H5Fget_info2(m_handle.get(), &file); });
    checked(*m_file, m_name, [&] { return H5Dget_chunk_index_type(m_handle.get(), &index); });
    return file.super.version >= 2 && index != H5D_CHUNK_IDX_BTREE;
}

Filters Dataset::readFilters(hid_t properties, bool& onlyKnown) const
{
    const int count = checked(*m_file, m_name, [&] { return H5Pget_nfilters(properties); });
    std::vector<H5Z_filter_t> filters;
    for (unsigned index = 0; index < static_cast<unsigned>(count); ++index) {
        filters.push_back(checked(*m_file, m_name, [&] {
            unsigned flags = 0;
            std::size_t values = 0;
            return H5Pget_filter2(properties, index, &flags, &values, nullptr, 0, nullptr, nullptr);
        }));
    }
    onlyKnown = onlyKnown && isKnownOrder(filters);
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
        hsize_t bytes = 0;
        const bool isMissing = result < 0 && !chunk &&
                               H5Dget_chunk_storage_size(m_handle.get(), offset.data(), &bytes) >= 0 &&
                               bytes == 0;
        return isMissing ? 0 : result;
    });
    return chunk;
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
        chunk = PlacedChunk{*piece, mask};
    }
    return result;
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

void Dataset::readThroughLibrary(const Extents& offset, const Extents& count, Element element,
                                 void* destination) const
{
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
