// SPDX-License-Identifier: Apache-2.0
#include "Tests/qf/QfFolder.h"

#include <QCryptographicHash>
#include <QDir>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include <csignal>

#include <sys/stat.h>

namespace
{

/// Two frames of 4 x 2 pixels as Mono12p, and the words that they stand for.
const QByteArray rawFrames = QByteArray::fromHex("214365876543012efffff0f0"
                                                 "0000ff00f00f100200300400");
const std::vector<unsigned short> frameWords{0x321, 0x654, 0x587, 0x436, 0xe01, 0xff2, 0x0ff, 0xf0f,
                                             0x000, 0xff0, 0x000, 0x0ff, 0x210, 0x000, 0x430, 0x000};

QString hashOf(const std::vector<unsigned short>& words)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    for (const unsigned short word : words) {
        const char bytes[] = {static_cast<char>(word & 255), static_cast<char>(word >> 8)};
        hash.addData(QByteArrayView(bytes, 2));
    }
    return QString::fromLatin1(hash.result().toHex());
}

/// Good and bad files.
class CommandLine : public QfFolder
{
protected:
    CommandLine()
    {
        write("good.raw", rawFrames);
        write("second.raw", rawFrames.left(12));
        write("empty.raw", {});
        write("short.raw", rawFrames.left(11));
        write("odd.raw", rawFrames + 'x');
        write("existing.qfi", "keep me");
        write("existing.png", "keep me");
        QDir(path(".")).mkdir("folder");
    }

