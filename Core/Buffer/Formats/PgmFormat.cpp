// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/PgmFormat.h"

#include "Core/Buffer/BufferApi.h"
#include "Core/Buffer/Formats/ImageFrame.h"
#include "Core/Buffer/Formats/InputFile.h"

#include <optional>

namespace BufferApi::Formats
{

namespace
{

constexpr unsigned int maximumWord = 65535;

struct Header
{
    bool plain = false;
    unsigned int width = 0;
    unsigned int height = 0;
    unsigned int maximum = 0;
    /// Place of the first pixel in the file.
    unsigned long long pixels = 0;

    [[nodiscard]] E_DataType type() const { return maximum < 256 ? DT_BYTE : DT_WORD; }
    [[nodiscard]] unsigned long long count() const { return 1ULL * width * height; }
    [[nodiscard]] unsigned long long bytes() const { return count() * GetDataTypeSize(type()); }
};

bool isBlank(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

bool hasMagic(const QByteArray& text)
{
    return text.size() > 2 && text[0] == 'P' && (text[1] == '5' || text[1] == '2') &&
           (isBlank(text[2]) || text[2] == '#');
}

/// Reads decimal numbers between blanks and comments, which run from '#' to the end of their line.
class Numbers
{
public:
    Numbers(const QByteArray& text, qsizetype position) : m_text(text), m_position(position) {}

    [[nodiscard]] qsizetype position() const { return m_position; }

    /// Empty at the end of the text, at any other sign, and above `limit`.
    std::optional<unsigned int> next(unsigned int limit)
    {
        skipBlanks();
        const qsizetype first = m_position;
        unsigned long long value = 0;
        while (m_position < m_text.size() && m_text[m_position] >= '0' && m_text[m_position] <= '9') {
            value = value * 10 + static_cast<unsigned int>(m_text[m_position++] - '0');
            if (value > limit) {
                return {};
            }
        }
        return m_position > first ? std::optional(static_cast<unsigned int>(value)) : std::nullopt;
    }

private:
    void skipBlanks()
    {
        while (m_position < m_text.size() && (isBlank(m_text[m_position]) || m_text[m_position] == '#')) {
            if (m_text[m_position] == '#') {
                const qsizetype end = m_text.indexOf('\n', m_position);
                m_position = end < 0 ? m_text.size() : end;
            } else {
                ++m_position;
            }
        }
    }

    const QByteArray& m_text;
    qsizetype m_position;
};

/// The header at this place; empty where none begins.
std::optional<Header> readHeader(const InputFile& file, unsigned long long offset)
{
    constexpr unsigned long long longestHeader = 4096;
    const QByteArray text = file.readUpTo(offset, longestHeader);
    if (!hasMagic(text)) {
        return {};
    }
    Numbers numbers(text, 2);
    const auto width = numbers.next(maximumWord * 16);
    const auto height = width ? numbers.next(maximumWord * 16) : std::nullopt;
    const auto maximum = height ? numbers.next(maximumWord) : std::nullopt;
    if (!maximum || *maximum == 0 || numbers.position() >= text.size() ||
        !isBlank(text[numbers.position()])) {
        file.refuse(QStringLiteral("the header of the graymap at byte %1 is damaged").arg(offset));
    }
    return Header{.plain = text[1] == '2',
                  .width = *width,
                  .height = *height,
                  .maximum = *maximum,
                  .pixels = offset + static_cast<unsigned long long>(numbers.position()) + 1};
}

/// Refuses an image that promises more pixels than the file can hold; plain pixels take a digit and a blank
/// at least.
void checkExtent(const InputFile& file, const Header& header)
{
    const unsigned long long left = file.size() - std::min(file.size(), header.pixels);
    if (header.plain ? header.count() > (left + 1) / 2 : header.bytes() > left) {
        file.refuse(
            QStringLiteral("the file ends before its %1 x %2 pixels").arg(header.width).arg(header.height));
    }
}

class BinaryPixels : public PlaneSource
{
public:
    BinaryPixels(std::shared_ptr<const InputFile> file, const Header& header)
        : m_file(std::move(file)), m_header(header)
    {
    }

    void read(void* destination, unsigned long long bytes) const override
    {
        m_file->read(m_header.pixels, destination, bytes);
        if (m_header.type() == DT_WORD) {
            swapBytes(static_cast<unsigned short*>(destination), m_header.count());
        }
    }

private:
    // Words stand in the file with the most significant byte first.
    static void swapBytes(unsigned short* words, unsigned long long count)
    {
        for (unsigned long long i = 0; i < count; ++i) {
            words[i] = static_cast<unsigned short>(words[i] << 8U | words[i] >> 8U);
        }
    }

    std::shared_ptr<const InputFile> m_file;
    Header m_header;
};

class PlainPixels : public PlaneSource
{
public:
    PlainPixels(std::shared_ptr<const InputFile> file, const Header& header)
        : m_file(std::move(file)), m_header(header)
    {
    }

    void read(void* destination, unsigned long long /*bytes*/) const override
    {
        const QByteArray text = m_file->readUpTo(m_header.pixels, m_file->size());
        if (m_header.type() == DT_BYTE) {
            parse(text, static_cast<unsigned char*>(destination));
        } else {
            parse(text, static_cast<unsigned short*>(destination));
        }
    }

private:
    template <typename T>
    void parse(const QByteArray& text, T* pixels) const
    {
        Numbers numbers(text, 0);
        for (unsigned long long i = 0; i < m_header.count(); ++i) {
            const auto value = numbers.next(m_header.maximum);
            if (!value) {
                m_file->refuse(QStringLiteral("pixel %1 is missing or not a number up to %2")
                                   .arg(i)
                                   .arg(m_header.maximum));
            }
            pixels[i] = static_cast<T>(*value);
        }
    }

    std::shared_ptr<const InputFile> m_file;
    Header m_header;
};

std::shared_ptr<const PlaneSource> pixelsOf(const std::shared_ptr<const InputFile>& file,
                                            const Header& header)
{
    if (header.plain) {
        return std::make_shared<PlainPixels>(file, header);
    }
    return std::make_shared<BinaryPixels>(file, header);
}

class PgmFormat : public FileFormat
{
public:
    [[nodiscard]] KnownFormat about() const override
    {
        return {.name = QStringLiteral("PGM"),
                .extensions = {QStringLiteral("pgm")},
                .holds = QStringLiteral("frames of gray with 8 or 16 bit"),
                .isWritten = false,
                .isSingleFrame = false,
                .holdsOnlyPixels = true,
                .pixelTypes = {},
                .hasChecksums = false};
    }
    [[nodiscard]] bool recognises(const QByteArray& head) const override { return hasMagic(head); }

    [[nodiscard]] std::unique_ptr<I_Buffer> read(const QString& path) const override
    {
        const auto file = std::make_shared<const InputFile>(path);
        std::unique_ptr<I_Buffer> buffer(CreateBuffer());
        std::optional<Header> header = readHeader(*file, 0);
        if (!header) {
            file->refuse(QStringLiteral("it does not begin as a graymap"));
        }
        while (header) {
            checkExtent(*file, *header);
            buffer->AddFrame(
                lazyImageFrame(header->type(), header->width, header->height, {pixelsOf(file, *header)})
                    .release());
            // A plain file holds one image; whatever follows the last binary one is not an image and is
            // passed over.
            header = header->plain ? std::nullopt : readHeader(*file, header->pixels + header->bytes());
        }
        buffer->SetModified(false);
        return buffer;
    }

    [[nodiscard]] std::unique_ptr<FrameWriter> create(const OutputPath& /*path*/,
                                                      const BufferOptions& /*options*/) const override
    {
        return nullptr;
    }
};

} // namespace

std::unique_ptr<const FileFormat> createPgmFormat()
{
    return std::make_unique<const PgmFormat>();
}

} // namespace BufferApi::Formats
