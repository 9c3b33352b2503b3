// SPDX-License-Identifier: Apache-2.0
#include "Tests/qf/QfFolder.h"

#include "Core/Buffer/KnownFormats.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

namespace
{

/// What qf tells of itself.
class HelpText : public QfFolder
{
protected:
    /// What bash offers for a line, whose last word is being typed.
    [[nodiscard]] QStringList completed(const QString& line) const
    {
        const QString script =
            QStringLiteral(
                "eval \"$(%1 completion)\"; COMP_WORDS=(%2); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _qf; "
                "printf '%s\\n' \"${COMPREPLY[@]}\"")
                .arg(QStringLiteral(QF_PROGRAM), line);
        const auto run = TestSupport::runProgram("bash", {"-c", script}, path("."));
        EXPECT_EQ(run.err, QString());
        return run.out.split('\n', Qt::SkipEmptyParts);
    }
};

TEST_F(HelpText, completesCommandsOptionsAndValues)
{
    EXPECT_EQ(completed("qf d"), (QStringList{"decode", "diff", "dump"}));
    EXPECT_EQ(completed("qf --v"), QStringList{"--version"});
    EXPECT_EQ(completed("qf dump run.qfi --r"), (QStringList{"--region", "--raw"}));
    EXPECT_EQ(completed("qf plot run.qfi --colormap v"), QStringList{"viridis"});
    EXPECT_EQ(completed("qf decode -f mono-12pm"), QStringList{"mono-12pmsb"});
    // Files, which the shell itself offers.
    EXPECT_EQ(completed("qf info r"), QStringList());
    EXPECT_EQ(completed("qf decode --output d"), QStringList());
}

TEST_F(HelpText, hasEachOptionOfEachCommandInTheManual)
{
    const QString manual = succeed("manual").out;
    const QRegularExpression option("^  ((?:-\\w,)?--[a-z-]+)", QRegularExpression::MultilineOption);
    int options = 0;
    for (const char* command : {"convert", "decode", "diff", "dump", "formats", "info", "plot", "verify"}) {
        const qsizetype start = manual.indexOf(QStringLiteral(".SS qf %1\n").arg(command));
        ASSERT_GE(start, 0) << command;
        const QString section = manual.mid(start, manual.indexOf("\n.S", start + 1) - start);
        auto matches = option.globalMatch(succeed(QStringLiteral("%1 --help").arg(command)).out);
        for (; matches.hasNext(); ++options) {
            QString name = matches.next().captured(1).section(',', -1);
            EXPECT_TRUE(section.contains("\\fB" + name.replace('-', "\\-") + "\\fR"))
                << command << ' ' << name.toStdString();
        }
    }
    EXPECT_GT(options, 50);
    // What a line of a troff text may not begin with unless it is meant for troff.
    EXPECT_FALSE(manual.contains(QRegularExpression("^(\\.(?!TH|SH|SS|TP|PP|B|I|nf|fi|\\\\\")|')",
                                                    QRegularExpression::MultilineOption)));
}

TEST_F(HelpText, listsTheFormatsOfTheLibrary)
{
    const QString text = succeed("formats").out;
    const auto json = QJsonDocument::fromJson(succeed("formats --json").out.toUtf8());
    const QJsonArray files = json["files"].toArray();
    const auto& formats = BufferApi::knownFormats();
    ASSERT_EQ(static_cast<std::size_t>(files.size()), formats.size());
    for (std::size_t i = 0; i < formats.size(); ++i) {
        const QJsonObject file = files[static_cast<qsizetype>(i)].toObject();
        EXPECT_EQ(file["name"].toString(), formats[i].name);
        EXPECT_EQ(file["written"].toBool(), formats[i].isWritten);
        EXPECT_EQ(file["extensions"].toArray(), QJsonArray::fromStringList(formats[i].extensions));
        EXPECT_TRUE(text.contains(formats[i].holds));
    }
    EXPECT_TRUE(json["raw"].toArray().contains("mono-12p"));
    EXPECT_TRUE(text.contains("\n  mono-12p\n"));
}

} // namespace