    /// Decodes from the pipe camera.pipe, which gives some bytes and then nothing more, until it is
    /// interrupted.
    void interruptReading(const QByteArray& bytes, const char* error) const
    {
        QProcess process;
        process.setWorkingDirectory(path("."));
        process.start(QF_PROGRAM, {"decode", "-f", "mono-12p", "-s", "4x2", "-o", "new.qfi", "camera.pipe"});
        ASSERT_TRUE(process.waitForStarted());
        // Opening waits until the other side has opened the pipe too.
        QFile pipe(path("camera.pipe"));
        ASSERT_TRUE(pipe.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        ASSERT_EQ(pipe.write(bytes), bytes.size());
        EXPECT_FALSE(process.waitForFinished(300));
        ::kill(static_cast<pid_t>(process.processId()), SIGINT);
        ASSERT_TRUE(process.waitForFinished(20000));
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(process.exitCode(), 130);
        EXPECT_EQ(process.readAllStandardError(), QByteArray(error));
    }

    /// run.qfi with both frames.
    void makeRun() const
    {
        const auto run = qf("decode --format mono-12p --size 4x2 --pixel-size 0.5mm -o run.qfi good.raw");
        ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    }
};

TEST_F(CommandLine, refusesWithAReasonAndLeavesNothing)
{
    makeRun();
    write("damaged.qfi", read("run.qfi").left(500));
    const std::vector<Case> cases{
        {"", 2,
         "qf: name a command: convert, decode, diff, dump, formats, info, plot, verify, completion, manual; "
         "'qf --help' shows examples\n"},
        {"dekode", 2, "dekode"},
        {"decode good.raw", 2, "required"},
        {"decode -f mono-12p -s 4x2 -o new.qfi", 2, "FILE is required"},
        {"decode -f rgb-24 -s 4x2 -o new.qfi good.raw", 2,
         "known are mono-10p, mono-10pmsb, mono-12p, mono-12packed"},
        {"decode -f mono-12p -s 0x5 -o new.qfi good.raw", 2, "'0x5' is no size; write width x height"},
        {"decode -f mono-12p --size=-1x3 -o new.qfi good.raw", 2, "'-1x3' is no size"},
        {"decode -f mono-12p -s -1x3 -o new.qfi good.raw", 2, "--size"},
        {"decode -f mono-12p -s axb -o new.qfi good.raw", 2, "'axb' is no size"},
        {"decode -f mono-12p -s 4x -o new.qfi good.raw", 2, "'4x' is no size"},
        {"decode -f mono-12p -s 4x2x2 -o new.qfi good.raw", 2, "'4x2x2' is no size"},
        {"decode -f mono-12p -s 99999999999x2 -o new.qfi good.raw", 2, "is no size"},
        {"decode -f mono-12p -s 65536x65537 -o new.qfi good.raw", 2, "more pixels than a frame can hold"},
        {"decode -f mono-12p -s 65536x65535 -o new.qfi good.raw", 1, "good.raw: too short: 24 bytes"},
        {"decode -f mono-12p -s 3x1 -o new.qfi good.raw", 1,
         "--size 3x1: Mono12p: Invalid frame dimensions (3)"},
        {"decode -f mono-10pmsb -s 4x1 -o new.qfi good.raw", 1,
         "good.raw: 24 bytes are no whole number of frames"},
        {"decode -f mono-12p -s 4x2 --pixel-size 0mm -o new.qfi good.raw", 2, "'0mm' is no length"},
        {"decode -f mono-12p -s 4x2 -o new.qfi missing.raw", 1, "missing.raw: no such file; check the name"},
        {"decode -f mono-12p -s 4x2 -o new.qfi empty.raw", 1, "empty.raw: the file is empty"},
        {"decode -f mono-12p -s 4x2 -o new.qfi short.raw", 1, "short.raw: too short: 11 bytes"},
        {"decode -f mono-12p -s 4x2 -o new.qfi odd.raw", 1,
         "odd.raw: 25 bytes are no whole number of frames"},
        {"decode -f mono-12p -s 4x2 -o new.qfi good.raw odd.raw", 1,
         "1 bytes are left over; check --size and --format"},
        {"decode -f mono-12p -s 4x2 -o new.qfi folder", 1, "folder: is a folder"},
        {"decode -f mono-12p -s 4x2 -o existing.qfi good.raw", 1,
         "existing.qfi: the file exists already; choose"},
        {"decode -f mono-12p -s 4x2 -o folder --force good.raw", 1, "folder: is a folder; name a file in it"},
        {"decode -f mono-12p -s 4x2 -o no/such/new.qfi good.raw", 1, "the folder no/such does not exist"},
        {"decode -f mono-12p -s 4x2 -o /proc/new.qfi good.raw", 1, "/proc"},
        {"decode -f mono-12p -s 4x2 -o good.raw --force good.raw", 2, "the output is also an input"},
        {"decode -f mono-12p -s 4x2 -o - good.raw", 2,
         "qf decode: frames are not written to the standard output; name a file\n"},
        {"decode -f mono-12p -s 4x2 -o new.bmp good.raw", 2, "qf decode: new.bmp: BMP files are only read"},
        {"decode -f mono-12p -s 4x2 -o new.qfi empty.raw", 1, "qf decode: empty.raw: the file is empty"},
        {"info", 2, "FILE is required"},
        {"info missing.qfi", 1, "missing.qfi: no such file"},
        {"info empty.raw", 1, "empty.raw"},
        {"info good.raw", 1, "good.raw"},
        {"info damaged.qfi", 1, "damaged.qfi"},
        {"info folder", 1, "folder: is a folder"},
        {"plot run.qfi", 2, "--output is required"},
        {"plot run.qfi -o picture.abc", 2, "picture.abc: no picture format; end the name in .png"},
        {"plot run.qfi -o existing.png", 1, "existing.png: the file exists already"},
        {"plot run.qfi -o picture.png --frame 2", 1,
         "run.qfi: no frame 2; frames count from 0 and there are 2"},
        {"plot run.qfi -o picture.png --frame -1", 2, "--frame: '-1' is no number that counts from 0"},
        {"plot run.qfi -o picture.png --z 1.5", 2, "--z: '1.5' is no number that counts from 0"},
        {"plot existing.png -o existing.png --force", 2, "the output is also an input"},
        {"plot run.qfi -o picture.png --component U", 1, "run.qfi: no component 'U'; the frame has PIXEL"},
        {"plot run.qfi -o picture.png --z 1", 1, "no plane 1"},
        {"plot run.qfi -o picture.png --range 5:1", 2, "'5:1' is no range"},
        {"plot run.qfi -o picture.png --range 1:nan", 2, "'1:nan' is no range"},
        {"plot run.qfi -o picture.png --colormap jet", 2, "--colormap"},
        {"plot run.qfi -o picture.png --region 4x2+1+0", 1, "the region exceeds the plane of 4x2 pixels"},
        {"plot run.qfi -o picture.png --region 4x2+1", 2, "'4x2+1' is no region"},
        {"plot run.qfi -o picture.png --width 1", 2, "--width"},
        {"plot damaged.qfi -o picture.png", 1, "damaged.qfi"},
    };
    const std::string before = files();
    for (const Case& c : cases) {
        SCOPED_TRACE(c.arguments);
        const auto run = qf(c.arguments);
        EXPECT_EQ(run.exitCode, c.exitCode);
        EXPECT_THAT(run.err.toStdString(), testing::HasSubstr(c.error));
        EXPECT_THAT(run.err.toStdString(), testing::StartsWith("qf"));
        EXPECT_EQ(run.err.count("rte.exception"), 0);
        EXPECT_EQ(run.out.toStdString(), "");
        EXPECT_EQ(files(), before);
    }
    EXPECT_EQ(read("existing.qfi"), QByteArray("keep me"));
    EXPECT_EQ(read("existing.png"), QByteArray("keep me"));
    EXPECT_EQ(read("good.raw"), rawFrames);
}

TEST_F(CommandLine, decodesToWhatTheFormatSays)
{
    makeRun();
    const auto run = qf("info --json --hash --stats run.qfi");
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    const QJsonObject file = QJsonDocument::fromJson(run.out.toUtf8()).array().at(0).toObject();
    EXPECT_EQ(file["file"].toString(), QString("run.qfi"));
    EXPECT_EQ(file["frame_count"].toInt(), 2);
    const QJsonObject frame = file["frames"].toArray().at(1).toObject();
    EXPECT_EQ(file["format"].toString(), QString("native"));
    EXPECT_EQ(frame["frame"].toInt(), 1);
    EXPECT_EQ(frame["kind"].toString(), QString("image"));
    EXPECT_EQ(frame["type"].toString(), QString("uint16"));
    EXPECT_EQ(frame["width"].toInt(), 4);
    EXPECT_EQ(frame["height"].toInt(), 2);
    const QJsonObject scale = frame["scales"].toObject()["y"].toObject();
    EXPECT_EQ(scale["factor"].toDouble(), 0.5);
    EXPECT_EQ(scale["unit"].toString(), QString("mm"));
    EXPECT_EQ(frame["components"].toArray().at(0).toObject()["name"].toString(), QString("PIXEL"));
    EXPECT_EQ(file["sha256"].toString(), hashOf(frameWords));
    const QJsonObject first = file["statistics"].toArray().at(0).toObject();
    EXPECT_EQ(first["minimum"].toDouble(), 255.0);
    EXPECT_EQ(first["maximum"].toDouble(), 4082.0);
    EXPECT_EQ(first["mean"].toDouble(), 2086.375);
    EXPECT_NEAR(first["deviation"].toDouble(), 1416.3166963553738, 1e-9);
}

TEST_F(CommandLine, looksIntoSomeFramesOnly)
{
    makeRun();
    const std::vector<unsigned short> second(frameWords.begin() + 8, frameWords.end());
    for (const char* arguments :
         {"info --hash --frames 1 run.qfi", "info --frames=-1: run.qfi --hash --jobs 1"}) {
        const QString line = succeed(arguments).out;
        EXPECT_THAT(line.toStdString(), testing::HasSubstr("1 of 2 frames"));
        EXPECT_TRUE(line.endsWith("sha256:" + hashOf(second) + '\n')) << line.toStdString();
    }
    EXPECT_THAT(
        succeed("info -v --stats --frames ::-1 run.qfi").out.toStdString(),
        testing::AllOf(testing::HasSubstr("frames 1 to 0 by -1:"), testing::HasSubstr("frame 1 PIXEL")));
    const auto json =
        QJsonDocument::fromJson(succeed("info --json --stats --frames 1 run.qfi").out.toUtf8())[0];
    EXPECT_EQ(json["frame_count"].toInt(), 2);
    EXPECT_EQ(json["frames"].toArray().size(), 1);
    EXPECT_EQ(json["frames"][0]["frame"].toInt(), 1);
    EXPECT_EQ(json["statistics"][0]["frame"].toInt(), 1);
    EXPECT_EQ(json["statistics"][0]["maximum"].toInt(), 0xff0);
    EXPECT_EQ(qf("info --frames 7 run.qfi").err,
              QString("qf info: run.qfi: no frame 7; frames count from 0 and there are 2\n"));
}

TEST_F(CommandLine, hashTellsOneChangedBit)
{
    QByteArray changed = rawFrames;
    changed[20] = static_cast<char>(changed[20] ^ 4);
    write("changed.raw", changed);
    ASSERT_EQ(qf("decode -f mono-12p -s 4x2 -o changed.qfi changed.raw").exitCode, 0);
    const auto run = qf("info --hash changed.qfi");
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_THAT(run.out.toStdString(), testing::HasSubstr("sha256:"));
    EXPECT_FALSE(run.out.contains(hashOf(frameWords)));
}

TEST_F(CommandLine, joinsRawFilesAndShowsOneAlignedLineEach)
{
    makeRun();
    const auto decoded =
        qf("decode -f mono-12p -s 4x2 --uncompressed -o longer-name.qfi good.raw second.raw");
    EXPECT_EQ(decoded.exitCode, 0);
    EXPECT_EQ(decoded.out, QString());
    EXPECT_EQ(decoded.err, QString("longer-name.qfi: 3 frames of 4x2\n"));
    const auto run = qf("info run.qfi missing.qfi longer-name.qfi");
    EXPECT_EQ(run.exitCode, 1);
    const QStringList lines = run.out.split('\n', Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 2);
    EXPECT_THAT(lines[0].toStdString(),
                testing::StartsWith("run.qfi          image  2 frames  4x2  uint16  "));
    EXPECT_THAT(lines[1].toStdString(),
                testing::StartsWith("longer-name.qfi  image  3 frames  4x2  uint16  "));
    EXPECT_THAT(run.err.toStdString(), testing::StartsWith("qf info: missing.qfi: no such file"));
}

TEST_F(CommandLine, replacesOnlyWhenForced)
{
    EXPECT_EQ(succeed("decode -q -f raw-16-bit -s 2x1 -o existing.qfi --force good.raw").err, QString());
    EXPECT_THAT(qf("info existing.qfi").out.toStdString(), testing::HasSubstr("6 frames  2x1"));
}

TEST_F(CommandLine, tellsScalesComponentsAndStatistics)
{
    makeRun();
    const auto run = qf("info -v --stats run.qfi");
    EXPECT_EQ(run.exitCode, 0);
    for (const char* text :
         {"frames 0 to 1: 4x2, uint16", "0.5 * value mm  Position y", "component PIXEL",
          "uint16, 1 plane, 1 * value counts  Intensity", "min 255  max 4082  mean 2086.38"}) {
        EXPECT_THAT(run.out.toStdString(), testing::HasSubstr(text));
    }
}

TEST_F(CommandLine, drawsPictures)
{
    makeRun();
    const auto gray = qf("plot run.qfi --frame 1 -o gray.png");
    EXPECT_EQ(gray.exitCode, 0) << gray.err.toStdString();
    EXPECT_EQ(gray.err.count('\n'), 1);
    const QImage grayImage(path("gray.png"));
    EXPECT_TRUE(grayImage.allGray());
    const auto colored =
        qf("plot run.qfi --colormap viridis --range 0:4095 --width 500 --force -o existing.png");
    EXPECT_EQ(colored.exitCode, 0) << colored.err.toStdString();
    const QImage coloredImage(path("existing.png"));
    EXPECT_FALSE(coloredImage.allGray());
    EXPECT_LE(coloredImage.width(), 500);
    EXPECT_GT(coloredImage.width(), 400);
}

TEST_F(CommandLine, helpsWithExamplesFirst)
{
    for (const char* arguments :
         {"--help", "convert --help", "decode --help", "diff --help", "dump --help", "formats --help",
          "info --help", "plot --help", "verify --help", "completion --help", "manual --help"}) {
        const auto run = qf(arguments);
        EXPECT_EQ(run.exitCode, 0);
        EXPECT_THAT(run.out.toStdString(), testing::StartsWith("Examples:\n  qf "));
        EXPECT_EQ(run.err, QString());
    }
    EXPECT_THAT(qf("--version").out.toStdString(), testing::ContainsRegex("^qf [0-9]+\\.[0-9]+\\.[0-9]+\n$"));
}

TEST_F(CommandLine, failsWhenResultsCannotBeWritten)
{
    makeRun();
    QProcess process;
    process.setStandardOutputFile("/dev/full");
    process.start(QF_PROGRAM, {"info", path("run.qfi")});
    ASSERT_TRUE(process.waitForFinished());
    EXPECT_EQ(process.exitCode(), 1);
    EXPECT_THAT(process.readAllStandardError().toStdString(), testing::HasSubstr("cannot write the results"));
}

TEST_F(CommandLine, refusesNamesThatAreNoText)
{
    QProcess process;
    process.setWorkingDirectory(path("."));
    process.start("/bin/sh",
                  {"-c", QStringLiteral("exec %1 info \"$(printf 'caf\\351.qfi')\"").arg(QF_PROGRAM)});
    ASSERT_TRUE(process.waitForFinished());
    EXPECT_EQ(process.exitCode(), 2);
    EXPECT_EQ(QString::fromUtf8(process.readAllStandardError()),
              QString::fromUtf8("qf: 'caf\xEF\xBF\xBD.qfi' is not UTF-8; rename the file\n"));
}

TEST_F(CommandLine, leavesNothingWhenAFileGrowsBeyondItsLimit)
{
    makeRun();
    const std::string before = files();
    for (const char* arguments :
         {"decode -f mono-12p -s 4x2 -o new.qfi good.raw", "convert run.qfi new.tif --uncompressed",
          "convert run.qfi new-%d.png", "plot run.qfi -o new.png", "plot run.qfi -o existing.png --force"}) {
        SCOPED_TRACE(arguments);
        const auto run = TestSupport::runProgram(
            "/bin/sh", {"-c", QStringLiteral("ulimit -f 0; exec %1 %2").arg(QF_PROGRAM, arguments)},
            path("."));
        EXPECT_EQ(run.exitCode, 1);
        EXPECT_THAT(run.err.toStdString(), testing::MatchesRegex("qf [a-z]+: [^\n]*File too large\n"));
        EXPECT_EQ(files(), before);
    }
    EXPECT_EQ(read("existing.png"), QByteArray("keep me"));
}

TEST_F(CommandLine, readsThePipeInFrontOfIt)
{
    const auto run = TestSupport::runProgram(
        "/bin/sh",
        {"-c", QStringLiteral("cat good.raw | %1 decode -q -f mono-12p -s 4x2 -o new.qfi -").arg(QF_PROGRAM)},
        path("."));
    EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_EQ(load("new.qfi")->GetFrameCount(), 2U);
}

TEST_F(CommandLine, stopsWaitingForAPipeThatNobodyWritesTo)
{
    ASSERT_EQ(mkfifo(path("camera.pipe").toUtf8().constData(), 0600), 0);
    const std::string before = files();
    for (const int signal : {SIGTERM, SIGHUP}) {
        QProcess process;
        process.setWorkingDirectory(path("."));
        process.start(QF_PROGRAM, {"decode", "-f", "mono-12p", "-s", "4x2", "-o", "new.qfi", "camera.pipe"});
        EXPECT_FALSE(process.waitForFinished(300));
        ::kill(static_cast<pid_t>(process.processId()), signal);
        ASSERT_TRUE(process.waitForFinished(20000));
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(process.exitCode(), 130);
        EXPECT_EQ(files(), before);
    }
}

TEST_F(CommandLine, refusesAPipeThatEndsWithinAFrame)
{
    ASSERT_EQ(mkfifo(path("camera.pipe").toUtf8().constData(), 0600), 0);
    const std::string before = files();
    QProcess process;
    process.setWorkingDirectory(path("."));
    process.start(QF_PROGRAM,
                  {"decode", "-f", "mono-12p", "-s", "4x2", "-o", "new.qfi", "good.raw", "camera.pipe"});
    QFile pipe(path("camera.pipe"));
    ASSERT_TRUE(pipe.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    pipe.write(rawFrames.left(5));
    pipe.close();
    ASSERT_TRUE(process.waitForFinished());
    EXPECT_EQ(process.exitCode(), 1);
    EXPECT_THAT(process.readAllStandardError().toStdString(),
                testing::HasSubstr("camera.pipe: too short: 5 bytes"));
    EXPECT_EQ(files(), before);
}

TEST_F(CommandLine, readsAPipeAndStopsWhenInterrupted)
{
    ASSERT_EQ(mkfifo(path("camera.pipe").toUtf8().constData(), 0600), 0);
    const std::string before = files();
    for (const bool hasFrames : {false, true}) {
        interruptReading(hasFrames ? rawFrames : rawFrames.left(5),
                         hasFrames ? "qf decode: interrupted; new.qfi was written with the first 2 frames\n"
                                   : "qf decode: new.qfi: interrupted\n");
        EXPECT_EQ(files() == before, !hasFrames);
    }
    const auto written = load("new.qfi");
    ASSERT_EQ(written->GetFrameCount(), 2U);
    for (unsigned int frame = 0; frame < 2; ++frame) {
        const auto* words =
            static_cast<const unsigned short*>(written->GetFrame(frame)->GetPlane(0, 0)->GetData());
        EXPECT_TRUE(std::equal(words, words + 8, frameWords.begin() + 8 * frame)) << frame;
    }
}

TEST_F(CommandLine, decodesTenThousandFramesInTheMemoryOfTen)
{
    const QStringList arguments{"decode",         "-f", "raw-16-bit", "-s",      "96x64",
                                "--uncompressed", "-o", "new.qfi",    "--force", "zeros.raw"};
    // A sanitizer keeps what was freed: 256 MiB of it unless it is told otherwise.
    qputenv("ASAN_OPTIONS", qgetenv("ASAN_OPTIONS") + ":quarantine_size_mb=1");
    long long kibibytes[2] = {};
    for (const int frames : {10, 10000}) {
        QFile zeros(path("zeros.raw"));
        ASSERT_TRUE(zeros.open(QIODevice::WriteOnly) && zeros.resize(2LL * 96 * 64 * frames));
        zeros.close();
        const long long used = TestSupport::peakMemory(QF_PROGRAM, arguments, path("."));
        ASSERT_GT(used, 0);
        kibibytes[frames == 10 ? 0 : 1] = used;
    }
    // All frames at once would take 120,000.
    EXPECT_LT(kibibytes[1], kibibytes[0] + 6000) << kibibytes[0];
    EXPECT_EQ(load("new.qfi")->GetFrameCount(), 10000U);
}

} // namespace
