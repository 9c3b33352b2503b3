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
    /// \param file new and empty
    Writer(Hdf5::File file, bool isPacked);

    void append(const I_Frame& frame) override;
    /// For a lasting file.
    bool acknowledge(const I_Buffer& buffer) override;
    void finish(const I_Buffer& buffer) override;

private:
    [[nodiscard]] SetWriter& setOf(const I_Frame& frame);
    /// Writes name and attributes of the buffer, in place of what was written before, if they are others.
    void describe(const I_Buffer& buffer);
    void removeDescription();
    void writeLargeAttributes(const QByteArray& json);

    bool m_isPacked;
    ChunkCoder m_coder;
    std::optional<Hdf5::File> m_file;
    std::deque<SetWriter> m_sets;
    SetWriter* m_changedSet = nullptr;
    unsigned long long m_frames = 0;
    QByteArray m_description;
    std::vector<std::string> m_descriptionNames;
    bool m_hasLargeAttributes = false;
};

} // namespace BufferApi::Formats::Native
