// SPDX-License-Identifier: Apache-2.0
#include "Tools/qf/DumpCommand.h"

#include "Tools/qf/Arguments.h"
#include "Tools/qf/PlaneChoice.h"
#include "Tools/qf/PlaneText.h"

#include "Core/Buffer/BufferApi.h"

#include <CLI/CLI.hpp>

namespace Qf
{

namespace
{

struct DumpOptions
{
    std::string file;
    unsigned int frame = 0;
    std::string component;
    unsigned int z = 0;
    QRect region;
    bool scaled = false;
    bool csv = false;
    bool json = false;
    bool raw = false;
};

PlaneForm formOf(const DumpOptions& options)
{
    if (options.json) {
        return PlaneForm::Json;
    }
    if (options.raw) {
        return PlaneForm::Raw;
    }
    return options.csv ? PlaneForm::Csv : PlaneForm::Text;
}

int dump(const DumpOptions& options, Session& session)
{
    const QString path = QString::fromStdString(options.file);
    session.workOn(path);
    checkInput(path);
    const std::unique_ptr<BufferApi::I_Buffer> buffer(BufferApi::ImportBuffer(path, {}));
    const BufferApi::I_Frame& frame = frameOf(*buffer, options.frame);
    const BufferApi::I_Component& component = componentOf(frame, QString::fromStdString(options.component));
    const BufferApi::I_PlaneBase& plane = planeOf(component, options.z);
    const PlaneExcerpt excerpt{
        path, options.frame, component, options.z, plane, regionOf(plane, options.region), options.scaled};
    writePlane(excerpt, formOf(options));
    return Success;
}

} // namespace

void addDumpCommand(CLI::App& app, Session& session, Job& job)
{
    auto options = std::make_shared<DumpOptions>();
    CLI::App* command = app.add_subcommand("dump", "Print the values of a plane.");
    command->footer("Examples:\n"
                    "  qf dump run.qfi --frame 1 --region 8x4+512+416\n"
                    "  qf dump run.qfv --component V --scaled --csv > v.csv\n"
                    "  qf dump run.qfi --raw | sha256sum\n\n");
    command->add_option("FILE", options->file, "The file with the frame")->required()->type_name("");
    addIndex(*command, "--frame", "Which frame, counted from 0", options->frame);
    command
        ->add_option("--component", options->component,
                     "Which component, as 'qf info -v' names it (default: the pixels)")
        ->type_name("NAME");
    addIndex(*command, "--z", "Which plane of a volume, counted from 0", options->z);
    addParsed(
        *command, "--region", "Only this part, in pixels: width, height, first column, first row",
        [options](const std::string& text) { return readRegion(text, options->region); }, "WxH+X+Y");
    command->add_flag("--scaled", options->scaled,
                      "Physical values: the component's factor and offset applied");
    CLI::Option* csv = command->add_flag("--csv", options->csv, "Commas between the values, no blanks");
    CLI::Option* json = command->add_flag(
        "--json", options->json, "A JSON object with type, size, unit and the rows; null is no number");
    command->add_flag("--raw", options->raw, "Bytes as stored, little endian; of colours red, green, blue")
        ->excludes(csv)
        ->excludes(json);
    csv->excludes(json);
    command->callback(
        [options, &session, &job] { job = [options, &session] { return dump(*options, session); }; });
}

} // namespace Qf
