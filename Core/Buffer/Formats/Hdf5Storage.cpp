// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/Hdf5Storage.h"

#include "Core/Buffer/Formats/Checksum.h"
#include "Core/Buffer/Formats/Pages.h"
#include "Core/Common/Raise.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <iterator>
#include <utility>

namespace BufferApi::Hdf5
{

namespace
{

constexpr unsigned long long signatureBytes = 8;
// Room for both superblocks.
constexpr unsigned long long firstAddress = 1024;
// Where bytes have the same place in a page of the file as in one of memory, the processor takes loads for
// later ones of stores and copies 6 % slower. Large arrays begin at a page, so chunks begin half a page
// off; for smaller pieces the gaps would count.
constexpr unsigned long long smallestAligned = 1ULL << 17U;
// Stands for the bytes of a chunk that is stored already.
constexpr char storedAlready = 0;

} // namespace

void FreeSpace::add(unsigned long long address, unsigned long long bytes)
{
    auto next = m_pieces.lower_bound(address);
    if (next != m_pieces.end() && address + bytes == next->first) {
        bytes += next->second;
        next = m_pieces.erase(next);
    }
    if (next != m_pieces.begin()) {
        const auto before = std::prev(next);
        if (before->first + before->second == address) {
            before->second += bytes;
            return;
        }
    }
    m_pieces.emplace(address, bytes);
}

std::optional<unsigned long long> FreeSpace::take(unsigned long long bytes)
{
    const auto found = std::find_if(m_pieces.begin(), m_pieces.end(),
                                    [&](const auto& piece) { return piece.second >= bytes; });
    if (found == m_pieces.end()) {
        return {};
    }
    const auto [address, size] = *found;
    m_pieces.erase(found);
    if (size > bytes) {
        m_pieces.emplace(address + bytes, size - bytes);
    }
    return address;
}

PendingBlocks::Blocks::iterator PendingBlocks::firstThatEndsBeyond(unsigned long long address)
{
    auto block = m_blocks.upper_bound(address);
    if (block != m_blocks.begin()) {
        const auto before = std::prev(block);
        if (before->first + static_cast<unsigned long long>(before->second.size()) > address) {
            return before;
        }
    }
    return block;
}

void PendingBlocks::write(unsigned long long address, const QByteArray& bytes)
{
    QByteArray merged = bytes;
    unsigned long long first = address;
    unsigned long long last = address + static_cast<unsigned long long>(bytes.size());
    auto block = firstThatEndsBeyond(address);
    while (block != m_blocks.end() && block->first < last) {
        const unsigned long long blockEnd =
            block->first + static_cast<unsigned long long>(block->second.size());
        if (block->first < first) {
            merged.prepend(block->second.left(static_cast<qsizetype>(first - block->first)));
            first = block->first;
        }
        if (blockEnd > last) {
            merged.append(block->second.right(static_cast<qsizetype>(blockEnd - last)));
            last = blockEnd;
        }
        block = m_blocks.erase(block);
    }
    m_blocks.emplace(first, std::move(merged));
}

void PendingBlocks::patch(unsigned long long address, char* destination, unsigned long long bytes) const
{
    for (const auto& [start, block] : m_blocks) {
        const unsigned long long first = std::max(start, address);
        const unsigned long long last =
            std::min(start + static_cast<unsigned long long>(block.size()), address + bytes);
        if (first < last) {
            std::memcpy(destination + (first - address), block.constData() + (first - start), last - first);
        }
    }
}

unsigned long long Storage::Contents::size() const noexcept
{
    return m_isBegun ? m_storage.m_fileSize : 0;
}

unsigned long long Storage::Contents::end() const noexcept
{
    return m_isBegun ? m_storage.m_end : 0;
}

void Storage::Contents::setEnd(unsigned long long end) noexcept
{
    m_isBegun = true;
    // With two tables the end is one for both, and neither may cut off what belongs to the other.
    m_storage.m_end = m_storage.m_isLasting ? std::max(m_storage.m_end, end) : end;
}

std::optional<unsigned long long> Storage::Contents::allocate(bool isRaw, unsigned long long bytes)
{
    std::optional<FilePiece>& expected = m_storage.m_expected;
    if (isRaw && expected && expected->bytes == bytes) {
        return std::exchange(expected, std::nullopt)->address;
    }
    return m_storage.allocate(bytes);
}

bool Storage::Contents::read(unsigned long long offset, void* destination, unsigned long long bytes)
{
    if (!m_storage.m_file.tryRead(offset, destination, bytes)) {
        m_storage.m_failure = qt_error_string(errno);
        return false;
    }
    m_pending.patch(offset, static_cast<char*>(destination), bytes);
    return true;
}

void Storage::Contents::write(unsigned long long offset, const void* source, unsigned long long bytes)
{
    if (source == &storedAlready) {
        return;
    }
    if (m_storage.m_isLasting) {
        m_pending.write(offset, QByteArray(static_cast<const char*>(source), static_cast<qsizetype>(bytes)));
    } else {
        m_storage.write(offset, source, bytes);
    }
}

void Storage::Contents::truncate()
{
    if (!m_storage.m_isLasting && m_storage.m_fileSize != m_storage.m_end) {
        m_storage.resize(m_storage.m_end);
    }
}

void Storage::Contents::writePending()
{
    for (const auto& [address, block] : m_pending.blocks()) {
        if (address == m_superblockAddress) {
            m_superblock = block;
        } else {
            m_storage.write(address, block.constData(), static_cast<unsigned long long>(block.size()));
        }
    }
    // It lies within one page of the file, so that it is written as a whole or not at all.
    m_storage.write(m_superblockAddress, m_superblock.constData(),
                    static_cast<unsigned long long>(m_superblock.size()));
    m_pending.clear();
}

Storage::Storage(const Formats::OutputPath& path, bool isLasting)
    : m_file(path), m_isLasting(isLasting), m_end(isLasting ? firstAddress : 0)
{
}

unsigned long long Storage::allocate(unsigned long long bytes, unsigned long long memoryOffset)
{
    if (bytes >= smallestAligned) {
        const unsigned long long place = (memoryOffset + Formats::pageBytes / 2) % Formats::pageBytes;
        m_end += (place + Formats::pageBytes - m_end % Formats::pageBytes) % Formats::pageBytes;
    } else if (const auto reused = m_free.take(bytes)) {
        return *reused;
    }
    const unsigned long long address = m_end;
    m_end += bytes;
    return address;
}

void Storage::write(unsigned long long offset, const void* source, unsigned long long bytes)
{
    if (bytes == 0) {
        return;
    }
    m_fileSize = std::max(m_fileSize, offset + bytes);
    if (m_failure.isNull() && !m_file.tryOverwrite(offset, source, bytes)) {
        m_failure = qt_error_string(errno);
    }
}

void Storage::resize(unsigned long long bytes)
{
    m_fileSize = bytes;
    if (m_failure.isNull() && !m_file.tryResize(bytes)) {
        m_failure = qt_error_string(errno);
    }
}

const void* Storage::expectChunk(const FilePiece& place) noexcept
{
    m_expected = place;
    return &storedAlready;
}

void Storage::checkTaken()
{
    RTE::verify(!m_expected, "A chunk would lie elsewhere");
}

FilePiece Storage::storeChunk(const StoredChunk& chunk)
{
    const FilePiece place{allocate(chunk.size(), chunk.memoryOffset), chunk.size()};
    writeChunk(chunk, place.address);
    return place;
}

void Storage::writeChunk(const StoredChunk& chunk, unsigned long long address)
{
    Formats::Fletcher32 sum;
    for (auto left = chunk.bytes; !left.empty();) {
        const auto piece =
            left.first(chunk.hasChecksum ? Formats::bytesAtOnce(address, left.size()) : left.size());
        write(address, piece.data(), piece.size());
        // The other way round takes longer: the system waits for its stores anyway and reads meanwhile.
        if (chunk.hasChecksum) {
            sum.add(piece.data(), piece.size());
        }
        left = left.subspan(piece.size());
        address += piece.size();
    }
    QByteArray tail(static_cast<qsizetype>(chunk.zeros), '\0');
    if (chunk.hasChecksum) {
        sum.add(tail.constData(), chunk.zeros);
        const unsigned int checksum = sum.value();
        tail.append(reinterpret_cast<const char*>(&checksum), sizeof(checksum));
    }
    write(address, tail.constData(), static_cast<unsigned long long>(tail.size()));
}

void Storage::commit()
{
    static constexpr char noSignature[signatureBytes] = {};
    if (m_fileSize < m_end) {
        resize(m_end);
    }
    write(0, noSignature, signatureBytes);
    m_main.writePending();
    m_twin.writePending();
    for (const FilePiece& piece : m_givenUp) {
        m_free.add(piece.address, piece.bytes);
    }
    m_givenUp.clear();
}

void Storage::finish()
{
    if (m_isLasting) {
        commit();
        static constexpr char nothing[firstAddress - twinAddress] = {};
        write(twinAddress, nothing, sizeof(nothing));
    }
    if (m_failure.isNull()) {
        m_file.close();
    }
}

} // namespace BufferApi::Hdf5
