// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/Hdf5Bytes.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <limits>

namespace BufferApi::Hdf5
{

namespace
{

// The library reads headers and indices in dozens of small pieces, most of which lie together.
constexpr unsigned long long blockBytes = 1ULL << 14U;

using BytesPointer = std::shared_ptr<FileBytes>;

/// A file as the library holds it.
struct LibraryFile : H5FD_t
{
    BytesPointer bytes;
};

FileBytes& bytesOf(const H5FD_t* file)
{
    return *static_cast<const LibraryFile&>(*file).bytes;
}

H5FD_t* openFile(const char*, unsigned, hid_t access, haddr_t)
{
    const auto* bytes = static_cast<const BytesPointer*>(H5Pget_driver_info(access));
    return bytes == nullptr ? nullptr : new LibraryFile{{}, *bytes};
}

void* copyInfo(const void* info)
{
    return new BytesPointer(*static_cast<const BytesPointer*>(info));
}

herr_t freeInfo(void* info)
{
    delete static_cast<BytesPointer*>(info);
    return 0;
}

herr_t closeFile(H5FD_t* file)
{
    delete static_cast<LibraryFile*>(file);
    return 0;
}

herr_t query(const H5FD_t* file, unsigned long* flags)
{
    constexpr unsigned long parting =
        H5FD_FEAT_AGGREGATE_METADATA | H5FD_FEAT_ACCUMULATE_METADATA | H5FD_FEAT_DATA_SIEVE;
    // The library asks without a file, too.
    const bool isParting = file == nullptr || bytesOf(file).leavesSpaceToLibrary();
    *flags = H5FD_FEAT_DEFAULT_VFD_COMPATIBLE | (isParting ? parting : 0);
    return 0;
}

haddr_t allocate(H5FD_t* file, H5FD_mem_t type, hid_t, hsize_t bytes)
{
    return bytesOf(file).allocate(type == H5FD_MEM_DRAW, bytes).value_or(HADDR_UNDEF);
}

haddr_t getEnd(const H5FD_t* file, H5FD_mem_t)
{
    return bytesOf(file).end();
}

herr_t setEnd(H5FD_t* file, H5FD_mem_t, haddr_t end)
{
    bytesOf(file).setEnd(end);
    return 0;
}

haddr_t getSize(const H5FD_t* file, H5FD_mem_t)
{
    return bytesOf(file).size();
}

herr_t read(H5FD_t* file, H5FD_mem_t, hid_t, haddr_t address, std::size_t bytes, void* destination)
{
    return bytesOf(file).read(address, destination, bytes) ? 0 : -1;
}

herr_t write(H5FD_t* file, H5FD_mem_t, hid_t, haddr_t address, std::size_t bytes, const void* source)
{
    bytesOf(file).write(address, source, bytes);
    return 0;
}

herr_t truncate(H5FD_t* file, hid_t, hbool_t)
{
    bytesOf(file).truncate();
    return 0;
}

H5FD_class_t makeClass()
{
    H5FD_class_t driver{};
    driver.name = "qf-bytes";
    driver.maxaddr = static_cast<haddr_t>(std::numeric_limits<long long>::max());
    driver.fc_degree = H5F_CLOSE_WEAK;
    driver.fapl_size = sizeof(BytesPointer);
    driver.fapl_copy = copyInfo;
    driver.fapl_free = freeInfo;
    driver.open = openFile;
    driver.close = closeFile;
    driver.query = query;
    driver.alloc = allocate;
    driver.get_eoa = getEnd;
    driver.set_eoa = setEnd;
    driver.get_eof = getSize;
    driver.read = read;
    driver.write = write;
    driver.truncate = truncate;
    const H5FD_mem_t freeLists[] = H5FD_FLMAP_DICHOTOMY;
    std::copy(std::begin(freeLists), std::end(freeLists), driver.fl_map);
    return driver;
}

} // namespace

std::optional<unsigned long long> FileBytes::allocate(bool, unsigned long long bytes)
{
    const unsigned long long address = end();
    setEnd(address + bytes);
    return address;
}

std::optional<unsigned long long> findStart(const QByteArray& head)
{
    static constexpr QByteArrayView signature("\x89HDF\r\n\x1a\n", 8);
    for (qsizetype offset = 0; offset < head.size(); offset = offset == 0 ? 512 : offset * 2) {
        if (QByteArrayView(head).sliced(offset).startsWith(signature)) {
            return static_cast<unsigned long long>(offset);
        }
    }
    return {};
}

InputBytes::InputBytes(const QString& path)
    : m_file(path), m_start(findStart(m_file.readUpTo(0, Formats::headBytes)).value_or(0))
{
}

std::optional<FilePiece> InputBytes::takePlace() noexcept
{
    m_chunk = nullptr;
    return std::exchange(m_place, std::nullopt);
}

const char* InputBytes::findInBlock(unsigned long long offset, unsigned long long bytes)
{
    const unsigned long long first = offset - offset % blockBytes;
    const unsigned long long last = std::min(first + blockBytes, size());
    if (offset >= last || bytes > last - offset) {
        return nullptr;
    }
    if (m_blockOffset != first) {
        m_blockOffset.reset();
        m_block.resize(last - first);
        if (!m_file.tryRead(first, m_block.data(), m_block.size()).isNull()) {
            return nullptr;
        }
        m_blockOffset = first;
    }
    return m_block.data() + (offset - first);
}

bool InputBytes::read(unsigned long long offset, void* destination, unsigned long long bytes)
{
    if (destination == m_chunk) {
        m_place = {offset, bytes};
        return true;
    }
    if (const char* source = findInBlock(offset, bytes)) {
        std::memcpy(destination, source, bytes);
        return true;
    }
    m_failure = m_file.tryRead(offset, destination, bytes);
    return m_failure.isNull();
}

hid_t registerDriver()
{
    static const H5FD_class_t driver = makeClass();
    return H5FDregister(&driver);
}

herr_t useBytes(hid_t accessProperties, hid_t driver, const BytesPointer& bytes)
{
    return H5Pset_driver(accessProperties, driver, &bytes);
}

} // namespace BufferApi::Hdf5
