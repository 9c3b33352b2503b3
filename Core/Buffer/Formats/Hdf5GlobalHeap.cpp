// SPDX-License-Identifier: Apache-2.0
// The layouts are those of the "HDF5 File Format Specification Version 3.0", sections III.E and IV.A.2.d.
#include "Core/Buffer/Formats/Hdf5GlobalHeap.h"

#include "Core/Buffer/Formats/Hdf5Call.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>

namespace BufferApi::Hdf5
{

namespace
{

/// Where a value of variable length lies.
struct Reference
{
    unsigned int bytes = 0;
    /// Of the heap, as the library counts; 0 for an empty value.
    unsigned long long heap = 0;
    /// The number in the heap.
    unsigned int object = 0;
};

/// The members of a reference, one behind the other.
using StoredReference = std::array<unsigned char, variableTextBytes>;

template <typename T>
T numberAt(const unsigned char* bytes)
{
    T number = 0;
    std::memcpy(&number, bytes, sizeof(number));
    return number;
}

/// What the library calls to convert a value of variable length to bytes of no meaning: the bytes stay as
/// they are.
herr_t keepBytes(hid_t source, hid_t destination, H5T_cdata_t* data, std::size_t, std::size_t, std::size_t,
                 void*, void*, hid_t)
{
    if (data->command != H5T_CONV_INIT) {
        return 0;
    }
    data->need_bkg = H5T_BKG_NO;
    return H5Tget_size(source) == sizeof(StoredReference) &&
                   H5Tget_size(destination) == sizeof(StoredReference)
               ? 0
               : -1;
}

/// Lets the library hand out references as they are; without that it follows them.
class ReferencesKept
{
public:
    ReferencesKept(hid_t source, hid_t destination)
        : m_result(H5Tregister(H5T_PERS_SOFT, "qf-references", source, destination, keepBytes))
    {
    }
    ReferencesKept(const ReferencesKept&) = delete;
    ReferencesKept& operator=(const ReferencesKept&) = delete;
    ~ReferencesKept()
    {
        if (m_result >= 0) {
            H5Tunregister(H5T_PERS_SOFT, "qf-references", H5I_INVALID_HID, H5I_INVALID_HID, keepBytes);
        }
    }

    [[nodiscard]] herr_t result() const noexcept { return m_result; }

private:
    herr_t m_result;
};

/// A heap of the file: numbered objects, one behind the other, each with a header before it.
class GlobalHeap
{
public:
    GlobalHeap(const FileContext& file, unsigned long long address)
        : m_file(file), m_address(address), m_size(file.bytesFrom(address))
    {
        const bool isHeap = readHeader(0) && std::memcmp(m_header, "GCOL\1", 5) == 0;
        m_size = isHeap ? std::min(m_size, sizeInHeader()) : 0;
    }

    /// Where the bytes of the object lie; nothing when there is no such object.
    [[nodiscard]] std::optional<FilePiece> find(unsigned int object)
    {
        for (unsigned long long offset = headerBytes; readHeader(offset);) {
            const unsigned int number = numberAt<unsigned short>(m_header);
            const unsigned long long bytes = sizeInHeader();
            // Behind all objects the space that is left has the number 0.
            if (number == 0 || bytes > m_size - offset - headerBytes) {
                break;
            }
            if (number == object) {
                return FilePiece{m_address + offset + headerBytes, bytes};
            }
            offset += headerBytes + (bytes + alignment - 1) / alignment * alignment;
        }
        return {};
    }

private:
    /// Of the heap, and of each object.
    static constexpr unsigned long long headerBytes = 16;
    static constexpr unsigned long long alignment = 8;

    [[nodiscard]] bool readHeader(unsigned long long offset)
    {
        if (offset > m_size || m_size - offset < headerBytes) {
            return false;
        }
        if (offset < m_blockOffset || offset + headerBytes > m_blockOffset + m_blockBytes) {
            m_blockOffset = offset;
            m_blockBytes = std::min<unsigned long long>(m_block.size(), m_size - offset);
            m_file.read({m_address + offset, m_blockBytes}, m_block.data());
        }
        m_header = m_block.data() + (offset - m_blockOffset);
        return true;
    }
    [[nodiscard]] unsigned long long sizeInHeader() const
    {
        return numberAt<unsigned long long>(m_header + 8);
    }

    const FileContext& m_file;
    unsigned long long m_address;
    unsigned long long m_size;
    /// A part of the heap; most are as small.
    std::array<unsigned char, 4096> m_block{};
    unsigned long long m_blockOffset = 0;
    unsigned long long m_blockBytes = 0;
    const unsigned char* m_header = nullptr;
};

Reference readReference(const FileContext& file, const std::string& what, hid_t attribute)
{
    StoredReference stored{};
    const Serial serial;
    const Handle type = checkedHandle(file, what, H5Tclose, [&] { return H5Aget_type(attribute); });
    const Handle bytes =
        checkedHandle(file, what, H5Tclose, [&] { return H5Tcreate(H5T_OPAQUE, stored.size()); });
    const ReferencesKept kept(type.get(), bytes.get());
    checked(file, what, [&] { return kept.result(); });
    checked(file, what, [&] { return H5Aread(attribute, bytes.get(), stored.data()); });
    return {numberAt<unsigned int>(stored.data()), numberAt<unsigned long long>(stored.data() + 4),
            numberAt<unsigned int>(stored.data() + 12)};
}

} // namespace

QByteArray readVariableText(const FileContext& file, const std::string& what, hid_t attribute)
{
    const Reference reference = readReference(file, what, attribute);
    if (reference.heap == 0) {
        return {};
    }
    const auto piece = GlobalHeap(file, reference.heap).find(reference.object);
    if (!piece || piece->bytes < reference.bytes) {
        file.fail(QString::fromStdString(what) + QStringLiteral(": its text is damaged"));
    }
    QByteArray text(static_cast<qsizetype>(reference.bytes), Qt::Uninitialized);
    file.read({piece->address, reference.bytes}, text.data());
    text.truncate(static_cast<qsizetype>(qstrnlen(text.constData(), reference.bytes)));
    return text;
}

} // namespace BufferApi::Hdf5
