// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/BmpFormat.h"

#include "Core/Buffer/BufferApi.h"
#include "Core/Buffer/Formats/BmpRuns.h"
#include "Core/Buffer/Formats/ImageFrame.h"
#include "Core/Buffer/Formats/InputFile.h"

#include <QtEndian>

#include <algorithm>
#include <array>
#include <bit>

namespace BufferApi::Formats
{

namespace
{

constexpr unsigned int fileHeaderBytes = 14;

/// One colour channel of a 16 or 32 bit pixel, widened to 8 bits.
class Channel
{
public:
    Channel() = default;
    explicit Channel(quint32 mask) : m_mask(mask), m_shift(mask != 0 ? std::countr_zero(mask) : 0) {}

    [[nodiscard]] unsigned char of(quint32 pixel) const
    {
        const quint64 full = m_mask >> m_shift;
        const quint64 value = (pixel & m_mask) >> m_shift;
        return static_cast<unsigned char>(full == 0 ? 0 : (value * 255 + full / 2) / full);
    }

private:
    quint32 m_mask = 0;
    int m_shift = 0;
};

struct Layout
{
    unsigned int width = 0;
    unsigned int height = 0;
    bool topDown = false;
    unsigned int bits = 0;
    unsigned long long pixels = 0;
    /// Bytes of run-length coded pixels; 0 when they are not.
    unsigned long long coded = 0;
    /// Indices that the file's palette lacks are black.
    std::array<RgbQuad, 256> palette{};
    bool grayPalette = false;
    Channel red;
    Channel green;
    Channel blue;

    [[nodiscard]] E_DataType type() const { return grayPalette ? DT_BYTE : DT_RGB; }
    /// Rows are filled up to whole groups of four bytes.
    [[nodiscard]] unsigned long long rowBytes() const { return (1ULL * width * bits + 31) / 32 * 4; }
    [[nodiscard]] BmpRuns runs() const { return {bits, width, height}; }
};

/// The fixed part of the headers, whatever their version.
class Headers
{
public:
    explicit Headers(const InputFile& file) : m_file(file), m_bytes(file.readUpTo(0, fileHeaderBytes + 124))
    {
        need(fileHeaderBytes + 12);
        m_size = dword(fileHeaderBytes);
        need(fileHeaderBytes + std::min(m_size, 40U));
    }

    [[nodiscard]] quint32 size() const { return m_size; }
    /// The first version, of OS/2, has 16 bit extents and three bytes a palette entry.
    [[nodiscard]] bool isCore() const { return m_size == 12; }
    [[nodiscard]] quint16 word(unsigned int offset) const { return at<quint16>(offset); }
    [[nodiscard]] quint32 dword(unsigned int offset) const { return at<quint32>(offset); }

private:
    void need(unsigned int bytes) const
    {
        if (m_bytes.size() < static_cast<qsizetype>(bytes)) {
            m_file.refuse(QStringLiteral("the bitmap's header is cut off"));
        }
    }

    template <typename T>
    [[nodiscard]] T at(unsigned int offset) const
    {
        need(offset + sizeof(T));
        return qFromLittleEndian<T>(m_bytes.constData() + offset);
    }

