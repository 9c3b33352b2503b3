// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/Formats/Hdf5.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <span>
#include <string>
#include <vector>

/// Messages of the headers of objects, as HDF5's first format has them without a checksum; checked here
/// because the library believes much of what they say. "HDF5 File Format Specification Version 3.0", section
/// IV.A.2.
namespace BufferApi::Hdf5
{

/// Takes numbers and pieces off bytes, as long as there are any; raises when they end too early.
class Cursor
{
public:
    using Bytes = std::span<const unsigned char>;

    Cursor(const FileContext& file, const std::string& name, Bytes bytes)
        : m_file(file), m_name(name), m_bytes(bytes)
    {
    }

    [[nodiscard]] std::size_t left() const noexcept { return m_bytes.size(); }
    template <typename T>
    T number()
    {
        T value = 0;
        std::memcpy(&value, bytes(sizeof(T)).data(), sizeof(T));
        return value;
    }
    Bytes bytes(unsigned long long count)
    {
        require(count <= m_bytes.size());
        const Bytes taken = m_bytes.first(count);
        m_bytes = m_bytes.subspan(count);
        return taken;
    }
    void skip(unsigned long long count) { bytes(count); }
    /// A part of its own that takes so many bytes, or up to the next multiple of 8.
    [[nodiscard]] Cursor part(unsigned long long count, bool isPadded)
    {
        Cursor part(m_file, m_name, bytes(isPadded ? (count + 7) / 8 * 8 : count));
        part.m_bytes = part.m_bytes.first(count);
        return part;
    }
    /// A text and its null character.
    void text(bool isPadded)
    {
        const auto end = std::find(m_bytes.begin(), m_bytes.end(), 0);
        require(end != m_bytes.end());
        static_cast<void>(part(static_cast<std::size_t>(end - m_bytes.begin()) + 1, isPadded));
    }
    void require(bool isSound) const
    {
        if (!isSound) {
            m_file.fail(QString::fromStdString(m_name) + QStringLiteral(": its header is damaged"));
        }
    }

private:
    const FileContext& m_file;
    const std::string& m_name;
    Bytes m_bytes;
};

/// Raises unless the description of a type is whole. \returns the bytes of an element
unsigned long long checkType(Cursor& type);
/// Where messages stand that several objects share.
struct SharedMessages
{
    /// Addresses of headers, such as those of types with a name.
    std::vector<unsigned long long> headers;
    /// True if there are some in the heap that files may have for them.
    bool areInHeap = false;
};

/// Adds the place that a message tells instead of its own content.
void addShared(Cursor& message, SharedMessages& shared);
/// Raises unless an attribute has the name, type, space and values that it tells. \param shared gets the
/// places where its type or space stands instead
void checkAttribute(Cursor& attribute, SharedMessages& shared);
/// \returns the number of dimensions of a space
unsigned int readRank(Cursor& space);
/// What the layout tells of chunks.
struct ChunkShape
{
    /// The last dimension is that of the bytes of an element.
    unsigned int rank = 0;
    unsigned long long elementBytes = 0;
};

/// Raises when chunks have no extent. \returns nothing when there are no chunks
std::optional<ChunkShape> readChunkShape(Cursor& layout);

} // namespace BufferApi::Hdf5
