// SPDX-License-Identifier: Apache-2.0
#include "Tools/qf/PlotCommand.h"

#include "Tools/qf/Arguments.h"
#include "Tools/qf/PlaneChoice.h"
#include "Tools/qf/Plot/FramePlot.h"
#include "Tools/qf/Plot/PlotPainter.h"

#include "Core/Buffer/BufferApi.h"
#include "Core/Common/Raise.h"

#include <QBuffer>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImageWriter>
#include <QSaveFile>

#include <CLI/CLI.hpp>

namespace Qf
{

namespace
{

struct PlotOptions
{
    std::string file;
    std::string output;
    unsigned int frame = 0;
    std::string component;
    unsigned int z = 0;
    QRect region;
    std::string colorMap;
    std::optional<ValueRange> range;
    std::string title;
    int width = 1000;
    bool force = false;
};

std::string readColorRange(const std::string& text, std::optional<ValueRange>& range)
{
    ValueRange read;
    const std::string problem = readRange(text, read.low, read.high);
    range = read;
    return problem;
}

/// Fonts need an application; the offscreen platform gives them without a display.
class Fonts
{
public:
    Fonts()
    {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qputenv("LC_ALL", "C.UTF-8");
        m_application.emplace(m_count, m_arguments);
    }

private:
    int m_count = 1;
    char m_name[3] = "qf";
    char* m_arguments[2] = {m_name, nullptr};
    std::optional<QGuiApplication> m_application;
};

QByteArray formatOf(const QString& path)
{
    const QByteArray format = QFileInfo(path).suffix().toLower().toLatin1();
    const QList<QByteArray> known = QImageWriter::supportedImageFormats();
    if (!known.contains(format)) {
        RTE::raise(UsageError(QStringLiteral("%1: no picture format; end the name in .png").arg(path)));
    }
    return format;
}

/// A picture without colours takes a third of the bytes and looks the same.
QImage compact(const QImage& picture)
{
    return picture.allGray() ? picture.convertToFormat(QImage::Format_Grayscale8) : picture;
}

[[noreturn]] void refuse(const QString& path, const QString& reason)
{
    RTE::raise(RTE::FileWriteError(QStringLiteral("%1: cannot write: %2").arg(path, reason)));
}

/// The whole picture or nothing; an old one stays until the new one is complete.
void save(const QImage& picture, const QString& path, const QByteArray& format)
{
    // The coders know no reason when a device fails.
    QBuffer encoded;
    QImageWriter writer(&encoded, format);
    if (!writer.write(compact(picture))) {
        refuse(path, writer.errorString());
    }
    Session::stopIfRequested();
    QSaveFile file(path);
    // What fails to leave Qt's buffer at the end, it does not tell.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) ||
        file.write(encoded.data()) != encoded.size() || !file.commit()) {
        refuse(path, file.errorString());
    }
}

QString titleOf(const PlotOptions& options, unsigned int frameCount)
{
    if (!options.title.empty()) {
        return QString::fromStdString(options.title);
    }
    const QString name = QFileInfo(QString::fromStdString(options.file)).fileName();
    return frameCount == 1 ? name : QStringLiteral("%1, frame %2").arg(name).arg(options.frame);
}

int plot(const PlotOptions& options, Session& session)
{
    const QString input = QString::fromStdString(options.file);
    const QString output = QString::fromStdString(options.output);
    const QByteArray format = formatOf(output);
    checkNotAnInput(output, {input});
    checkOutput(output, options.force);
    checkInput(input);
    session.workOn(input);
    const std::unique_ptr<BufferApi::I_Buffer> buffer(BufferApi::ImportBuffer(input, {}));
    const FramePlotOptions how{
        QString::fromStdString(options.component), options.z,     options.region,
        QString::fromStdString(options.colorMap),  options.range, titleOf(options, buffer->GetFrameCount())};
    const Plot drawn = plotOfFrame(frameOf(*buffer, options.frame), how);
    session.workOn(output);
    const Fonts fonts;
    const QImage picture = paintPlot(drawn, options.width);
    save(picture, output, format);
    Session::remark(QStringLiteral("%1: %2x%3 pixels\n")
                        .arg(printable(output))
                        .arg(picture.width())
                        .arg(picture.height()));
    return Success;
}

} // namespace

void addPlotCommand(CLI::App& app, Session& session, Job& job)
{
    auto options = std::make_shared<PlotOptions>();
    CLI::App* command = app.add_subcommand("plot", "Draw a frame as a picture with axes and colour bar.");
    command->footer("Examples:\n"
                    "  qf plot run.qfi --output picture.png\n"
                    "  qf plot run.qfi --frame 1 --colormap viridis --range 60:1500 -o picture.png\n\n");
    command->add_option("FILE", options->file, "The file with the frame")->required()->type_name("");
    command->add_option("-o,--output", options->output, "The picture to write, such as picture.png")
        ->required()
        ->type_name("FILE");
    addIndex(*command, "--frame", "Which frame, counted from 0", options->frame);
    command
        ->add_option("--component", options->component,
                     "What to draw, as 'qf info -v' names it (default: the pixels)")
        ->type_name("NAME");
    addIndex(*command, "--z", "Which plane of a volume, counted from 0", options->z);
    addParsed(
        *command, "--region", "Only this part, in pixels: width, height, first column, first row",
        [options](const std::string& text) { return readRegion(text, options->region); }, "WxH+X+Y");
    command
        ->add_option(
            "--colormap", options->colorMap,
            "Colours (default: its own for a mosaic, gray for integers, viridis for floating-point numbers)")
        ->type_name("NAME")
        ->check(CLI::IsMember(toStd(ColorMap::names())));
    addParsed(
        *command, "--range", "Values of the first and last colour (default: percentiles 0.5 and 99.5)",
        [options](const std::string& text) { return readColorRange(text, options->range); }, "LOW:HIGH");
    command->add_option("--title", options->title, "Above the picture (default: file and frame)");
    command->add_option("--width", options->width, "Width of the picture in pixels, at most (default: 1000)")
        ->type_name("PIXELS")
        ->check(CLI::Range(200, 10000));
    addForce(*command, options->force);
    addQuiet(*command);
    command->callback(
        [options, &session, &job] { job = [options, &session] { return plot(*options, session); }; });
}

} // namespace Qf
