// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/TiffDirectoryWriter.h"

#include <tiff.h>

#include <bit>

namespace BufferApi::Formats
{

namespace
{

template <typename T>
void appendNumber(QByteArray& bytes, T value)
{
    bytes.append(reinterpret_cast<const char*>(&value), sizeof(value));
}

/// Values begin at even places.
void appendPadded(QByteArray& bytes, const QByteArray& values)
{
    bytes += values;
    if (values.size() % 2 != 0) {
        bytes += '\0';
    }
}

} // namespace

void TiffDirectoryWriter::appendOffset(QByteArray& bytes, unsigned long long value) const
{
    if (isBig()) {
        appendNumber<std::uint64_t>(bytes, value);
    } else {
        appendNumber(bytes, static_cast<std::uint32_t>(value));
    }
}

void TiffDirectoryWriter::addWords(std::uint16_t tag, unsigned int count, std::uint16_t value)
{
    QByteArray bytes;
    for (unsigned int i = 0; i < count; ++i) {
        appendNumber(bytes, value);
    }
    m_entries.push_back({tag, TIFF_SHORT, count, bytes});
}

void TiffDirectoryWriter::addDword(std::uint16_t tag, std::uint32_t value)
{
    QByteArray bytes;
    appendNumber(bytes, value);
    m_entries.push_back({tag, TIFF_LONG, 1, bytes});
}

void TiffDirectoryWriter::addOffsets(std::uint16_t tag, const std::vector<unsigned long long>& values)
{
    QByteArray bytes;
    for (const unsigned long long value : values) {
        appendOffset(bytes, value);
    }
    m_entries.push_back(
        {tag, static_cast<std::uint16_t>(isBig() ? TIFF_LONG8 : TIFF_LONG), values.size(), bytes});
}

void TiffDirectoryWriter::addText(std::uint16_t tag, const QByteArray& text)
{
    const QByteArray terminated(text.constData(), text.size() + 1);
    m_entries.push_back({tag, TIFF_ASCII, static_cast<unsigned long long>(terminated.size()), terminated});
}

void TiffDirectoryWriter::addRatio(std::uint16_t tag, std::uint32_t numerator, std::uint32_t denominator)
{
    QByteArray bytes;
    appendNumber(bytes, numerator);
    appendNumber(bytes, denominator);
    m_entries.push_back({tag, TIFF_RATIONAL, 1, bytes});
}

void TiffDirectoryWriter::write(OutputFile& file, bool isLast) const
{
    const auto count = static_cast<std::uint16_t>(m_entries.size());
    const unsigned long long fixedBytes = isBig() ? 8 + 20ULL * count + 8 : 2 + 12ULL * count + 4;
    QByteArray directory;
    QByteArray beyond;
    if (isBig()) {
        appendNumber<std::uint64_t>(directory, count);
    } else {
        appendNumber(directory, count);
    }
    for (const Entry& entry : m_entries) {
        appendNumber(directory, entry.tag);
        appendNumber(directory, entry.type);
        appendOffset(directory, entry.count);
        if (static_cast<unsigned long long>(entry.values.size()) <= offsetBytes()) {
            directory += entry.values.leftJustified(static_cast<qsizetype>(offsetBytes()), '\0');
        } else {
            appendOffset(directory,
                         file.size() + fixedBytes + static_cast<unsigned long long>(beyond.size()));
            appendPadded(beyond, entry.values);
        }
    }
    const unsigned long long next = file.size() + fixedBytes + static_cast<unsigned long long>(beyond.size());
    appendOffset(directory, isLast ? 0 : next);
    directory += beyond;
    file.append(directory.constData(), static_cast<unsigned long long>(directory.size()));
}

void TiffDirectoryWriter::writeHeader(OutputFile& file, TiffFlavour flavour,
                                      unsigned long long firstDirectory)
{
    const TiffDirectoryWriter writer(flavour);
    QByteArray header(std::endian::native == std::endian::little ? "II" : "MM");
    if (flavour == TiffFlavour::Big) {
        appendNumber<std::uint16_t>(header, TIFF_VERSION_BIG);
        appendNumber<std::uint16_t>(header, 8);
        appendNumber<std::uint16_t>(header, 0);
    } else {
        appendNumber<std::uint16_t>(header, TIFF_VERSION_CLASSIC);
    }
    writer.appendOffset(header, firstDirectory);
    file.overwrite(0, header.constData(), static_cast<unsigned long long>(header.size()));
}

} // namespace BufferApi::Formats
