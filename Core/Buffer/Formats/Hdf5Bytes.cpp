// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/Hdf5Bytes.h"

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <limits>

namespace BufferApi::Hdf5
{

namespace
{

using BytesPointer = std::shared_ptr<FileBytes>;

/// A file as the library holds it.
struct LibraryFile : H5FD_t
{
    BytesPointer bytes;
    haddr_t end = 0;
};

LibraryFile& fileOf(H5FD_t* file)
{
    return static_cast<LibraryFile&>(*file);
}

const LibraryFile& fileOf(const H5FD_t* file)
{
    return static_cast<const LibraryFile&>(*file);
}

H5FD_t* openFile(const char*, unsigned, hid_t access, haddr_t)
{
    const auto* bytes = static_cast<const BytesPointer* const*>(H5Pget_driver_info(access));
    return bytes == nullptr ? nullptr : new LibraryFile{{}, **bytes};
}

herr_t closeFile(H5FD_t* file)
{
    delete &fileOf(file);
    return 0;
}

herr_t query(const H5FD_t*, unsigned long* flags)
{
    *flags = H5FD_FEAT_AGGREGATE_METADATA | H5FD_FEAT_ACCUMULATE_METADATA | H5FD_FEAT_DATA_SIEVE |
             H5FD_FEAT_AGGREGATE_SMALLDATA | H5FD_FEAT_DEFAULT_VFD_COMPATIBLE;
    return 0;
}

haddr_t getEnd(const H5FD_t* file, H5FD_mem_t)
{
    return fileOf(file).end;
}

herr_t setEnd(H5FD_t* file, H5FD_mem_t, haddr_t end)
{
    fileOf(file).end = end;
    return 0;
}

haddr_t getSize(const H5FD_t* file, H5FD_mem_t)
{
    return fileOf(file).bytes->size();
}

herr_t read(H5FD_t* file, H5FD_mem_t, hid_t, haddr_t address, std::size_t bytes, void* destination)
{
    return fileOf(file).bytes->read(address, destination, bytes) ? 0 : -1;
}

herr_t write(H5FD_t* file, H5FD_mem_t, hid_t, haddr_t address, std::size_t bytes, const void* source)
{
    fileOf(file).bytes->write(address, source, bytes);
    return 0;
}

herr_t truncate(H5FD_t* file, hid_t, hbool_t)
{
    fileOf(file).bytes->resize(fileOf(file).end);
    return 0;
}

H5FD_class_t makeClass()
{
    H5FD_class_t driver{};
    driver.name = "qf-bytes";
    driver.maxaddr = static_cast<haddr_t>(std::numeric_limits<long long>::max());
    driver.fc_degree = H5F_CLOSE_WEAK;
    driver.fapl_size = sizeof(const BytesPointer*);
    driver.open = openFile;
    driver.close = closeFile;
    driver.query = query;
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

bool FileBytes::read(unsigned long long offset, void* destination, unsigned long long bytes)
{
    if (m_input) {
        m_failure = m_input->tryRead(offset, destination, bytes);
    } else if (!m_output->tryRead(offset, destination, bytes)) {
        m_failure = qt_error_string(errno);
    }
    return m_failure.isNull();
}

void FileBytes::write(unsigned long long offset, const void* source, unsigned long long bytes)
{
    m_written = std::max(m_written, offset + bytes);
    if (m_failure.isNull() && !m_output->tryOverwrite(offset, source, bytes)) {
        m_failure = qt_error_string(errno);
    }
}

void FileBytes::resize(unsigned long long bytes)
{
    if (m_output && m_written != bytes && m_failure.isNull() && !m_output->tryResize(bytes)) {
        m_failure = qt_error_string(errno);
    }
    m_written = bytes;
}

QString FileBytes::takeFailure()
{
    return m_input ? std::exchange(m_failure, QString()) : m_failure;
}

herr_t useBytes(hid_t accessProperties, const BytesPointer& bytes)
{
    static const H5FD_class_t driver = makeClass();
    static const hid_t id = H5FDregister(&driver);
    const BytesPointer* info = &bytes;
    return H5Pset_driver(accessProperties, id, &info);
}

} // namespace BufferApi::Hdf5
