// SPDX-License-Identifier: Apache-2.0
#include "Tools/qf/VerifyCommand.h"

#include "Tools/qf/Arguments.h"
#include "Tools/qf/JsonText.h"
#include "Tools/qf/PlaneValues.h"
#include "Tools/qf/ProgressBar.h"
#include "Tools/qf/ReadAhead.h"
#include "Tools/qf/TextTable.h"

#include "Core/Buffer/KnownFormats.h"
#include "Core/Buffer/NameText.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <CLI/CLI.hpp>

#include <numeric>

namespace Qf
{

namespace
{

struct VerifyOptions
{
    std::vector<std::string> files;
    unsigned int jobs = 1;
    bool json = false;
};

/// What cannot be read, and why. Without a frame it is the whole file, without a component the frame.
struct Damage
{
    std::optional<unsigned int> frame;
    QString component;
    unsigned int z = 0;
    QString reason;
};

struct FileReport
{
    QString path;
    BufferApi::KnownFormat format;
    /// Whether a changed pixel would show.
    bool showsDamage = false;
    unsigned int frames = 0;
    unsigned long long planes = 0;
    unsigned long long bytes = 0;
    std::vector<Damage> damages;
};

/// Does a piece of reading; what fails is damage, a wish to stop passes.
template <typename Work>
void read(FileReport& report, const Damage& where, const Work& work)
{
    Session::stopIfRequested();
    try {
        work();
    } catch (const RTE::Exception& failure) {
        Session::stopIfRequested();
        report.damages.push_back(where);
        report.damages.back().reason = failure.message();
    }
}

void readFrame(FileReport& report, unsigned int number, const BufferApi::I_Frame& frame)
{
    read(report, {number, {}, 0, {}}, [&] { static_cast<void>(frame.GetAttributeList()); });
    forEachPlane(frame, [&](const BufferApi::I_Component& component, unsigned int z, const auto& plane) {
        ++report.planes;
        read(report, {number, BufferApi::nameToText(component.GetName()), z, {}}, [&] {
            static_cast<void>(plane.GetData());
            report.bytes += pixelCount(plane) * BufferApi::GetDataTypeSize(plane.GetDataType());
        });
    });
}

void readFrames(FileReport& report, const FrameInputs& inputs, unsigned int jobs)
{
    report.frames = inputs.frameCount();
    std::vector<unsigned int> numbers(report.frames);
    std::iota(numbers.begin(), numbers.end(), 0U);
    ReadAhead frames(inputs, numbers, jobs);
    ProgressBar progress(QStringLiteral("verifying"), report.frames);
    for (const unsigned int number : numbers) {
        progress.advanceTo(number);
        const BufferApi::I_Frame* frame = nullptr;
        read(report, {number, {}, 0, {}}, [&] { frame = &frames.take(number); });
        if (frame != nullptr) {
            readFrame(report, number, *frame);
        }
    }
}

/// \throws RTE::FileOpenError for a file that is missing or of a foreign kind
FileReport verify(const QString& path, unsigned int jobs)
{
    checkInput(path);
    FileReport report;
    report.path = path;
    report.format = BufferApi::formatOfContent(path);
    std::optional<FrameInputs> inputs;
    read(report, {}, [&] {
        report.showsDamage = BufferApi::showsDamage(path);
        inputs.emplace(QStringList(path));
    });
    if (inputs) {
        readFrames(report, *inputs, jobs);
    }
    return report;
}

QString lineOf(const Damage& damage)
{
    QString where = QStringLiteral("file");
    if (damage.frame) {
        where = QStringLiteral("frame %1").arg(*damage.frame);
    }
    if (!damage.component.isEmpty()) {
        where += QStringLiteral(", %1, z %2").arg(damage.component).arg(damage.z);
    }
    return QStringLiteral("  %1: %2\n").arg(printable(where), printable(damage.reason));
}

QString checksumText(const FileReport& report)
{
    if (report.showsDamage) {
        return QStringLiteral(", all checksums hold");
    }
    return report.format.hasChecksums
               ? QStringLiteral("; parts of the file have no checksums, a change there does not show; "
                                "'qf convert' writes a file that has")
               : QStringLiteral("; the format has no checksums, a changed pixel does not show");
}

QString textOf(const FileReport& report)
{
    const QString path = printable(report.path);
    if (report.damages.empty()) {
        return QStringLiteral("%1: ok, %2, %3, %4 of pixels%5\n")
            .arg(path, report.format.name, counted(report.frames, QStringLiteral("frame")),
                 byteCountText(report.bytes), checksumText(report));
    }
    const QString extent = report.frames == 0
                               ? QStringLiteral("nothing can be read")
                               : QStringLiteral("%1 in %2")
                                     .arg(counted(report.damages.size(), QStringLiteral("failure")),
                                          counted(report.frames, QStringLiteral("frame")));
    QString text = QStringLiteral("%1: damaged, %2\n").arg(path, extent);
    for (const Damage& damage : report.damages) {
        text += lineOf(damage);
    }
    return text;
}

QJsonObject jsonOf(const Damage& damage)
{
    QJsonObject object{{QStringLiteral("reason"), damage.reason}};
    if (damage.frame) {
        object.insert(QStringLiteral("frame"), static_cast<qint64>(*damage.frame));
    }
    if (!damage.component.isEmpty()) {
        object.insert(QStringLiteral("component"), damage.component);
        object.insert(QStringLiteral("z"), static_cast<qint64>(damage.z));
    }
    return object;
}

QJsonObject jsonOf(const FileReport& report)
{
    QJsonArray damages;
    for (const Damage& damage : report.damages) {
        damages.append(jsonOf(damage));
    }
    return {{QStringLiteral("file"), report.path},
            {QStringLiteral("format"), report.format.name},
            {QStringLiteral("checksums"), report.showsDamage},
            {QStringLiteral("ok"), report.damages.empty()},
            {QStringLiteral("frames"), static_cast<qint64>(report.frames)},
            {QStringLiteral("planes"), static_cast<qint64>(report.planes)},
            {QStringLiteral("pixel_bytes"), static_cast<qint64>(report.bytes)},
            {QStringLiteral("damages"), damages}};
}

int verifyAll(const VerifyOptions& options, Session& session)
{
    int worst = Success;
    QJsonArray reports;
    for (const QString& path : toQt(options.files)) {
        session.workOn(path);
        const int code = session.attempt([&] {
            const FileReport report = verify(path, options.jobs);
            if (options.json) {
                reports.append(jsonOf(report));
            } else {
                Session::print(textOf(report));
            }
            return report.damages.empty() ? Success : Trouble;
        });
        if (code != Success && code != Trouble) {
            return code;
        }
        worst = std::max(worst, code);
    }
    session.workOn({});
    if (options.json) {
        Session::print(QString::fromUtf8(portableJson(QJsonDocument(reports))));
    }
    return worst;
}

} // namespace

void addVerifyCommand(CLI::App& app, Session& session, Job& job)
{
    auto options = std::make_shared<VerifyOptions>();
    CLI::App* command = app.add_subcommand("verify", "Read everything in files and tell what is damaged.");
    command->footer("Examples:\n"
                    "  qf verify *.qfi\n"
                    "  qf verify --json run.qfi | jq '.[0].damages'\n\n");
    command->add_option("FILE", options->files, "Files to read")->required()->type_name("");
    addJson(*command, options->json);
    addJobs(*command, options->jobs);
    addQuiet(*command);
    command->callback(
        [options, &session, &job] { job = [options, &session] { return verifyAll(*options, session); }; });
}

} // namespace Qf