    const InputFile& m_file;
    QByteArray m_bytes;
    quint32 m_size = 0;
};

void readExtents(const InputFile& file, const Headers& headers, Layout& layout)
{
    layout.pixels = headers.dword(10);
    if (headers.isCore()) {
        layout.width = headers.word(18);
        layout.height = headers.word(20);
        layout.bits = headers.word(24);
        return;
    }
    const auto width = static_cast<qint32>(headers.dword(18));
    const auto height = static_cast<qint32>(headers.dword(22));
    if (headers.size() < 40 || width < 0) {
        file.refuse(QStringLiteral("the bitmap's header is damaged"));
    }
    layout.width = static_cast<unsigned int>(width);
    layout.topDown = height < 0;
    layout.height = static_cast<unsigned int>(std::abs(static_cast<qint64>(height)));
    layout.bits = headers.word(28);
}

void readPalette(const InputFile& file, const Headers& headers, Layout& layout)
{
    const unsigned int entryBytes = headers.isCore() ? 3 : 4;
    const unsigned int used = headers.isCore() ? 0 : headers.dword(46);
    const unsigned int count = used == 0 ? 1U << layout.bits : std::min(used, 1U << layout.bits);
    const QByteArray entries = file.readUpTo(fileHeaderBytes + headers.size(), 1ULL * count * entryBytes);
    if (entries.size() < static_cast<qsizetype>(count * entryBytes)) {
        file.refuse(QStringLiteral("the bitmap's palette is cut off"));
    }
    for (unsigned int i = 0; i < count; ++i) {
        const auto* entry = reinterpret_cast<const unsigned char*>(entries.constData()) + i * entryBytes;
        layout.palette[i] = {entry[0], entry[1], entry[2], 0};
    }
    layout.grayPalette = std::all_of(layout.palette.begin(), layout.palette.begin() + count,
                                     [](const RgbQuad& c) { return c.blue == c.green && c.green == c.red; });
}

void readCompression(const InputFile& file, const Headers& headers, Layout& layout)
{
    constexpr quint32 noCompression = 0;
    constexpr quint32 runs8 = 1;
    constexpr quint32 runs4 = 2;
    constexpr quint32 bitFields = 3;
    constexpr quint32 alphaBitFields = 6;
    const quint32 compression = headers.isCore() ? noCompression : headers.dword(30);
    if ((compression == runs8 && layout.bits == 8) || (compression == runs4 && layout.bits == 4)) {
        layout.coded = file.size() - std::min(file.size(), layout.pixels);
        if (layout.coded == 0) {
            file.refuse(QStringLiteral("the file ends before its pixels"));
        }
    } else if (compression == bitFields || compression == alphaBitFields) {
        layout.red = Channel(headers.dword(54));
        layout.green = Channel(headers.dword(58));
        layout.blue = Channel(headers.dword(62));
    } else if (compression != noCompression) {
        file.refuse(
            QStringLiteral("compressed bitmaps (kind %1) are not supported; save it without compression")
                .arg(compression));
    } else if (layout.bits == 16) {
        layout.red = Channel(0x7C00);
        layout.green = Channel(0x03E0);
        layout.blue = Channel(0x001F);
    } else {
        layout.red = Channel(0xFF0000);
        layout.green = Channel(0x00FF00);
        layout.blue = Channel(0x0000FF);
    }
}

Layout readLayout(const InputFile& file)
{
    const Headers headers(file);
    Layout layout;
    readExtents(file, headers, layout);
    constexpr std::array<unsigned int, 6> known = {1, 4, 8, 16, 24, 32};
    if (std::find(known.begin(), known.end(), layout.bits) == known.end()) {
        file.refuse(QStringLiteral("bitmaps of %1 bits are not supported").arg(layout.bits));
    }
    readCompression(file, headers, layout);
    if (layout.bits <= 8) {
        readPalette(file, headers, layout);
    }
    if (layout.width == 0 || layout.height == 0) {
        file.refuse(QStringLiteral("it has no pixels"));
    }
    const unsigned long long left = file.size() - std::min(file.size(), layout.pixels);
    const bool fits =
        layout.coded != 0 ? layout.runs().fitInto(left) : layout.rowBytes() <= left / layout.height;
    if (!fits) {
        file.refuse(
            QStringLiteral("the file ends before its %1 x %2 pixels").arg(layout.width).arg(layout.height));
    }
    return layout;
}

unsigned int paletteIndex(const unsigned char* row, unsigned int x, unsigned int bits)
{
    const unsigned int perByte = 8 / bits;
    const unsigned int shift = 8 - bits * (x % perByte + 1);
    return static_cast<unsigned int>(row[x / perByte]) >> shift & ((1U << bits) - 1);
}

void convertRow(const Layout& layout, const unsigned char* row, unsigned char* grays)
{
    for (unsigned int x = 0; x < layout.width; ++x) {
        grays[x] = layout.palette[paletteIndex(row, x, layout.bits)].green;
    }
}

void convertRow(const Layout& layout, const unsigned char* row, RgbQuad* colours)
{
    for (unsigned int x = 0; x < layout.width; ++x) {
        if (layout.bits <= 8) {
            colours[x] = layout.palette[paletteIndex(row, x, layout.bits)];
            continue;
        }
        quint32 pixel = 0;
        for (unsigned int byte = 0; byte < layout.bits / 8; ++byte) {
            pixel |= static_cast<quint32>(row[x * 1ULL * (layout.bits / 8) + byte]) << (8 * byte);
        }
        colours[x] = {layout.blue.of(pixel), layout.green.of(pixel), layout.red.of(pixel), 0};
    }
}

class BmpPixels : public PlaneSource
{
public:
    BmpPixels(std::shared_ptr<const InputFile> file, const Layout& layout)
        : m_file(std::move(file)), m_layout(layout)
    {
    }

