// SPDX-License-Identifier: Apache-2.0
#include "Tools/qf/ConvertCommand.h"

#include "Tools/qf/Arguments.h"
#include "Tools/qf/AttributeTexts.h"
#include "Tools/qf/FileSeries.h"
#include "Tools/qf/FrameSlice.h"
#include "Tools/qf/FrameView.h"
#include "Tools/qf/Losses.h"
#include "Tools/qf/Parallel.h"
#include "Tools/qf/ProgressBar.h"
#include "Tools/qf/ReadAhead.h"

#include "Core/Buffer/KnownFormats.h"
#include "Core/Common/Raise.h"

#include <QFileInfo>

#include <CLI/CLI.hpp>

namespace Qf
{

namespace
{

struct ConvertOptions
{
    /// The last is the output.
    std::vector<std::string> files;
    std::optional<FrameSlice> frames;
    unsigned int jobs = 1;
    bool attributesOfFirst = false;
    bool lossy = false;
    bool uncompressed = false;
    bool force = false;
};

/// "run.png" becomes "run-%04d.png".
QString numbered(const QString& path)
{
    const QString suffix = QLatin1Char('.') + QFileInfo(path).suffix();
    return path.chopped(suffix.size()) + QStringLiteral("-%04d") + suffix;
}

void checkFrameCount(const QString& path, std::size_t frameCount)
{
    const BufferApi::KnownFormat& format = BufferApi::formatOfName(path);
    if (format.isSingleFrame && frameCount != 1) {
        RTE::raise(RTE::FileWriteError(
            QStringLiteral(
                "%1: a %2 file holds one frame, not %3; choose one with --frames, or number the files: %4")
                .arg(path, format.name)
                .arg(frameCount)
                .arg(numbered(path))));
    }
}

/// Refuses files whose buffers have another name or other attributes than the first: one file cannot hold
/// both.
class OneBuffer
{
public:
    void add(const QString& path, const BufferApi::I_Buffer& buffer)
    {
        if (m_firstPath.isEmpty()) {
            m_firstPath = path;
            m_name = buffer.GetName();
            m_attributes = attributeTexts(buffer.GetAttributeList());
            return;
        }
        QString difference = buffer.GetName() == m_name ? QString() : QStringLiteral("the name");
        forEachDifference(m_attributes, attributeTexts(buffer.GetAttributeList()),
                          [&](const QString& name, const QString& /*first*/, const QString& /*other*/) {
                              difference = QStringLiteral("the attribute '%1'").arg(name);
                          });
        if (!difference.isEmpty()) {
            RTE::raise(RTE::FileWriteError(
                QStringLiteral("%1: %2 of the whole file is not as in %3, and the output can hold one; "
                               "--attributes-of-first drops what this file has")
                    .arg(path, difference, m_firstPath)));
        }
    }

private:
    QString m_firstPath;
    QString m_name;
    AttributeTexts m_attributes;
};

class Conversion
{
public:
    Conversion(const ConvertOptions& options, Session& session)
        : m_options(options), m_session(session), m_inputPaths(toQt(options.files)),
          m_output(m_inputPaths.takeLast()), m_exportOptions({{"PackType", options.uncompressed ? 0 : 2}}),
          m_losses(BufferApi::formatOfName(m_output), options.lossy)
    {
    }

    int run()
    {
        if (m_inputPaths.isEmpty()) {
            RTE::raise(UsageError(QStringLiteral("name the files to read and, last, the file to write")));
        }
        const bool isSeries = NumberedFiles::isPattern(m_output);
        checkWritten(m_output);
        if (!isSeries) {
            checkTarget(m_output);
        }
        OneBuffer common;
        const FrameInputs inputs(m_inputPaths, [&](const QString& path, const BufferApi::I_Buffer& buffer) {
            if (!m_options.attributesOfFirst) {
                common.add(path, buffer);
            }
        });
        m_session.workOn(m_inputPaths.size() == 1 ? m_inputPaths.front() : QString());
        const std::vector<unsigned int> numbers = selectedFrames(m_options.frames, inputs.frameCount());
        m_session.workOn({});
        if (isSeries) {
            writeSeries(inputs, numbers);
        } else {
            writeOne(inputs, numbers);
        }
        return Success;
    }

private:
    void checkTarget(const QString& path) const
    {
        checkNotAnInput(path, m_inputPaths);
        checkOutput(path, m_options.force);
    }

