// SPDX-License-Identifier: Apache-2.0
#include "Tools/qf/InfoCommand.h"

#include "Tools/qf/Arguments.h"
#include "Tools/qf/FrameSlice.h"
#include "Tools/qf/InfoText.h"
#include "Tools/qf/ProgressBar.h"
#include "Tools/qf/ReadAhead.h"

#include "Core/Buffer/KnownFormats.h"

#include <QFileInfo>

#include <CLI/CLI.hpp>

namespace Qf
{

namespace
{

struct InfoOptions
{
    std::vector<std::string> files;
    std::optional<FrameSlice> frames;
    unsigned int jobs = 1;
    bool verbose = false;
    bool stats = false;
    bool hash = false;
    bool json = false;
};

/// Statistics and hash, from one reading of the planes.
void readPlanes(FileInfo& info, const FrameInputs& inputs, const std::vector<unsigned int>& numbers,
                const InfoOptions& options)
{
    ReadAhead frames(inputs, numbers, options.jobs);
    ProgressBar progress(QStringLiteral("reading"), numbers.size());
    PlanesHash hash;
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        progress.advanceTo(i);
        const BufferApi::I_Frame& frame = frames.take(i);
        if (options.stats) {
            const std::vector<Statistics> values = statistics(numbers[i], frame);
            info.statistics.insert(info.statistics.end(), values.begin(), values.end());
        }
        if (options.hash) {
            hash.add(frame);
        }
    }
    info.hash = options.hash ? hash.text() : QString();
}

FileInfo lookInto(const QString& path, const InfoOptions& options)
{
    checkInput(path);
    const FrameInputs inputs({path});
    const std::vector<unsigned int> numbers = selectedFrames(options.frames, inputs.frameCount());
    FileInfo info{path,
                  QFileInfo(path).size(),
                  BufferApi::formatOfContent(path).name,
                  summarize(inputs.first(), numbers),
                  {},
                  {}};
    if (options.stats || options.hash) {
        readPlanes(info, inputs, numbers, options);
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
        if (code != Success && code != Trouble) {
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
                    "  qf info --hash --frames 0:100:2 run.qfi\n"
                    "  qf info --json run.qfi | jq '.[0].frames'\n\n");
    command->add_option("FILE", options->files, "Files to look into")->required()->type_name("");
    command->add_flag("-v,--verbose", options->verbose, "Attributes, scales and components too");
    command->add_flag("--stats", options->stats,
                      "Minimum, maximum, mean and deviation of each component's values");
    command->add_flag("--hash", options->hash, "SHA-256 of all decoded planes, one after the other");
    addJson(*command, options->json);
    addFrames(*command, options->frames);
    addJobs(*command, options->jobs);
    addQuiet(*command);
    command->callback(
        [options, &session, &job] { job = [options, &session] { return showInfo(*options, session); }; });
}

} // namespace Qf
