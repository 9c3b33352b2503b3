// SPDX-License-Identifier: Apache-2.0
#include "Tools/qf/Arguments.h"

#include "Tools/qf/FrameSlice.h"
#include "Tools/qf/Parallel.h"
#include "Tools/qf/Session.h"

#include "Core/Buffer/KnownFormats.h"
#include "Core/Common/Raise.h"

#include <QFileInfo>

#include <CLI/CLI.hpp>

#include <cmath>
#include <limits>

namespace Qf
{

std::string readSize(const std::string& text, QSize& size)
{
    const std::size_t cross = text.find_first_of("xX");
    const std::string_view view(text);
    int width = 0;
    int height = 0;
    if (cross == std::string::npos || !readWhole(view.substr(0, cross), width) ||
        !readWhole(view.substr(cross + 1), height) || width < 1 || height < 1) {
        return "'" + text + "' is no size; write width x height in pixels, such as 1280x1024";
    }
    if (static_cast<long long>(width) * height > std::numeric_limits<unsigned int>::max()) {
        return "'" + text + "' has more pixels than a frame can hold (4294967295)";
    }
    size = QSize(width, height);
    return {};
}

std::string readRegion(const std::string& text, QRect& region)
{
    const std::size_t plus = text.find('+');
    const std::size_t second = text.find('+', std::min(plus, text.size() - 1) + 1);
    const std::string_view view(text);
    QSize size;
    int x = 0;
    int y = 0;
    if (second == std::string::npos || !readSize(text.substr(0, plus), size).empty() ||
        !readWhole(view.substr(plus + 1, second - plus - 1), x) || !readWhole(view.substr(second + 1), y) ||
        x < 0 || y < 0 || x > std::numeric_limits<int>::max() - size.width() ||
        y > std::numeric_limits<int>::max() - size.height()) {
        return "'" + text +
               "' is no region; write width x height + first column + first row, such as 256x192+512+416";
    }
    region = QRect(QPoint(x, y), size);
    return {};
}

std::string readRange(const std::string& text, double& low, double& high)
{
    const std::size_t colon = text.find(':');
    const std::string_view view(text);
    if (colon == std::string::npos || !readWhole(view.substr(0, colon), low) ||
        !readWhole(view.substr(colon + 1), high) || !std::isfinite(low) || !std::isfinite(high) ||
        !(low < high)) {
        return "'" + text +
               "' is no range; write lowest:highest in the values of the colour bar, such as 60:1500";
    }
    return {};
}

std::string readLength(const std::string& text, double& length, QString& unit)
{
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, length);
    unit = QString::fromUtf8(result.ptr, end - result.ptr).trimmed();
    if (result.ec != std::errc() || !std::isfinite(length) || !(length > 0.0) || unit.isEmpty() ||
        !unit.front().isLetter()) {
        return "'" + text + "' is no length with its unit; write it like 0.02mm";
    }
    return {};
}

CLI::Option* addParsed(CLI::App& app, const std::string& name, const std::string& description,
                       const std::function<std::string(const std::string&)>& reader, const std::string& type)
{
    const CLI::Validator check([reader](std::string& text) { return reader(text); }, "");
    return app
        .add_option_function<std::string>(
            name, [](const std::string&) {}, description)
        ->type_name(type)
        ->check(check);
}

void addIndex(CLI::App& app, const std::string& name, const std::string& description, unsigned int& index)
{
    const auto read = [&index](const std::string& text) {
        return readWhole(text, index) ? std::string() : "'" + text + "' is no number that counts from 0";
    };
    addParsed(app, name, description, read, "N");
}

void addForce(CLI::App& command, bool& force)
{
    command.add_flag("--force", force, "Replace an existing file");
}

void addFrames(CLI::App& command, std::optional<FrameSlice>& frames)
{
    addParsed(
        command, "--frames", "Only these frames: START:STOP:STEP as in Python, or the number of one",
        [&frames](const std::string& text) { return readFrames(text, frames.emplace()); }, "SLICE");
}

void addJobs(CLI::App& command, unsigned int& jobs)
{
    jobs = defaultJobs();
    command
        .add_option("-j,--jobs", jobs, "Threads that work at a time (default: one per processor, at most 8)")
        ->type_name("N")
        ->check(CLI::Range(1, 256));
}

void addJson(CLI::App& command, bool& json)
{
    command.add_flag("--json", json, "Everything as JSON, for programs");
}

void addQuiet(CLI::App& command)
{
    command.add_flag_callback(
        "-q,--quiet", [] { Session::beQuiet(); }, "No talk and no progress on stderr");
}

QStringList toQt(const std::vector<std::string>& texts)
{
    QStringList result;
    for (const std::string& text : texts) {
        result << QString::fromStdString(text);
    }
    return result;
}

std::vector<std::string> toStd(const QStringList& texts)
{
    std::vector<std::string> result;
    for (const QString& text : texts) {
        result.push_back(text.toStdString());
    }
    return result;
}

QString counted(unsigned long long count, const QString& noun)
{
    return QStringLiteral("%1 %2%3").arg(count).arg(noun, count == 1 ? QString() : QStringLiteral("s"));
}

QString noFrameText(const QString& number, unsigned int frameCount)
{
    return QStringLiteral("no frame %1; frames count from 0 and there %2")
        .arg(number, frameCount == 1 ? QStringLiteral("is 1") : QStringLiteral("are %1").arg(frameCount));
}

void checkWritten(const QString& path)
{
    if (path == QLatin1String("-")) {
        RTE::raise(UsageError(QStringLiteral("frames are not written to the standard output; name a file")));
    }
    const BufferApi::KnownFormat& format = BufferApi::formatOfName(path);
    if (!format.isWritten) {
        RTE::raise(UsageError(QStringLiteral("%1: %2 files are only read; end the name in .qfi, .tif or .png")
                                  .arg(path, format.name)));
    }
}

void checkNotAnInput(const QString& outputPath, const QStringList& inputs)
{
    const QFileInfo output(outputPath);
    for (const QString& input : inputs) {
        if (output.exists() && QFileInfo(input) == output) {
            RTE::raise(UsageError(
                QStringLiteral("%1: the output is also an input; name another output").arg(input)));
        }
    }
}

void checkInput(const QString& path)
{
    const QFileInfo file(path);
    if (!file.exists()) {
        RTE::raise(RTE::FileOpenError(QStringLiteral("%1: no such file; check the name").arg(path)));
    }
    if (file.isDir()) {
        RTE::raise(RTE::FileOpenError(QStringLiteral("%1: is a folder; name a file in it").arg(path)));
    }
}

void checkOutput(const QString& path, bool force)
{
    const QFileInfo file(path);
    const QFileInfo folder(file.absolutePath());
    QString problem;
    if (file.isDir()) {
        problem = QStringLiteral("is a folder; name a file in it");
    } else if (!folder.isDir()) {
        problem = QStringLiteral("the folder %1 does not exist; create it first").arg(file.path());
    } else if (!folder.isWritable()) {
        problem = QStringLiteral("no permission to write to the folder %1").arg(file.path());
    } else if (file.exists() && !force) {
        problem = QStringLiteral("the file exists already; choose another name, or --force to replace it");
    }
    if (!problem.isEmpty()) {
        RTE::raise(RTE::FileWriteError(QStringLiteral("%1: %2").arg(path, problem)));
    }
}

} // namespace Qf
