// SPDX-License-Identifier: Apache-2.0
#include "Tools/qf/DecodeCommand.h"

#include "Tools/qf/Arguments.h"
#include "Tools/qf/ProgressBar.h"
#include "Tools/qf/RawFrameReader.h"

#include "Core/Buffer/BufferApi.h"
#include "Core/Buffer/FrameStream.h"
#include "Core/Common/Raise.h"
#include "Core/DataObjects/FrameDecoders/FrameDecoders.h"

#include <CLI/CLI.hpp>

#include <algorithm>

namespace Qf
{

namespace
{

using DataObjects::FrameDecoder::frameDecoders;
using DataObjects::FrameDecoder::I_FrameDecoder;

struct DecodeOptions
{
    std::vector<std::string> files;
    std::string format;
    QSize size;
    std::string output;
    double pixelSize = 0.0;
    QString unit;
    bool uncompressed = false;
    bool force = false;
};

/// A file of the name "-" is called "./-".
QStringList rawFiles(const DecodeOptions& options)
{
    QStringList files = toQt(options.files);
    std::replace(files.begin(), files.end(), QStringLiteral("-"), QStringLiteral("/dev/stdin"));
    return files;
}

std::string checkFormat(const std::string& id)
{
    if (frameDecoders().exists(QString::fromStdString(id))) {
        return {};
    }
    return "'" + id + "' is no known format; known are " +
           frameDecoders().ids().join(QStringLiteral(", ")).toStdString();
}

/// As the help shows sets of values, from which the shell completes them too.
std::string knownFormats()
{
    return "{" + frameDecoders().ids().join(QLatin1Char(',')).toStdString() + "}";
}

void setPixelSize(BufferApi::I_Frame& frame, const DecodeOptions& options)
{
    const auto scale = [&](const Zt::LinearScale& old) {
        return Zt::LinearScale(options.pixelSize, 0.0, options.unit, old.getDescription());
    };
    frame.SetScaleX(scale(frame.GetScaleX()));
    frame.SetScaleY(scale(frame.GetScaleY()));
}

/// The frame takes the pixels over without a copy.
std::unique_ptr<BufferApi::I_Frame> makeFrame(DataObjects::FrameData pixels, const DecodeOptions& options)
{
    const auto width = static_cast<unsigned int>(pixels.width());
    const auto height = static_cast<unsigned int>(pixels.height());
    std::unique_ptr<unsigned short[]> words(pixels.release());
    std::unique_ptr<BufferApi::I_Frame> frame(
        BufferApi::CreateImageFrameWithPlaneMemory(BufferApi::DT_WORD, width, height, words.get()));
    words.release();
    if (options.pixelSize > 0.0) {
        setPixelSize(*frame, options);
    }
    return frame;
}

/// A stream whose file goes with it unless it is kept.
struct DiscardedStream
{
    DiscardedStream(const QString& path, const BufferApi::BufferOptions& options)
        : stream(path, options, BufferApi::FrameStream::Appearance::Finish)
    {
    }
    DiscardedStream(const DiscardedStream&) = delete;
    DiscardedStream& operator=(const DiscardedStream&) = delete;
    ~DiscardedStream()
    {
        if (!isKept) {
            stream.discard();
        }
    }

    BufferApi::FrameStream stream;
    bool isKept = false;
};

class Decoding
{
public:
    Decoding(const DecodeOptions& options, Session& session)
        : m_options(options), m_session(session), m_format(QString::fromStdString(options.format)),
          m_output(QString::fromStdString(options.output)), m_files(rawFiles(options)),
          m_sizeText(QStringLiteral("%1x%2").arg(options.size.width()).arg(options.size.height())),
          m_decoder(std::move(*frameDecoders().create(m_format)))
    {
    }

