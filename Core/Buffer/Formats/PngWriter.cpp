// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/PngWriter.h"

#include "Core/Buffer/Formats/PngLibrary.h"
#include "Core/Buffer/FrameBuilder.h"
#include "Core/Buffer/I_FrameImage.h"
#include "Core/Buffer/LazyPlane.h"
#include "Core/Common/Raise.h"

#include <QFile>

#include <bit>

namespace BufferApi::Formats
{

namespace
{

class PngWriter : public FrameWriter
{
public:
    explicit PngWriter(const QString& path) : m_file(path)
    {
        if (!m_file.open(QIODevice::WriteOnly)) {
            raiseWriteError(m_file.errorString());
        }
    }

    void append(const I_Frame& frame) override;
    void finish(const I_Buffer& buffer) override;

private:
    [[noreturn]] void raiseWriteError(const QString& reason) const
    {
        RTE::raise(
            RTE::FileWriteError(QStringLiteral("Cannot write '%1': %2").arg(m_file.fileName(), reason)));
    }
    void refuse(bool refused, const QString& what) const
    {
        if (refused) {
            raiseWriteError(QStringLiteral("PNG cannot hold %1; a .qfi file can").arg(what));
        }
    }
    void check(const I_Frame& frame) const;
    void writePixels(const I_PlaneBase& plane, unsigned char* pixels);
    static void writeBytes(png_structp png, png_bytep bytes, std::size_t count);
    static void flushBytes(png_structp /*png*/) {}

    QFile m_file;
    bool m_hasFrame = false;
};

void PngWriter::check(const I_Frame& frame) const
{
    refuse(m_hasFrame, QStringLiteral("more than one frame"));
    refuse(isVectorKind(frameShape(frame).kind), QStringLiteral("vectors"));
    refuse(frame.GetDepth() != 1, QStringLiteral("%1 planes").arg(frame.GetDepth()));
    refuse(frame.GetWidth() == 0 || frame.GetHeight() == 0, QStringLiteral("an image without pixels"));
    const E_DataType type = frame.GetDataType();
    refuse(type != DT_BYTE && type != DT_WORD && type != DT_RGB,
           QStringLiteral("pixels other than bytes, words and packed colour"));
    for (unsigned int i = 0; i < frame.GetComponentCount(); ++i) {
        const std::string name = frame.GetComponent(i)->GetName();
        refuse(name != I_FrameImage::COMPONENT_PIXEL,
               QStringLiteral("the component '%1'").arg(QString::fromStdString(name)));
    }
}

void PngWriter::append(const I_Frame& frame)
{
    check(frame);
    const I_PlaneBase& plane = *frame.GetComponent(I_FrameImage::COMPONENT_PIXEL)->GetPlane(0);
    std::vector<unsigned char> pixels(planeBytes(plane.GetDataType(), plane.GetWidth(), plane.GetHeight()));
    readPlane(plane, pixels.data());
    writePixels(plane, pixels.data());
    m_hasFrame = true;
}

void PngWriter::writePixels(const I_PlaneBase& plane, unsigned char* pixels)
{
    const E_DataType type = plane.GetDataType();
    const unsigned int height = plane.GetHeight();
    std::vector<png_bytep> rows(height);
    for (unsigned int y = 0; y < height; ++y) {
        rows[y] = pixels + GetDataTypeSize(type) * plane.GetWidth() * y;
    }
    PngLibrary library(PngLibrary::Direction::Write);
    const bool written = library.run([&](png_structp png, png_infop info) {
        png_set_write_fn(png, this, &writeBytes, &flushBytes);
        png_set_IHDR(png, info, plane.GetWidth(), height, type == DT_WORD ? 16 : 8,
                     type == DT_RGB ? PNG_COLOR_TYPE_RGB : PNG_COLOR_TYPE_GRAY, PNG_INTERLACE_NONE,
                     PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
        png_write_info(png, info);
        png_set_bgr(png);
        if (type == DT_RGB) {
            png_set_filler(png, 0, PNG_FILLER_AFTER);
        }
        if constexpr (std::endian::native == std::endian::little) {
            png_set_swap(png);
        }
        png_write_image(png, rows.data());
        png_write_end(png, info);
    });
    if (!written) {
        raiseWriteError(library.reason());
    }
}

void PngWriter::writeBytes(png_structp png, png_bytep bytes, std::size_t count)
{
    auto& file = static_cast<PngWriter*>(png_get_io_ptr(png))->m_file;
    if (file.write(reinterpret_cast<const char*>(bytes), static_cast<qint64>(count)) !=
        static_cast<qint64>(count)) {
        png_error(png, "the disk may be full");
    }
}

void PngWriter::finish(const I_Buffer& /*buffer*/)
{
    if (!m_hasFrame) {
        raiseWriteError(QStringLiteral("PNG needs one frame"));
    }
    if (!m_file.flush()) {
        raiseWriteError(m_file.errorString());
    }
    m_file.close();
}

} // namespace

std::unique_ptr<FrameWriter> createPngWriter(const QString& path)
{
    return std::make_unique<PngWriter>(path);
}

} // namespace BufferApi::Formats
