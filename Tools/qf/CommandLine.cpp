// SPDX-License-Identifier: Apache-2.0
#include "Tools/qf/CommandLine.h"

#include "Tools/qf/ConvertCommand.h"
#include "Tools/qf/DecodeCommand.h"
#include "Tools/qf/DiffCommand.h"
#include "Tools/qf/DumpCommand.h"
#include "Tools/qf/FormatsCommand.h"
#include "Tools/qf/HelpText.h"
#include "Tools/qf/InfoCommand.h"
#include "Tools/qf/PlotCommand.h"
#include "Tools/qf/VerifyCommand.h"

#include <QLoggingCategory>

#include <CLI/CLI.hpp>

#include <algorithm>
#include <sstream>

namespace Qf
{

namespace
{

void setUp(CLI::App& app)
{
    app.formatter(helpFormatter());
    app.footer("Examples:\n"
               "  qf decode --format mono-12p --size 1280x1024 --output run.qfi camera.raw\n"
               "  qf info -v run.qfi\n"
               "  qf plot run.qfi --frame 1 --output picture.png\n"
               "  qf convert run.qfi run.tif\n"
               "  qf verify *.qfi && qf diff run.qfi run.tif\n"
               "  qf decode --help\n\n");
    app.set_version_flag("--version", "qf " DATAOBJECTS_VERSION);
    app.require_subcommand(0, 1);
    app.failure_message([](const CLI::App* failed, const CLI::Error& error) {
        const CLI::App* shown =
            failed->get_subcommands().empty() ? failed : failed->get_subcommands().front();
        const std::string name = shown == failed ? "qf" : "qf " + shown->get_name();
        return name + ": " + error.what() + "\nSee '" + name + " --help'.\n";
    });
}

/// The parser's own exceptions carry the help and version texts too; its many exit codes become one.
int reportParsing(const CLI::App& app, const CLI::ParseError& result)
{
    std::ostringstream help;
    std::ostringstream error;
    const int code = app.exit(result, help, error);
    Session::say(QString::fromStdString(error.str()));
    const auto print = [&] {
        Session::print(QString::fromStdString(help.str()));
        return Success;
    };
    return code == 0 ? Session().attempt(print) : Usage;
}

/// Commands that print what the parser knows of all the others.
void addTextCommand(CLI::App& app, Job& job, const std::string& name, const std::string& description,
                    const std::string& examples, std::string (*textOf)(const CLI::App&))
{
    CLI::App* command = app.add_subcommand(name, description);
    command->footer(examples);
    command->callback([&app, &job, textOf] {
        job = [&app, textOf] {
            Session::write(textOf(app));
            return Success;
        };
    });
}

void addCommands(CLI::App& app, Session& session, Job& job)
{
    addConvertCommand(app, session, job);
    addDecodeCommand(app, session, job);
    addDiffCommand(app, session, job);
    addDumpCommand(app, session, job);
    addFormatsCommand(app, session, job);
    addInfoCommand(app, session, job);
    addPlotCommand(app, session, job);
    addVerifyCommand(app, session, job);
    addTextCommand(app, job, "completion", "Print what bash needs to complete commands and options.",
                   "Examples:\n"
                   "  qf completion > ~/.local/share/bash-completion/completions/qf\n\n",
                   &bashCompletion);
    addTextCommand(app, job, "manual", "Print the manual page.",
                   "Examples:\n"
                   "  qf manual | man -l -\n\n",
                   &manualPage);
}

QString commandNames(const CLI::App& app)
{
    QStringList names;
    for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; })) {
        names << QString::fromStdString(command->get_name());
    }
    return names.join(QStringLiteral(", "));
}

/// The arguments in the order in which the parser wants them, the last one first. Behind "--" all are names
/// of files, also those that begin like options.
std::vector<std::string> reversedArguments(int argc, const char* const* argv)
{
    std::vector<std::string> arguments;
    bool areNames = false;
    for (const char* const* argument = argv + 1; argument < argv + argc; ++argument) {
        const std::string text(*argument);
        if (!areNames && text == "--") {
            areNames = true;
        } else {
            arguments.push_back(areNames && text.starts_with('-') ? std::string("./").append(text) : text);
        }
    }
    std::reverse(arguments.begin(), arguments.end());
    return arguments;
}

/// The first argument that is no UTF-8, null if all are: its file could neither be found nor named.
const char* findForeignText(int argc, const char* const* argv)
{
    const char* const* end = argv + argc;
    const char* const* found = std::find_if(
        argv + 1, end, [](const char* text) { return QString::fromUtf8(text).toUtf8() != text; });
    return found == end ? nullptr : *found;
}

} // namespace

int runCommandLine(int argc, const char* const* argv)
{
    // A failure is told once, in the error message, and Qt's hints on the desktop do not concern the users of
    // qf; who wants to read them sets QT_LOGGING_RULES.
    QLoggingCategory::setFilterRules(QStringLiteral("rte.exception=false\ndefault.warning=false"));
    Session session;
    Job job;
    if (const char* text = findForeignText(argc, argv)) {
        session.reportError(
            QStringLiteral("'%1' is not UTF-8; rename the file").arg(QString::fromUtf8(text)));
        return Usage;
    }
    CLI::App app(
        "Frames of image-based flow and particle measurement: decode, convert, look into, compare, draw.",
        "qf");
    setUp(app);
    addCommands(app, session, job);
    try {
        app.parse(reversedArguments(argc, argv));
    } catch (const CLI::ParseError& result) {
        return reportParsing(app, result);
    }
    if (!job) {
        session.reportError(
            QStringLiteral("name a command: %1; 'qf --help' shows examples").arg(commandNames(app)));
        return Usage;
    }
    session.setCommand(QStringLiteral("qf ") +
                       QString::fromStdString(app.get_subcommands().front()->get_name()));
    return session.attempt(job);
}

} // namespace Qf