    void writeOne(const FrameInputs& inputs, const std::vector<unsigned int>& numbers)
    {
        checkFrameCount(m_output, numbers.size());
        {
            ReadAhead frames(inputs, numbers, m_options.jobs);
            ProgressBar progress(QStringLiteral("converting"), numbers.size());
            const FrameView view(inputs.first(), static_cast<unsigned int>(numbers.size()),
                                 [&](unsigned int index) {
                                     Session::stopIfRequested();
                                     progress.advanceTo(index);
                                     BufferApi::I_Frame& frame = frames.take(index);
                                     m_losses.fit(frame, m_output);
                                     return &frame;
                                 });
            BufferApi::ExportBuffer(&view, m_output, m_exportOptions);
        }
        tell(m_output, numbers.size());
    }

    void writeSeries(const FrameInputs& inputs, const std::vector<unsigned int>& numbers)
    {
        FileSeries files(m_output);
        if (numbers.empty()) {
            RTE::raise(RTE::FileWriteError(QStringLiteral("%1: there are no frames").arg(m_output)));
        }
        for (const unsigned int number : numbers) {
            checkTarget(files.name(number));
        }
        files.begin();
        {
            ProgressBar progress(QStringLiteral("converting"), numbers.size());
            std::mutex mutex;
            unsigned long long done = 0;
            forEachInParallel(numbers.size(), m_options.jobs, [&](std::size_t place) {
                writePart(inputs, numbers[place], files);
                const std::lock_guard lock(mutex);
                progress.advanceTo(++done);
            });
        }
        files.commit(numbers);
        tell(QStringLiteral("%1 to %2").arg(files.name(numbers.front()), files.name(numbers.back())),
             numbers.size());
    }

    void writePart(const FrameInputs& inputs, unsigned int number, const FileSeries& files)
    {
        Session::stopIfRequested();
        const auto frame = inputs.open(number);
        frame->load();
        m_losses.fit(frame->frame(), files.name(number));
        const FrameView view(inputs.first(), 1, [&](unsigned int /*index*/) { return &frame->frame(); });
        const QString part = files.part(number);
        try {
            BufferApi::ExportBuffer(&view, part, m_exportOptions);
        } catch (const RTE::FileWriteError& failure) {
            // The user knows the file by its own name.
            RTE::raise(RTE::FileWriteError(failure.message().replace(part, files.name(number))));
        }
        Session::stopIfRequested();
    }

    void tell(const QString& what, std::size_t frameCount) const
    {
        Session::remark(QStringLiteral("%1: %2, %3\n")
                            .arg(printable(what), BufferApi::formatOfName(m_output).name,
                                 counted(frameCount, QStringLiteral("frame"))));
        if (const QString report = m_losses.report(); !report.isEmpty()) {
            Session::remark(printable(report) + QLatin1Char('\n'));
        }
    }

    const ConvertOptions& m_options;
    Session& m_session;
    QStringList m_inputPaths;
    QString m_output;
    BufferApi::BufferOptions m_exportOptions;
    Losses m_losses;
};

} // namespace

void addConvertCommand(CLI::App& app, Session& session, Job& job)
{
    auto options = std::make_shared<ConvertOptions>();
    CLI::App* command =
        app.add_subcommand("convert", "Write the frames of files into a file of another kind.");
    command->footer("Examples:\n"
                    "  qf convert run.qfi run.tif\n"
                    "  qf convert camera-*.tif run.qfi\n"
                    "  qf convert run.qfi --frames 0:100:2 every-second.qfi\n"
                    "  qf convert run.qfi 'frame-%04d.png'\n"
                    "  qf convert masked.qfi --lossy pixels.tif\n\n");
    command
        ->add_option(
            "FILE", options->files,
            "Files to read, whose frames follow one another, and last the file to write: its extension "
            "decides the format; %d or %04d in its name makes one file of each frame")
        ->required()
        ->type_name("");
    addFrames(*command, options->frames);
    command->add_flag("--attributes-of-first", options->attributesOfFirst,
                      "Take name and attributes of the whole from the first file, whatever the others have");
    command->add_flag(
        "--lossy", options->lossy,
        "Leave out what the output cannot hold, and tell it: masks and other components; for PNG, "
        "pixels of other types become words, cut to 0 to 65535");
    command->add_flag("--uncompressed", options->uncompressed, "Store the pixels as they are");
    addForce(*command, options->force);
    addJobs(*command, options->jobs);
    addQuiet(*command);
    command->callback([options, &session, &job] {
        job = [options, &session] { return Conversion(*options, session).run(); };
    });
}

} // namespace Qf
