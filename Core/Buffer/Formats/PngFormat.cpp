// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/PngFormat.h"

#include "Core/Buffer/Formats/PngReader.h"
#include "Core/Buffer/Formats/PngWriter.h"

namespace BufferApi::Formats
{

namespace
{

class PngFormat : public FileFormat
{
public:
    [[nodiscard]] KnownFormat about() const override
    {
        return {.name = QStringLiteral("PNG"),
                .extensions = {QStringLiteral("png")},
                .holds = QStringLiteral("one frame of gray with 8 or 16 bit or RGB, attributes, scales"),
                .isWritten = true,
                .isSingleFrame = true,
                .holdsOnlyPixels = true,
                .pixelTypes = {DT_BYTE, DT_WORD, DT_RGB},
                .hasChecksums = true};
    }
    [[nodiscard]] bool recognises(const QByteArray& head) const override
    {
        return head.startsWith("\x89PNG\r\n\x1a\n");
    }
    [[nodiscard]] std::unique_ptr<I_Buffer> read(const QString& path) const override { return readPng(path); }
    [[nodiscard]] std::unique_ptr<FrameWriter> create(const OutputPath& path,
                                                      const BufferOptions& /*options*/) const override
    {
        return createPngWriter(path);
    }
};

} // namespace

std::unique_ptr<const FileFormat> createPngFormat()
{
    return std::make_unique<const PngFormat>();
}

} // namespace BufferApi::Formats
