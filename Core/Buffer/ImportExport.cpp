// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/ImportExport.h"

#include "Core/Buffer/Formats/AtomicFile.h"
#include "Core/Buffer/Formats/FileFormat.h"
#include "Core/Buffer/Formats/InputFile.h"
#include "Core/Common/Raise.h"

#include <QFileInfo>

namespace BufferApi
{

namespace
{

using Formats::FileFormat;
using Formats::fileFormats;

constexpr unsigned long long headBytes = 4096;

/// Name and extensions of those formats that hold for the predicate.
template <typename Predicate>
QString list(const Predicate& predicate)
{
    QStringList known;
    for (const auto& format : fileFormats()) {
        if (predicate(*format)) {
            known += QStringLiteral("%1 (.%2)").arg(format->name(), format->extensions().join(u", ."));
        }
    }
    return known.join(u", ");
}

const FileFormat& formatOfContent(const QString& path)
{
    const QByteArray head = Formats::InputFile(path).readUpTo(0, headBytes);
    for (const auto& format : fileFormats()) {
        if (format->recognises(head)) {
            return *format;
        }
    }
    const QString reason =
        head.isEmpty() ? QStringLiteral("the file is empty")
                       : QStringLiteral("unknown content; known are %1").arg(list([](const FileFormat&) {
                             return true;
                         }));
    RTE::raise(RTE::FileOpenError(QStringLiteral("Cannot open '%1': %2").arg(path, reason)));
}

const FileFormat& formatOfExtension(const QString& path)
{
    const QString extension = QFileInfo(path).suffix().toLower();
    for (const auto& format : fileFormats()) {
        if (format->extensions().contains(extension)) {
            return *format;
        }
    }
    return *fileFormats().front();
}

} // namespace

I_Buffer* ImportBuffer(const QString& path, const BufferOptions& /*options*/)
{
    return formatOfContent(path).read(path).release();
}

void ExportBuffer(const I_Buffer* buffer, const QString& path, const BufferOptions& options)
{
    if (buffer == nullptr) {
        RTE::raise(RTE::InvalidArgumentError(QStringLiteral("Buffer is NULL")));
    }
    const FileFormat& format = formatOfExtension(path);
    Formats::AtomicFile target(path);
    const auto writer = format.create(target.temporaryPath(), options);
    if (!writer) {
        RTE::raise(RTE::FileWriteError(
            QStringLiteral("Cannot write '%1': %2 files are only read").arg(path, format.name())));
    }
    for (unsigned int index = 0; index < buffer->GetFrameCount(); ++index) {
        writer->append(*buffer->GetFrame(index));
    }
    writer->finish(*buffer);
    target.commit();
}

} // namespace BufferApi
