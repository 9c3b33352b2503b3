// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/BufferApi.h"

#include <QStringList>

#include <functional>
#include <memory>
#include <mutex>
#include <vector>

namespace Qf
{

/// A frame of an input, in use: its file stays open. The pixels that `load` read are freed with the object.
class OpenedFrame
{
public:
    OpenedFrame(std::shared_ptr<const BufferApi::I_Buffer> buffer, const QString& path, unsigned int index);
    OpenedFrame(const OpenedFrame&) = delete;
    OpenedFrame& operator=(const OpenedFrame&) = delete;
    ~OpenedFrame();

    [[nodiscard]] BufferApi::I_Frame& frame() const { return *m_frame; }
    /// Reads all planes into memory, as far as that succeeds: a later use of a plane that failed raises.
    void load();

private:
    std::shared_ptr<const BufferApi::I_Buffer> m_buffer;
    BufferApi::I_Frame* m_frame;
};

/// The frames of several files as one sequence. A file is open while its frames are in use, so there may be
/// more files than a process may open.
class FrameInputs
{
public:
    using Visitor = std::function<void(const QString& path, const BufferApi::I_Buffer& buffer)>;

    /// Looks into each file once and shows it to the visitor. \throws RTE::Exception when one cannot be read
    explicit FrameInputs(const QStringList& paths, const Visitor& visit = {});

    [[nodiscard]] unsigned int frameCount() const noexcept { return m_ends.empty() ? 0 : m_ends.back(); }
    /// The first file, for its name and attributes.
    [[nodiscard]] const BufferApi::I_Buffer& first() const { return *m_first; }
    /// A frame by its number in the sequence; each once. Several threads may ask at a time.
    /// \throws RTE::Exception when it cannot be read any more
    [[nodiscard]] std::shared_ptr<OpenedFrame> open(unsigned int number) const;

private:
    [[nodiscard]] std::shared_ptr<const BufferApi::I_Buffer> bufferOf(std::size_t file) const;

    QStringList m_paths;
    /// For each file the number behind that of its last frame.
    std::vector<unsigned int> m_ends;
    std::shared_ptr<const BufferApi::I_Buffer> m_first;
    mutable std::mutex m_mutex;
    mutable std::vector<std::weak_ptr<const BufferApi::I_Buffer>> m_open;
    /// Stays open until another file is asked for.
    mutable std::shared_ptr<const BufferApi::I_Buffer> m_latest;
};

} // namespace Qf