    int run()
    {
        checkWritten(m_output);
        checkNotAnInput(m_output, m_files);
        checkOutput(m_output, m_options.force);
        m_session.workOn(QStringLiteral("--size ") + m_sizeText);
        const auto frameSize = m_decoder->encodedSize(m_options.size);
        m_session.workOn({});
        RawFrameReader reader(m_files, frameSize,
                              QStringLiteral("one %1 frame of %2").arg(m_format, m_sizeText));
        const unsigned long long frames = decode(reader);
        Session::remark(QStringLiteral("%1: %2 of %3\n")
                            .arg(printable(m_output), counted(frames, QStringLiteral("frame")), m_sizeText));
        return Success;
    }

private:
    /// Writes each frame before the next is read. Until all are written the output has no name; one that
    /// failed is removed, one that was interrupted keeps what it has.
    [[nodiscard]] unsigned long long decode(RawFrameReader& reader)
    {
        DiscardedStream output(m_output, {{"PackType", m_options.uncompressed ? 0 : 2}});
        const bool isComplete = appendAll(reader, output.stream);
        m_session.workOn(m_output);
        const unsigned long long frames = output.stream.frameCount();
        if (isComplete || frames > 0) {
            output.stream.finish();
            output.isKept = true;
        }
        if (!isComplete) {
            RTE::raise(InterruptedError(frames == 0
                                            ? QStringLiteral("interrupted")
                                            : QStringLiteral("interrupted; %1 was written with the first %2")
                                                  .arg(m_output, counted(frames, QStringLiteral("frame")))));
        }
        return frames;
    }

    /// \returns false when the user asked to stop
    [[nodiscard]] bool appendAll(RawFrameReader& reader, BufferApi::FrameStream& stream)
    {
        ProgressBar progress(QStringLiteral("decoding"), reader.frameCount());
        try {
            for (auto bytes = reader.read(); !bytes.empty(); bytes = reader.read()) {
                Session::stopIfRequested();
                m_session.workOn(reader.fileName());
                const auto frame = makeFrame(m_decoder->decode(bytes, m_options.size), m_options);
                m_session.workOn(m_output);
                stream.append(*frame);
                progress.advanceTo(stream.frameCount());
            }
            return !Session::isStopRequested();
        } catch (const InterruptedError&) {
            return false;
        }
    }

    const DecodeOptions& m_options;
    Session& m_session;
    QString m_format;
    QString m_output;
    QStringList m_files;
    QString m_sizeText;
    std::unique_ptr<I_FrameDecoder> m_decoder;
};

} // namespace

void addDecodeCommand(CLI::App& app, Session& session, Job& job)
{
    auto options = std::make_shared<DecodeOptions>();
    CLI::App* command = app.add_subcommand("decode", "Decode raw camera bytes into a file of 16-bit frames.");
    command->footer(
        "Examples:\n"
        "  qf decode --format mono-12p --size 1280x1024 --output run.qfi camera.raw\n"
        "  qf decode --format raw-16-bit --size 512x512 --pixel-size 0.02mm -o run.qfi a.raw b.raw\n"
        "  zcat camera.raw.gz | qf decode --format mono-12p --size 1280x1024 -o run.qfi -\n\n");
    command
        ->add_option("FILE", options->files,
                     "Raw files: encoded frames one after the other; - is the standard input")
        ->required()
        ->type_name("");
    command->add_option("-f,--format", options->format, "Pixel format, such as mono-12p")
        ->required()
        ->type_name("ID")
        ->check(CLI::Validator([](std::string& text) { return checkFormat(text); }, knownFormats()));
    addParsed(
        *command, "-s,--size", "Width and height of a frame in pixels",
        [options](const std::string& text) { return readSize(text, options->size); }, "WxH")
        ->required();
    addParsed(
        *command, "--pixel-size", "What a pixel measures in the object, such as 0.02mm: the scale of x and y",
        [options](const std::string& text) { return readLength(text, options->pixelSize, options->unit); },
        "LENGTH");
    command->add_option("-o,--output", options->output, "The file to write")->required()->type_name("FILE");
    command->add_flag("--uncompressed", options->uncompressed, "Store the pixels as they are");
    addForce(*command, options->force);
    addQuiet(*command);
    command->callback([options, &session, &job] {
        job = [options, &session] { return Decoding(*options, session).run(); };
    });
}

} // namespace Qf
