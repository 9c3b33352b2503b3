// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/Formats/InputFile.h"
#include "Core/Buffer/Formats/OutputFile.h"

#include <hdf5.h>

#include <memory>
#include <optional>

namespace BufferApi::Hdf5
{

/// The bytes of a file below the C library, whose driver reads and writes here.
///
/// The library by itself takes what lies beyond the end of a shortened file for zeros, and after a failed
/// write it can neither close the file nor end the process in order. So a read of bytes that are not there
/// fails here, and of a failed write the library hears nothing: it is kept for who asks after the call, and
/// nothing is written any more.
class FileBytes
{
public:
    /// For reading. \throws RTE::FileOpenError
    explicit FileBytes(const QString& path) : m_input(path) {}
    /// For writing; makes the file, or empties the one that is there. \throws RTE::FileWriteError
    explicit FileBytes(const Formats::OutputPath& path) : m_output(path) {}

    /// \name For the driver, under the library's lock
    /// @{
    [[nodiscard]] unsigned long long size() const noexcept { return m_input ? m_input->size() : m_written; }
    /// \returns false when that failed
    [[nodiscard]] bool read(unsigned long long offset, void* destination, unsigned long long bytes);
    void write(unsigned long long offset, const void* source, unsigned long long bytes);
    void resize(unsigned long long bytes);
    /// @}

    /// Why the bytes of the latest call could not be had, or why one of all the writes failed; null if all
    /// went well. To be called under the library's lock.
    [[nodiscard]] QString takeFailure();

private:
    std::optional<Formats::InputFile> m_input;
    std::optional<Formats::OutputFile> m_output;
    unsigned long long m_written = 0;
    QString m_failure;
};

/// Lets the next file that is opened or made with these properties have its bytes here; it shares them as
/// long as it is open. To be called under the library's lock; `bytes` has to live until that call is over.
[[nodiscard]] herr_t useBytes(hid_t accessProperties, const std::shared_ptr<FileBytes>& bytes);

} // namespace BufferApi::Hdf5
