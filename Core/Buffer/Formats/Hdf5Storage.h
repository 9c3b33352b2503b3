// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/Formats/Hdf5.h"
#include "Core/Buffer/Formats/Hdf5Bytes.h"
#include "Core/Buffer/Formats/OutputFile.h"

#include <QByteArray>

#include <map>
#include <optional>
#include <span>

namespace BufferApi::Hdf5
{

/// Pieces of a file that nothing uses any more.
class FreeSpace
{
public:
    void add(unsigned long long address, unsigned long long bytes);
    /// The address of a piece of this size, which is then no longer free.
    [[nodiscard]] std::optional<unsigned long long> take(unsigned long long bytes);

private:
    std::map<unsigned long long, unsigned long long> m_pieces;
};

/// Blocks that are to be written, which hide what the file has in their places.
class PendingBlocks
{
public:
    using Blocks = std::map<unsigned long long, QByteArray>;

    void write(unsigned long long address, const QByteArray& bytes);
    /// Puts what is pending over what was read from the file.
    void patch(unsigned long long address, char* destination, unsigned long long bytes) const;
    [[nodiscard]] const Blocks& blocks() const noexcept { return m_blocks; }
    void clear() noexcept { m_blocks.clear(); }

private:
    [[nodiscard]] Blocks::iterator firstThatEndsBeyond(unsigned long long address);

    Blocks m_blocks;
};

/// A file that is being written.
///
/// The bytes of chunks are not written by the library, which holds its one lock meanwhile: `storeChunk` gives
/// them a place, and the library, when it adds the chunk to its index, is given that place.
///
/// A *lasting* file can be left at any instant, by SIGKILL too, and is whole up to the last `commit`. To this
/// end it has two tables of contents (all that HDF5 calls metadata: superblock, object headers, indices),
/// each made by the library on its own as if it were the only one, over the same chunks. The superblock of
/// the main one lies at 0, that of its twin at 512, where every reader looks when there is none at 0. What
/// the library changes in a table waits in memory. `commit` takes the main superblock's signature away,
/// writes the main table, puts the signature back in one write and then writes the twin; so one of the two is
/// whole and in sight always. Chunks are written to space that neither table refers to.
class Storage
{
public:
    enum class Table
    {
        Main,
        Twin
    };

    static constexpr unsigned long long twinAddress = 512;

    /// Makes the file, or empties the one that is there. \throws RTE::FileWriteError
    Storage(const Formats::OutputPath& path, bool isLasting);

    [[nodiscard]] bool isLasting() const noexcept { return m_isLasting; }
    /// For the driver; the storage has to live as long as the library has the file open.
    [[nodiscard]] FileBytes& bytes(Table table) noexcept { return contents(table); }
    /// Why one of all the writes failed; null if all went well.
    [[nodiscard]] const QString& failure() const noexcept { return m_failure; }

    /// Writes a chunk to new space, unless a write has failed.
    [[nodiscard]] FilePiece storeChunk(const StoredChunk& chunk);
    /// The library's next request for space of this size is answered with this place. \returns what the
    /// library has to be given as the bytes, which are not looked at
    [[nodiscard]] const void* expectChunk(const FilePiece& place) noexcept;
    /// Raises RTE::VerificationFailed unless the library took the place.
    void checkTaken();
    /// A place that is free with the next commit.
    void giveUp(const FilePiece& place) { m_givenUp.push_back(place); }
    /// Makes what the library has flushed the content of the file.
    void commit();
    /// Commits what the library left behind when it closed the file, and leaves one table alone.
    void finish();

private:
    /// One table of contents.
    class Contents final : public FileBytes
    {
    public:
        explicit Contents(Storage& storage, unsigned long long superblockAddress)
            : m_storage(storage), m_superblockAddress(superblockAddress)
        {
        }

        [[nodiscard]] unsigned long long size() const noexcept override;
        [[nodiscard]] unsigned long long end() const noexcept override;
        void setEnd(unsigned long long end) noexcept override;
        [[nodiscard]] std::optional<unsigned long long> allocate(bool isRaw,
                                                                 unsigned long long bytes) override;
        [[nodiscard]] bool leavesSpaceToLibrary() const noexcept override { return !m_storage.m_isLasting; }
        [[nodiscard]] bool read(unsigned long long offset, void* destination,
                                unsigned long long bytes) override;
        void write(unsigned long long offset, const void* source, unsigned long long bytes) override;
        void truncate() override;

        /// Writes what is pending, the superblock last.
        void writePending();

    private:
        Storage& m_storage;
        unsigned long long m_superblockAddress;
        bool m_isBegun = false;
        PendingBlocks m_pending;
        QByteArray m_superblock;
    };

    [[nodiscard]] Contents& contents(Table table) noexcept { return table == Table::Main ? m_main : m_twin; }
    /// \param memoryOffset as in StoredChunk
    [[nodiscard]] unsigned long long allocate(unsigned long long bytes, unsigned long long memoryOffset = 0);
    void writeChunk(const StoredChunk& chunk, unsigned long long address);
    void write(unsigned long long offset, const void* source, unsigned long long bytes);
    void resize(unsigned long long bytes);

    Formats::OutputFile m_file;
    bool m_isLasting;
    QString m_failure;
    unsigned long long m_end = 0;
    unsigned long long m_fileSize = 0;
    std::optional<FilePiece> m_expected;
    FreeSpace m_free;
    std::vector<FilePiece> m_givenUp;
    Contents m_main{*this, 0};
    Contents m_twin{*this, twinAddress};
};

} // namespace BufferApi::Hdf5
