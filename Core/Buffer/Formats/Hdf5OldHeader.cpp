// SPDX-License-Identifier: Apache-2.0
// The layouts are those of the "HDF5 File Format Specification Version 3.0", sections II.A, III.D and IV.A.1.
#include "Core/Buffer/Formats/Hdf5OldHeader.h"

#include "Core/Buffer/Formats/Hdf5Bytes.h"
#include "Core/Buffer/Formats/Hdf5OldMessages.h"

#include <array>
#include <optional>
#include <span>
#include <vector>

namespace BufferApi::Hdf5
{

namespace
{

// No piece of a header is as large as this, and no list of names.
constexpr unsigned long long mostHeaderBytes = 1ULL << 24U;
constexpr unsigned long long mostNameBytes = 1ULL << 30U;

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
        // Each piece but the first is that of a message, so more of them go in a circle.
        for (std::size_t i = 0; i < m_pieces.size(); ++i) {
            prefix.require(i <= messages);
            checkMessages(m_pieces[i]);
        }
        // The last dimension of chunks is that of the bytes of an element.
        prefix.require(!m_chunkRank || *m_chunkRank == m_rank + 1);
    }

private:
    [[nodiscard]] Cursor cursor(std::span<const unsigned char> bytes) const
    {
        return {m_file, m_name, bytes};
    }
    [[nodiscard]] std::vector<unsigned char> read(const FilePiece& piece) const
    {
        const InputBytes& input = *m_file.input();
        cursor({}).require(piece.bytes <= mostHeaderBytes && isInFile(piece));
        std::vector<unsigned char> bytes(piece.bytes);
        input.readStored({input.start() + piece.address, piece.bytes}, bytes.data());
        return bytes;
    }
    [[nodiscard]] bool isInFile(const FilePiece& piece) const
    {
        const unsigned long long end = m_file.input()->size() - m_file.input()->start();
        return piece.address <= end && piece.bytes <= end - piece.address;
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
            checkType(message);
            break;
        case MessageType::Layout:
            m_chunkRank = readChunkRank(message);
            break;
        case MessageType::Attribute:
            checkAttribute(message);
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
        header.require(size <= mostNameBytes && isInFile({header.number<unsigned long long>(), size}));
    }

    const FileContext& m_file;
    const std::string& m_name;
    std::vector<FilePiece> m_pieces;
    unsigned int m_rank = 0;
    std::optional<unsigned int> m_chunkRank;
};

} // namespace

void checkHeader(const FileContext& file, const std::string& name, unsigned long long address)
{
    HeaderCheck(file, name).check(address);
}

void checkRootHeader(const FileContext& file)
{
    const InputBytes& input = *file.input();
    const std::string name = "/";
    std::array<unsigned char, 96> bytes{};
    if (input.start() + bytes.size() > input.size()) {
        return;
    }
    input.readStored({input.start(), bytes.size()}, bytes.data());
    Cursor superblock(file, name, bytes);
    superblock.skip(8);
    const auto version = superblock.number<unsigned char>();
    if (version > 1) {
        return;
    }
    superblock.skip(4);
    const auto addressBytes = superblock.number<unsigned char>();
    const auto lengthBytes = superblock.number<unsigned char>();
    // No program writes others, and the library refuses what is no superblock.
    if (addressBytes == 8 && lengthBytes == 8) {
        superblock.skip(version == 0 ? 49 : 53);
        checkHeader(file, name, superblock.number<unsigned long long>());
    }
}

} // namespace BufferApi::Hdf5
