// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/Formats/Hdf5.h"
#include "Core/Buffer/Formats/InputFile.h"

#include <hdf5.h>

#include <memory>
#include <optional>
#include <vector>

namespace BufferApi::Hdf5
{

/// The bytes of a file below the C library, whose driver reads and writes here, under the library's lock.
///
/// The library by itself takes what lies beyond the end of a shortened file for zeros, and after a failed
/// write it can neither close the file nor end the process in order. So a read of bytes that are not there
/// fails here, and of a failed write the library hears nothing: it is kept for who asks after the call, and
/// nothing is written any more.
class FileBytes
{
public:
    FileBytes() = default;
    FileBytes(const FileBytes&) = delete;
    FileBytes& operator=(const FileBytes&) = delete;
    virtual ~FileBytes() = default;

    /// Bytes of the file.
    [[nodiscard]] virtual unsigned long long size() const noexcept = 0;
    /// Bytes that the library has taken for use.
    [[nodiscard]] virtual unsigned long long end() const noexcept { return m_end; }
    virtual void setEnd(unsigned long long end) noexcept { m_end = end; }
    /// Space at an address of the driver's choice; nothing when there is none. \param isRaw for a chunk or
    /// what the library treats as one
    [[nodiscard]] virtual std::optional<unsigned long long> allocate(bool isRaw, unsigned long long bytes);
    /// True when the library may take large pieces for its metadata and part them itself.
    [[nodiscard]] virtual bool leavesSpaceToLibrary() const noexcept { return true; }

    /// \returns false when that failed
    [[nodiscard]] virtual bool read(unsigned long long offset, void* destination,
                                    unsigned long long bytes) = 0;
    virtual void write(unsigned long long offset, const void* source, unsigned long long bytes) = 0;
    /// Makes the file end where the library's space does.
    virtual void truncate() {}

private:
    unsigned long long m_end = 0;
};

/// A file that is read.
class InputBytes final : public FileBytes
{
public:
    /// \throws RTE::FileOpenError
    explicit InputBytes(const QString& path);

    [[nodiscard]] unsigned long long size() const noexcept override { return m_file.size(); }
    [[nodiscard]] bool read(unsigned long long offset, void* destination, unsigned long long bytes) override;
    void write(unsigned long long, const void*, unsigned long long) override {}
    /// Where the library's file begins, from which its addresses count.
    [[nodiscard]] unsigned long long start() const noexcept { return m_start; }

    /// The library's next read to this destination, which is that of a chunk, is only noted and nothing
    /// written there: it can be done without the lock. To be called under the lock, as `takePlace`.
    void expectChunk(const void* destination) noexcept { m_chunk = destination; }
    /// Where the expected chunk lies; nothing when the library did not get so far.
    [[nodiscard]] std::optional<FilePiece> takePlace() noexcept;
    /// Reads what the library gave the place of, without the lock; `checkUnchanged` has to follow.
    /// \throws RTE::FileReadError
    void readStored(const FilePiece& place, void* destination) const
    {
        m_file.readPart(place.address, destination, place.bytes);
    }
    /// Reads what has not changed since the file was opened. \returns the reason of a failure, null otherwise
    [[nodiscard]] QString tryReadStored(const FilePiece& place, void* destination) const
    {
        return m_file.tryRead(place.address, destination, place.bytes);
    }
    /// \throws RTE::FileReadError when the file was changed since it was opened
    void checkUnchanged() const { m_file.checkUnchanged(); }
    /// Why the bytes of the latest call could not be had; null if they could. To be called under the lock.
    [[nodiscard]] QString takeFailure() { return std::exchange(m_failure, QString()); }

private:
    /// Null when they do not lie in one block, or it cannot be read as a whole.
    [[nodiscard]] const char* findInBlock(unsigned long long offset, unsigned long long bytes);

    Formats::InputFile m_file;
    unsigned long long m_start;
    std::optional<unsigned long long> m_blockOffset;
    std::vector<char> m_block;
    QString m_failure;
    const void* m_chunk = nullptr;
    std::optional<FilePiece> m_place;
};

/// Makes our driver known to the library; it leaves no trace in a file. The identifier is to outlive the
/// files: the library frees a driver with its last reference, and when it closes a file it gives its own away
/// before it calls the driver. To be called under the library's lock, as `useBytes`.
[[nodiscard]] hid_t registerDriver();
/// Lets the files that are opened or made with these properties have their bytes here, which they and the
/// properties share from now on.
[[nodiscard]] herr_t useBytes(hid_t accessProperties, hid_t driver, const std::shared_ptr<FileBytes>& bytes);

} // namespace BufferApi::Hdf5
