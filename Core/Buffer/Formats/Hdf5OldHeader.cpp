// SPDX-License-Identifier: Apache-2.0
// The layouts are those of the "HDF5 File Format Specification Version 3.0", sections II.A, III.D and IV.A.1.
#include "Core/Buffer/Formats/Hdf5OldHeader.h"

#include "Core/Buffer/Formats/Hdf5Bytes.h"
#include "Core/Buffer/Formats/Hdf5OldMessages.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <optional>
#include <set>
#include <span>
#include <vector>

namespace BufferApi::Hdf5
{

namespace
{

// The library takes memory for a piece of a header, or for a list of names, at once.
constexpr unsigned long long mostBytes = 1ULL << 30U;

enum class MessageType : unsigned short
{
    Space = 1,
    Type = 3,
    Layout = 8,
    Attribute = 12,
    Continuation = 16,
    Group = 17
};

class HeaderCheck
{
public:
    HeaderCheck(const FileContext& file, const std::string& name) : m_file(file), m_name(name) {}

    void check(unsigned long long address)
    {
        constexpr unsigned long long prefixBytes = 16;
        const auto bytes = read({address, prefixBytes});
        Cursor prefix = cursor(bytes);
        const auto version = prefix.number<unsigned char>();
        if (version != 1) {
            return;
        }
        prefix.skip(1);
        const auto messages = prefix.number<unsigned short>();
        prefix.skip(4);
        m_pieces.push_back({address + prefixBytes, prefix.number<unsigned int>()});
        // Each piece but the first is that of a message, and no two overlap, so more of them go in a circle.
        unsigned long long bytesLeft = m_file.bytesFrom(0);
        for (std::size_t i = 0; i < m_pieces.size(); ++i) {
            const FilePiece piece = m_pieces[i];
            prefix.require(i <= messages && piece.bytes <= bytesLeft);
            bytesLeft -= piece.bytes;
            checkMessages(piece);
        }
        if (m_chunk) {
            prefix.require((!m_rank || m_chunk->rank == *m_rank + 1) &&
                           (!m_elementBytes || m_chunk->elementBytes == *m_elementBytes));
        }
        // The library looks for the heap also where there is none.
        prefix.require(!m_shared.areInHeap || mayHaveHeap());
    }
    /// Other headers that hold a part of this one.
    [[nodiscard]] const std::vector<unsigned long long>& shared() const noexcept { return m_shared.headers; }

private:
    [[nodiscard]] Cursor cursor(std::span<const unsigned char> bytes) const
    {
        return {m_file, m_name, bytes};
    }
    [[nodiscard]] std::vector<unsigned char> read(const FilePiece& piece) const
    {
        cursor({}).require(piece.bytes <= mostBytes && isInFile(piece));
        std::vector<unsigned char> bytes(piece.bytes);
        m_file.read(piece, bytes.data());
        return bytes;
    }
    [[nodiscard]] bool isInFile(const FilePiece& piece) const
    {
        return piece.bytes <= m_file.bytesFrom(piece.address);
    }
    /// Superblocks of the first two versions have no place for the address of the heap.
    [[nodiscard]] bool mayHaveHeap() const
    {
        constexpr unsigned long long versionOffset = 8;
        return read({versionOffset, 1}).front() > 1;
    }

    void checkMessages(const FilePiece& piece)
    {
        constexpr std::size_t messageHeader = 8;
        constexpr unsigned char shared = 2;
        const auto bytes = read(piece);
        Cursor header = cursor(bytes);
        while (header.left() >= messageHeader) {
            const auto type = header.number<unsigned short>();
            const auto size = header.number<unsigned short>();
            const auto flags = header.number<unsigned char>();
            header.skip(3);
            Cursor message = header.part(size, false);
            if ((flags & shared) == 0) {
                checkMessage(type, message);
            } else {
                addShared(message, m_shared);
            }
        }
    }
    void checkMessage(unsigned short type, Cursor& message)
    {
        switch (static_cast<MessageType>(type)) {
        case MessageType::Space:
            m_rank = readRank(message);
            break;
        case MessageType::Type:
            m_elementBytes = checkType(message);
            break;
        case MessageType::Layout:
            m_chunk = readChunkShape(message);
            break;
        case MessageType::Attribute:
            checkAttribute(message, m_shared);
            break;
        case MessageType::Continuation: {
            const auto address = message.number<unsigned long long>();
            m_pieces.push_back({address, message.number<unsigned long long>()});
            break;
        }
        case MessageType::Group:
            message.skip(8);
            checkNames(message.number<unsigned long long>());
            break;
        default:
            break;
        }
    }
    /// Where a group keeps the names of its members.
    void checkNames(unsigned long long heap) const
    {
        constexpr unsigned long long headerBytes = 32;
        const auto bytes = read({heap, headerBytes});
        Cursor header = cursor(bytes);
        header.skip(8);
        const auto size = header.number<unsigned long long>();
        header.skip(8);
        header.require(size <= mostBytes && isInFile({header.number<unsigned long long>(), size}));
    }

    const FileContext& m_file;
    const std::string& m_name;
    std::vector<FilePiece> m_pieces;
    SharedMessages m_shared;
    /// Nothing when they stand elsewhere.
    std::optional<unsigned int> m_rank;
    std::optional<unsigned long long> m_elementBytes;
    std::optional<ChunkShape> m_chunk;
};

} // namespace

void checkHeader(const FileContext& file, const std::string& name, unsigned long long address)
{
    std::set<unsigned long long> known{address};
    std::vector<unsigned long long> left{address};
    while (!left.empty()) {
        HeaderCheck header(file, name);
        header.check(left.back());
        left.pop_back();
        std::copy_if(header.shared().begin(), header.shared().end(), std::back_inserter(left),
                     [&](auto shared) { return known.insert(shared).second; });
    }
}

void checkRootHeader(const FileContext& file)
{
    const std::string name = "/";
    std::array<unsigned char, 96> bytes{};
    if (file.bytesFrom(0) < bytes.size()) {
        return;
    }
    file.read({0, bytes.size()}, bytes.data());
    Cursor superblock(file, name, bytes);
    superblock.skip(8);
    const auto version = superblock.number<unsigned char>();
    superblock.skip(version < 2 ? 4 : 0);
    const auto addressBytes = superblock.number<unsigned char>();
    const auto lengthBytes = superblock.number<unsigned char>();
    if (addressBytes != 8 || lengthBytes != 8) {
        RTE::raise(RTE::FileOpenError(
            QStringLiteral("Cannot open '%1': its addresses or lengths do not have 8 bytes")
                .arg(file.path())));
    }
    superblock.skip(version == 0 ? 25 : version == 1 ? 29 : 9);
    const auto extension = version < 2 ? unlimited : superblock.number<unsigned long long>();
    // Of a file that was cut off the library tells just that.
    if (superblock.number<unsigned long long>() > file.input()->size()) {
        return;
    }
    if (extension != unlimited) {
        checkHeader(file, name, extension);
    }
    superblock.skip(version < 2 ? 16 : 0);
    checkHeader(file, name, superblock.number<unsigned long long>());
}

} // namespace BufferApi::Hdf5
