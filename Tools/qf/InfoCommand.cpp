// SPDX-License-Identifier: Apache-2.0
#include "Tools/qf/InfoCommand.h"

#include "Tools/qf/Arguments.h"
#include "Tools/qf/InfoText.h"

#include "Core/Buffer/BufferApi.h"

#include <QFileInfo>

#include <CLI/CLI.hpp>

namespace Qf
{

namespace
{

struct InfoOptions
{
    std::vector<std::string> files;
    bool verbose = false;
    bool stats = false;
    bool hash = false;
    bool json = false;
};

FileInfo lookInto(const QString& path, const InfoOptions& options)
{
    checkInput(path);
    const std::unique_ptr<BufferApi::I_Buffer> buffer(BufferApi::ImportBuffer(path, {}));
    FileInfo info{path, QFileInfo(path).size(), summarize(*buffer), {}, {}};
    if (options.stats) {
        info.statistics = statistics(*buffer);
    }
    if (options.hash) {
        info.hash = planesHash(*buffer);
    }
    return info;
}

/// A file that fails is told and passed over; the others are still shown.
int showInfo(const InfoOptions& options, Session& session)
{
    std::vector<FileInfo> infos;
    int worst = Success;
    for (const QString& path : toQt(options.files)) {
        session.workOn(path);
        const int code = session.attempt([&] {
            infos.push_back(lookInto(path, options));
            return Success;
        });
        if (code == Interrupted) {
            return code;
        }
        worst = std::max(worst, code);
    }
    session.workOn({});
    Session::print(options.json ? infoJson(infos) : infoText(infos, options.verbose));
    return worst;
}

} // namespace

void addInfoCommand(CLI::App& app, Session& session, Job& job)
{
    auto options = std::make_shared<InfoOptions>();
    CLI::App* command = app.add_subcommand("info", "Tell what files hold, one line for each.");
    command->footer("Examples:\n"
                    "  qf info *.qfi\n"
                    "  qf info -v --stats run.qfi\n"
                    "  qf info --json run.qfi | jq '.[0].frames'\n\n");
    command->add_option("FILE", options->files, "Files to look into")->required()->type_name("");
    command->add_flag("-v,--verbose", options->verbose, "Attributes, scales and components too");
    command->add_flag("--stats", options->stats,
                      "Minimum, maximum, mean and deviation of each component's values");
    command->add_flag("--hash", options->hash, "SHA-256 of all decoded planes, one after the other");
    command->add_flag("--json", options->json, "Everything as JSON, for programs");
    command->callback(
        [options, &session, &job] { job = [options, &session] { return showInfo(*options, session); }; });
}

} // namespace Qf
