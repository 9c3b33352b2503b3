// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/Formats/OutputFile.h"
#include "Core/Buffer/I_Buffer.h"
#include "Core/Buffer/ImportExport.h"
#include "Core/Buffer/KnownFormats.h"

#include <QByteArray>
#include <QString>

#include <memory>
#include <vector>

namespace BufferApi::Formats
{

/// Writes one file frame by frame, so that memory is bounded by one frame.
///
/// The file stands under the name that the writer was made with; the caller gives a temporary one and renames
/// it after `finish`. A writer that is destroyed unfinished leaves that file to the caller.
class FrameWriter
{
public:
    FrameWriter() = default;
    FrameWriter(const FrameWriter&) = delete;
    FrameWriter& operator=(const FrameWriter&) = delete;
    virtual ~FrameWriter() = default;

    /// Refuses, before it writes any of it, a frame that the format cannot hold without loss, with a hint
    /// what can.
    virtual void append(const I_Frame& frame) = 0;
    /// Makes the file whole with all that was appended, and with name and attributes of the buffer, however
    /// the process ends from now on. \returns false when the file cannot be had before `finish`
    virtual bool acknowledge(const I_Buffer& /*buffer*/) { return false; }
    /// Writes name and attributes of the buffer (its frames are not looked at) and closes the file.
    virtual void finish(const I_Buffer& buffer) = 0;
};

/// One kind of file. On import the content decides, on export the extension.
class FileFormat
{
public:
    FileFormat() = default;
    FileFormat(const FileFormat&) = delete;
    FileFormat& operator=(const FileFormat&) = delete;
    virtual ~FileFormat() = default;

    /// Name, extensions, what it can hold.
    [[nodiscard]] virtual KnownFormat about() const = 0;
    /// \param head the first bytes of the file, at most `headBytes`
    [[nodiscard]] virtual bool recognises(const QByteArray& head) const = 0;
    /// The content as a buffer whose planes may load lazily; errors name the file.
    [[nodiscard]] virtual std::unique_ptr<I_Buffer> read(const QString& path) const = 0;
    /// True if a changed pixel of this file shows.
    [[nodiscard]] virtual bool showsDamage(const QString& /*path*/) const { return about().hasChecksums; }
    /// Errors call the file by the name of `path`. Null for a format that is only read, as `about` tells.
    [[nodiscard]] virtual std::unique_ptr<FrameWriter> create(const OutputPath& path,
                                                              const BufferOptions& options) const = 0;
    /// A writer whose `acknowledge` is true, where the format has one.
    [[nodiscard]] virtual std::unique_ptr<FrameWriter> createLasting(const OutputPath& path,
                                                                     const BufferOptions& options) const
    {
        return create(path, options);
    }
};

/// Whether a file has to be whole whenever the process ends, or only when it is finished.
enum class Lasting
{
    No,
    Yes
};

/// A writer of the format that the extension of `path` asks for, lasting where the format can be.
/// \throws RTE::FileWriteError for a format that is only read
[[nodiscard]] std::unique_ptr<FrameWriter> createWriter(const QString& path, const OutputPath& output,
                                                        const BufferOptions& options, Lasting lasting);

/// All formats; the first is the native one, which also takes every extension that no other owns.
[[nodiscard]] const std::vector<std::unique_ptr<const FileFormat>>& fileFormats();

} // namespace BufferApi::Formats
