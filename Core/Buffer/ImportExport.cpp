// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/ImportExport.h"

#include "Core/Buffer/Formats/AtomicFile.h"
#include "Core/Buffer/Formats/FileFormat.h"
#include "Core/Buffer/Formats/InputFile.h"
#include "Core/Buffer/KnownFormats.h"
#include "Core/Common/Raise.h"

#include <QFileInfo>

#include <algorithm>

namespace BufferApi
{

namespace
{

using Formats::FileFormat;
using Formats::fileFormats;

/// Name and extensions of all formats.
QString listOfFormats()
{
    QStringList known;
    for (const KnownFormat& format : knownFormats()) {
        known += QStringLiteral("%1 (.%2)").arg(format.name, format.extensions.join(u", ."));
    }
    return known.join(u", ");
}

/// Index of the format in both lists.
std::size_t indexOfContent(const QString& path)
{
    const QByteArray head = Formats::InputFile(path).readUpTo(0, Formats::headBytes);
    const auto& formats = fileFormats();
    const auto found = std::find_if(formats.begin(), formats.end(),
                                    [&](const auto& format) { return format->recognises(head); });
    if (found != formats.end()) {
        return static_cast<std::size_t>(found - formats.begin());
    }
    const QString reason = head.isEmpty()
                               ? QStringLiteral("the file is empty")
                               : QStringLiteral("unknown content; known are %1").arg(listOfFormats());
    RTE::raise(RTE::FileOpenError(QStringLiteral("Cannot open '%1': %2").arg(path, reason)));
}

std::size_t indexOfName(const QString& path)
{
    const QString extension = QFileInfo(path).suffix().toLower();
    const auto& formats = knownFormats();
    const auto found = std::find_if(formats.begin(), formats.end(), [&](const KnownFormat& format) {
        return format.extensions.contains(extension);
    });
    return found == formats.end() ? 0 : static_cast<std::size_t>(found - formats.begin());
}

} // namespace

std::unique_ptr<Formats::FrameWriter> Formats::createWriter(const QString& path, const OutputPath& output,
                                                            const BufferOptions& options, Lasting lasting)
{
    const FileFormat& format = *fileFormats()[indexOfName(path)];
    auto writer =
        lasting == Lasting::Yes ? format.createLasting(output, options) : format.create(output, options);
    if (!writer) {
        RTE::raise(RTE::FileWriteError(
            QStringLiteral("Cannot write '%1': %2 files are only read").arg(path, format.about().name)));
    }
    return writer;
}

const std::vector<KnownFormat>& knownFormats()
{
    static const std::vector<KnownFormat> formats = [] {
        std::vector<KnownFormat> list;
        for (const auto& format : fileFormats()) {
            list.push_back(format->about());
        }
        return list;
    }();
    return formats;
}

const KnownFormat& formatOfContent(const QString& path)
{
    return knownFormats()[indexOfContent(path)];
}

bool showsDamage(const QString& path)
{
    return fileFormats()[indexOfContent(path)]->showsDamage(path);
}

const KnownFormat& formatOfName(const QString& path)
{
    return knownFormats()[indexOfName(path)];
}

I_Buffer* ImportBuffer(const QString& path, const BufferOptions& /*options*/)
{
    return fileFormats()[indexOfContent(path)]->read(path).release();
}

void ExportBuffer(const I_Buffer* buffer, const QString& path, const BufferOptions& options)
{
    if (buffer == nullptr) {
        RTE::raise(RTE::InvalidArgumentError(QStringLiteral("Buffer is NULL")));
    }
    Formats::AtomicFile target(path);
    const auto writer = Formats::createWriter(path, target.output(), options, Formats::Lasting::No);
    for (unsigned int index = 0; index < buffer->GetFrameCount(); ++index) {
        writer->append(*buffer->GetFrame(index));
    }
    writer->finish(*buffer);
    target.commit();
}

} // namespace BufferApi
