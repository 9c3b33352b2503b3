// SPDX-License-Identifier: Apache-2.0
#include "Tools/qf/FormatsCommand.h"

#include "Tools/qf/Arguments.h"
#include "Tools/qf/JsonText.h"
#include "Tools/qf/TextTable.h"

#include "Core/Buffer/KnownFormats.h"
#include "Core/DataObjects/FrameDecoders/FrameDecoders.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <CLI/CLI.hpp>

namespace Qf
{

namespace
{

using BufferApi::KnownFormat;

QString yesOrNo(bool yes)
{
    return yes ? QStringLiteral("yes") : QStringLiteral("no");
}

QString formatsText()
{
    std::vector<QStringList> rows{{QStringLiteral("Format"), QStringLiteral("Extensions"),
                                   QStringLiteral("Read"), QStringLiteral("Written"),
                                   QStringLiteral("Checksums"), QStringLiteral("Holds")}};
    for (const KnownFormat& format : BufferApi::knownFormats()) {
        rows.push_back({format.name, QLatin1Char('.') + format.extensions.join(QStringLiteral(" .")),
                        yesOrNo(true), yesOrNo(format.isWritten), yesOrNo(format.hasChecksums),
                        format.holds});
    }
    return QStringLiteral("%1\nRaw camera bytes for 'qf decode --format':\n  %2\n")
        .arg(alignedLines(rows).join(QString()),
             DataObjects::FrameDecoder::frameDecoders().ids().join(QStringLiteral("\n  ")));
}

QString formatsJson()
{
    QJsonArray files;
    for (const KnownFormat& format : BufferApi::knownFormats()) {
        files.append(
            QJsonObject{{QStringLiteral("name"), format.name},
                        {QStringLiteral("extensions"), QJsonArray::fromStringList(format.extensions)},
                        {QStringLiteral("holds"), format.holds},
                        {QStringLiteral("read"), true},
                        {QStringLiteral("written"), format.isWritten},
                        {QStringLiteral("single_frame"), format.isSingleFrame},
                        {QStringLiteral("checksums"), format.hasChecksums}});
    }
    const QJsonArray raw = QJsonArray::fromStringList(DataObjects::FrameDecoder::frameDecoders().ids());
    return QString::fromUtf8(portableJson(
        QJsonDocument(QJsonObject{{QStringLiteral("files"), files}, {QStringLiteral("raw"), raw}})));
}

} // namespace

void addFormatsCommand(CLI::App& app, Session& /*session*/, Job& job)
{
    auto json = std::make_shared<bool>(false);
    CLI::App* command = app.add_subcommand("formats", "Tell which files are read and written.");
    command->footer("Examples:\n"
                    "  qf formats\n"
                    "  qf formats --json | jq -r '.files[].extensions[]'\n\n");
    addJson(*command, *json);
    command->callback([json, &job] {
        job = [json] {
            Session::print(*json ? formatsJson() : formatsText());
            return Success;
        };
    });
}

} // namespace Qf
