// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/TiffFormat.h"

#include "Core/Buffer/Formats/TiffReader.h"
#include "Core/Buffer/Formats/TiffWriter.h"

namespace BufferApi::Formats
{

namespace
{

bool isPacked(const BufferOptions& options)
{
    const auto packing = options.find("PackType");
    return packing == options.end() || packing->second != BufferOptions::mapped_type(0);
}

class TiffFormat : public FileFormat
{
public:
    [[nodiscard]] KnownFormat about() const override
    {
        return {.name = QStringLiteral("TIFF"),
                .extensions = {QStringLiteral("tif"), QStringLiteral("tiff")},
                .holds = QStringLiteral(
                    "pages of gray in all six types or RGB, volumes as pages, attributes, scales"),
                .isWritten = true,
                .isSingleFrame = false,
                .holdsOnlyPixels = true,
                .pixelTypes = {DT_BYTE, DT_WORD, DT_INT32, DT_UINT32, DT_FLOAT, DT_DOUBLE, DT_RGB},
                .hasChecksums = false};
    }
    [[nodiscard]] bool recognises(const QByteArray& head) const override
    {
        static const QByteArray marks[] = {QByteArray("II\x2A\0", 4), QByteArray("MM\0\x2A", 4),
                                           QByteArray("II\x2B\0", 4), QByteArray("MM\0\x2B", 4)};
        return std::any_of(std::begin(marks), std::end(marks),
                           [&head](const QByteArray& mark) { return head.startsWith(mark); });
    }
    [[nodiscard]] std::unique_ptr<I_Buffer> read(const QString& path) const override
    {
        return readTiff(path);
    }
    [[nodiscard]] std::unique_ptr<FrameWriter> create(const OutputPath& path,
                                                      const BufferOptions& options) const override
    {
        return createTiffWriter(path, isPacked(options));
    }
};

} // namespace

std::unique_ptr<const FileFormat> createTiffFormat()
{
    return std::make_unique<const TiffFormat>();
}

} // namespace BufferApi::Formats