    void read(void* destination, unsigned long long /*bytes*/) const override
    {
        if (m_layout.type() == DT_BYTE) {
            readPixels(static_cast<unsigned char*>(destination));
        } else {
            readPixels(static_cast<RgbQuad*>(destination));
        }
    }

private:
    template <typename T>
    void readPixels(T* pixels) const
    {
        if (m_layout.coded != 0) {
            readRuns(pixels);
        } else {
            readRows(pixels);
        }
    }

    template <typename T>
    void readRuns(T* pixels) const
    {
        std::vector<unsigned char> code(m_layout.coded);
        m_file->read(m_layout.pixels, code.data(), code.size());
        const std::vector<unsigned char> indices = m_layout.runs().decode(code);
        if (indices.empty()) {
            m_file->refuse(QStringLiteral("the bitmap's runs are damaged"));
        }
        Layout decoded = m_layout;
        decoded.bits = 8;
        for (unsigned int stored = 0; stored < m_layout.height; ++stored) {
            convertRow(decoded, indices.data() + 1ULL * stored * m_layout.width, rowOf(pixels, stored));
        }
    }

    template <typename T>
    void readRows(T* pixels) const
    {
        std::vector<unsigned char> row(m_layout.rowBytes());
        for (unsigned int stored = 0; stored < m_layout.height; ++stored) {
            m_file->read(m_layout.pixels + stored * m_layout.rowBytes(), row.data(), row.size());
            convertRow(m_layout, row.data(), rowOf(pixels, stored));
        }
    }

    template <typename T>
    [[nodiscard]] T* rowOf(T* pixels, unsigned int stored) const
    {
        const unsigned int y = m_layout.topDown ? stored : m_layout.height - 1 - stored;
        return pixels + 1ULL * y * m_layout.width;
    }

    std::shared_ptr<const InputFile> m_file;
    Layout m_layout;
};

class BmpFormat : public FileFormat
{
public:
    [[nodiscard]] KnownFormat about() const override
    {
        return {.name = QStringLiteral("BMP"),
                .extensions = {QStringLiteral("bmp")},
                .holds = QStringLiteral("one frame of 8 bit gray or RGB"),
                .isWritten = false,
                .isSingleFrame = true,
                .holdsOnlyPixels = true,
                .pixelTypes = {},
                .hasChecksums = false};
    }
    [[nodiscard]] bool recognises(const QByteArray& head) const override { return head.startsWith("BM"); }

    [[nodiscard]] std::unique_ptr<I_Buffer> read(const QString& path) const override
    {
        const auto file = std::make_shared<const InputFile>(path);
        const Layout layout = readLayout(*file);
        std::unique_ptr<I_Buffer> buffer(CreateBuffer());
        buffer->AddFrame(lazyImageFrame(layout.type(), layout.width, layout.height,
                                        {std::make_shared<BmpPixels>(file, layout)})
                             .release());
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

std::unique_ptr<const FileFormat> createBmpFormat()
{
    return std::make_unique<const BmpFormat>();
}

} // namespace BufferApi::Formats
