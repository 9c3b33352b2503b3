// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/Formats/ChunkCoder.h"
#include "Core/Buffer/Formats/FileFormat.h"
#include "Core/Buffer/Formats/NativeSetWriter.h"

#include <deque>
#include <optional>

namespace BufferApi::Formats::Native
{

/// Writes a native file frame by frame; its memory does not grow with the number of frames.
class Writer final : public FrameWriter
{
public:
    /// Makes the file, which must not be there or be empty.
    Writer(const OutputPath& path, bool isPacked);

    void append(const I_Frame& frame) override;
    void finish(const I_Buffer& buffer) override;

private:
    [[nodiscard]] SetWriter& setOf(const I_Frame& frame);
    void describe(const I_Buffer& buffer);
    void writeLargeAttributes(const QByteArray& json);

    bool m_isPacked;
    ChunkCoder m_coder;
    std::optional<Hdf5::File> m_file;
    std::deque<SetWriter> m_sets;
    unsigned long long m_frames = 0;
};

} // namespace BufferApi::Formats::Native
