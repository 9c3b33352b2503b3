// SPDX-License-Identifier: Apache-2.0
/// \file
/// Writing a file frame by frame, as a camera gives them.
///
/// \code
/// BufferApi::FrameStream stream(QStringLiteral("run.qfi"), {{"PackType", 2}});
/// stream.description().SetName(QStringLiteral("wake, 12 m/s"));
/// while (const std::unique_ptr<BufferApi::I_Frame> frame = nextFrame()) {
///     stream.append(*frame); // from here on no end of this process can take the frame away
/// }
/// stream.finish();
/// \endcode
#pragma once

#include "Core/Buffer/I_Buffer.h"
#include "Core/Buffer/ImportExport.h"

#include <memory>

namespace BufferApi
{

/// Writes a file frame by frame; memory is bounded by about one frame, however many there are.
///
/// A native file is whole after each `append`: when the process is killed then, or at any moment until the
/// next append returns, the file opens with every frame whose append had returned, with their scales and
/// attributes, and with the name and the attributes of the buffer as they were set before. (The bytes have
/// reached the system by then; against a power failure only `finish` brings them to the disk.) It is meant to
/// be read once the stream is finished or its process gone. Files of the other formats are written in the
/// same way, but are whole only when finished.
///
/// Frames may differ in everything: kind, size, components, types, scales, attributes. Not synchronised;
/// several threads may write a stream each.
class DATAOBJECTS_BUFFER_EXPORT FrameStream
{
public:
    /// When the file gets its name; until then it stands beside under a temporary one, NAME.PID-N.part, and
    /// an older file of the name stays untouched.
    enum class Appearance
    {
        /// With the first frame, where the format has a whole file then: a recording that is cut off stands
        /// where one looks for it.
        FirstFrame,
        /// When the stream is finished: the name never shows less than all frames.
        Finish
    };

    /// \param path the extension decides the format as for `ExportBuffer`
    /// \param options those of `ExportBuffer` \throws RTE::Exception with file and reason
    explicit FrameStream(const QString& path, const BufferOptions& options = {},
                         Appearance appearance = Appearance::FirstFrame);
    FrameStream(const FrameStream&) = delete;
    FrameStream& operator=(const FrameStream&) = delete;
    /// Finishes the file unless that is done; a failure is not told, the acknowledged frames of a native file
    /// stay.
    ~FrameStream();

    /// Its name and attributes become the file's with the next `append` or `finish`; frames that are added to
    /// it are not written. Lives as long as the stream.
    [[nodiscard]] I_Buffer& description() noexcept;
    /// Frames whose append has returned.
    [[nodiscard]] unsigned long long frameCount() const noexcept;

    /// Writes a frame, whose lazy planes stay unread. When it raises the frame is not in the file, and
    /// nothing more can be appended. \throws RTE::Exception with file and reason
    void append(const I_Frame& frame);
    /// Writes the description, brings all bytes to the disk and gives the file its name. Nothing can be
    /// appended afterwards. \throws RTE::Exception with file and reason, also after an append that failed in
    /// writing
    void finish();
    /// Ends the stream and removes the file with all its frames.
    void discard() noexcept;

private:
    class Implementation;
    std::unique_ptr<Implementation> m_implementation;
};

} // namespace BufferApi
