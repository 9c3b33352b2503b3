// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/Formats/OutputFile.h"

#include <QByteArray>

#include <cstdint>
#include <vector>

namespace BufferApi::Formats
{

/// Classic TIFF reaches 4 GiB, BigTIFF any size.
enum class TiffFlavour
{
    Classic,
    Big
};

/// One directory of a TIFF file, in the byte order of this machine. libtiff writes directories too, but wants
/// to know the flavour of the file before its first byte.
class TiffDirectoryWriter
{
public:
    explicit TiffDirectoryWriter(TiffFlavour flavour) : m_flavour(flavour) {}

    // Tags are added in ascending order.
    /// The same value several times, as tags want it that have one for each sample of a pixel.
    void addWords(std::uint16_t tag, unsigned int count, std::uint16_t value);
    void addDword(std::uint16_t tag, std::uint32_t value);
    /// Places in the file, or counts of its bytes.
    void addOffsets(std::uint16_t tag, const std::vector<unsigned long long>& values);
    void addText(std::uint16_t tag, const QByteArray& text);
    void addRatio(std::uint16_t tag, std::uint32_t numerator, std::uint32_t denominator);

    /// Appends the directory; the next one is to follow at once unless this is the last.
    void write(OutputFile& file, bool isLast) const;

    /// Bytes at the beginning of a file that are kept free, in either flavour.
    static constexpr unsigned long long headerBytes = 16;
    static void writeHeader(OutputFile& file, TiffFlavour flavour, unsigned long long firstDirectory);

private:
    struct Entry
    {
        std::uint16_t tag;
        std::uint16_t type;
        unsigned long long count;
        QByteArray values;
    };

    [[nodiscard]] bool isBig() const noexcept { return m_flavour == TiffFlavour::Big; }
    [[nodiscard]] unsigned int offsetBytes() const noexcept { return isBig() ? 8 : 4; }
    /// Appends a number as wide as the flavour's offsets.
    void appendOffset(QByteArray& bytes, unsigned long long value) const;

    TiffFlavour m_flavour;
    std::vector<Entry> m_entries;
};

} // namespace BufferApi::Formats
