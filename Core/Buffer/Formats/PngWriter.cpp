// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/PngWriter.h"

#include "Core/Buffer/Formats/FrameRecord.h"
#include "Core/Buffer/Formats/ImageFrame.h"
#include "Core/Buffer/Formats/PngLibrary.h"
#include "Core/Common/Raise.h"

#include <bit>
#include <optional>

namespace BufferApi::Formats
{

namespace
{

class PngWriter : public FrameWriter
{
public:
    explicit PngWriter(const OutputPath& path) : m_file(path) {}

    void append(const I_Frame& frame) override;
    void finish(const I_Buffer& buffer) override;

private:
    [[nodiscard]] const I_PlaneBase& check(const I_Frame& frame) const;
    void write(png_structp png, png_infop info, png_textp record, png_bytepp rows) const;
    static void writeBytes(png_structp png, png_bytep bytes, std::size_t count);
    static void flushBytes(png_structp /*png*/) {}

    OutputFile m_file;
    std::optional<RTE::FileWriteError> m_failure;
    FrameRecordWriter m_record;
    E_DataType m_type = DT_UNKNOWN;
    png_uint_32 m_width = 0;
    png_uint_32 m_height = 0;
    /// Readers need the record before the pixels, and it is known last.
    std::vector<unsigned char> m_pixels;
};

const I_PlaneBase& PngWriter::check(const I_Frame& frame) const
{
    if (!m_pixels.empty()) {
        m_file.refuse(QStringLiteral("PNG cannot hold more than one frame; .tif and .qfi files can"));
    }
    const I_Component& pixels = onlyPixels(frame, m_file, QStringLiteral("PNG"));
    if (frame.GetDepth() != 1) {
        m_file.refuse(
            QStringLiteral("PNG cannot hold %1 planes; .tif and .qfi files can").arg(frame.GetDepth()));
    }
    const I_PlaneBase& plane = *pixels.GetPlane(0);
    const E_DataType type = plane.GetDataType();
    if (type != DT_BYTE && type != DT_WORD && type != DT_RGB) {
        m_file.refuse(QStringLiteral(
            "PNG cannot hold pixels other than bytes, words and packed colour; .tif and .qfi files can"));
    }
    return plane;
}

void PngWriter::append(const I_Frame& frame)
{
    const I_PlaneBase& plane = check(frame);
    m_type = plane.GetDataType();
    m_width = plane.GetWidth();
    m_height = plane.GetHeight();
    std::vector<unsigned char> pixels(planeBytes(m_type, m_width, m_height));
    readPlane(plane, pixels.data());
    refuseFourthByte(plane, pixels.data(), m_file, QStringLiteral("PNG"));
    m_pixels = std::move(pixels);
    m_record.add(frame);
}

void PngWriter::finish(const I_Buffer& buffer)
{
    if (m_pixels.empty()) {
        m_file.refuse(QStringLiteral("PNG needs one frame"));
    }
    std::vector<png_bytep> rows(m_height);
    for (std::size_t y = 0; y < m_height; ++y) {
        rows[y] = m_pixels.data() + GetDataTypeSize(m_type) * m_width * y;
    }
    QByteArray record = m_record.finish(buffer);
    QByteArray keyword(pngRecordKeyword);
    png_text text{};
    text.compression = PNG_ITXT_COMPRESSION_NONE;
    text.key = keyword.data();
    text.text = record.data();
    PngLibrary library(PngLibrary::Direction::Write);
    const bool isWritten = library.run([&](png_structp png, png_infop info) {
        png_set_write_fn(png, this, &writeBytes, &flushBytes);
        write(png, info, &text, rows.data());
    });
    if (m_failure) {
        RTE::raise(*m_failure);
    }
    if (!isWritten) {
        m_file.refuse(library.reason());
    }
    m_file.close();
}

void PngWriter::write(png_structp png, png_infop info, png_textp record, png_bytepp rows) const
{
    png_set_IHDR(png, info, m_width, m_height, m_type == DT_WORD ? 16 : 8,
                 m_type == DT_RGB ? PNG_COLOR_TYPE_RGB : PNG_COLOR_TYPE_GRAY, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_set_text(png, info, record, 1);
    png_write_info(png, info);
    png_set_bgr(png);
    if (m_type == DT_RGB) {
        png_set_filler(png, 0, PNG_FILLER_AFTER);
    }
    if constexpr (std::endian::native == std::endian::little) {
        png_set_swap(png);
    }
    png_write_image(png, rows);
    png_write_end(png, info);
}

void PngWriter::writeBytes(png_structp png, png_bytep bytes, std::size_t count)
{
    auto& writer = *static_cast<PngWriter*>(png_get_io_ptr(png));
    bool isWritten = true;
    try {
        writer.m_file.append(bytes, count);
    } catch (const RTE::FileWriteError& failure) {
        // An exception must not pass through C code; libpng's own error reaches `finish` instead.
        writer.m_failure.emplace(failure);
        isWritten = false;
    }
    if (!isWritten) {
        png_error(png, "a write failed");
    }
}

} // namespace

std::unique_ptr<FrameWriter> createPngWriter(const OutputPath& path)
{
    return std::make_unique<PngWriter>(path);
}

} // namespace BufferApi::Formats
