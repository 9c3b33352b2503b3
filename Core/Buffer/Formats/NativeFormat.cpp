// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/NativeFormat.h"

#include "Core/Buffer/Formats/NativeReader.h"
#include "Core/Buffer/Formats/NativeWriter.h"

namespace BufferApi::Formats
{

namespace
{

bool isPacked(const BufferOptions& options)
{
    constexpr int packedForm = 2;
    const auto packing = options.find("PackType");
    const int* form = packing == options.end() ? nullptr : std::get_if<int>(&packing->second);
    return form != nullptr && *form == packedForm;
}

class NativeFormat final : public FileFormat
{
public:
    [[nodiscard]] KnownFormat about() const override
    {
        return {.name = QStringLiteral("native"),
                .extensions = {QStringLiteral("qfi"), QStringLiteral("qfv")},
                .holds = QStringLiteral(
                    "everything: images, volumes, RGB, vectors, masks, scalar fields, attributes, scales"),
                .isWritten = true,
                .isSingleFrame = false,
                .holdsOnlyPixels = false,
                .pixelTypes = {DT_BYTE, DT_WORD, DT_INT32, DT_UINT32, DT_FLOAT, DT_DOUBLE, DT_RGB},
                .hasChecksums = true};
    }
    [[nodiscard]] bool recognises(const QByteArray& head) const override
    {
        return Hdf5::findStart(head).has_value();
    }
    [[nodiscard]] std::unique_ptr<I_Buffer> read(const QString& path) const override
    {
        return Native::readBuffer(path);
    }
    [[nodiscard]] bool showsDamage(const QString& path) const override { return Native::showsDamage(path); }
    [[nodiscard]] std::unique_ptr<FrameWriter> create(const OutputPath& path,
                                                      const BufferOptions& options) const override
    {
        return std::make_unique<Native::Writer>(Hdf5::File::create(path), isPacked(options));
    }
    [[nodiscard]] std::unique_ptr<FrameWriter> createLasting(const OutputPath& path,
                                                             const BufferOptions& options) const override
    {
        return std::make_unique<Native::Writer>(Hdf5::File::createLasting(path), isPacked(options));
    }
};

} // namespace

std::unique_ptr<const FileFormat> createNativeFormat()
{
    return std::make_unique<const NativeFormat>();
}

} // namespace BufferApi::Formats
