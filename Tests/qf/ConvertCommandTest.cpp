// SPDX-License-Identifier: Apache-2.0
#include "Tests/qf/QfFolder.h"

#include "Tests/Support/Files.h"
#include "Tests/Support/Frames.h"
#include "Tests/Support/SampleBuffers.h"

#include "Core/Buffer/BufferApi.h"

#include <QDir>
#include <QProcess>

#include <cmath>
#include <csignal>
#include <cstring>

namespace
{

using TestSupport::buffersEqual;
using TestSupport::framesEqual;

/// images.qfi with 5 frames of words, vectors.qfv with 2, other files in the way.
class ConvertCommand : public QfFolder
{
protected:
    ConvertCommand()
    {
        store(*m_images, "images.qfi");
        store(*m_vectors, "vectors.qfv");
        write("existing.png", "keep me");
        write("text.txt", "no frames at all");
        write("damaged.qfi", read("images.qfi").left(3000));
        QDir(path(".")).mkdir("folder");
    }

    void expectFrames(const QString& name, const std::vector<unsigned int>& numbers) const
    {
        const auto buffer = load(name);
        ASSERT_EQ(buffer->GetFrameCount(), numbers.size()) << name.toStdString();
        for (unsigned int i = 0; i < numbers.size(); ++i) {
            EXPECT_TRUE(framesEqual(*buffer->GetFrame(i), *m_images->GetFrame(numbers[i])))
                << name.toStdString() << ", " << i;
        }
    }

    TestSupport::BufferPointer m_images = TestSupport::particleImages(20, 16, 5);
    TestSupport::BufferPointer m_vectors = TestSupport::vectorFields(2);
};

TEST_F(ConvertCommand, keepsEverythingWhereverTheFramesGo)
{
    m_images->SetName(QStringLiteral("Größe"));
    TestSupport::setText(*m_images, "Operator", QStringLiteral("é 速度"));
    store(*m_images, "named.qfi");
    EXPECT_EQ(succeed("convert named.qfi run.tif").err, QString("run.tif: TIFF, 5 frames\n"));
    succeed("convert -q run.tif back.qfi -j 3");
    succeed("convert back.qfi --jobs 1 --uncompressed plain.qfi");
    EXPECT_GT(read("plain.qfi").size(), read("back.qfi").size());
    EXPECT_EQ(succeed("convert plain.qfi f-%03d.png").err,
              QString("f-000.png to f-004.png: PNG, 5 frames\n"));
    succeed("convert f-000.png f-001.png f-002.png f-003.png f-004.png joined.qfi");
    succeed("convert joined.qfi run.1");
    for (const char* name : {"run.tif", "back.qfi", "plain.qfi", "joined.qfi", "run.1"}) {
        EXPECT_TRUE(buffersEqual(*load(name), *m_images)) << name;
    }
    succeed("convert vectors.qfv copy.qfv");
    EXPECT_TRUE(buffersEqual(*load("copy.qfv"), *m_vectors));
    EXPECT_EQ(files(), "back.qfi copy.qfv damaged.qfi existing.png f-000.png f-001.png f-002.png f-003.png "
                       "f-004.png folder images.qfi joined.qfi named.qfi plain.qfi run.1 run.tif text.txt "
                       "vectors.qfv");
}

TEST_F(ConvertCommand, losesNothingUnlessToldTo)
{
    m_images->GetFrame(1)->AddMask({});
    m_images->GetFrame(3)->AddMask({});
    BufferApi::CreateTypedScalarInFrame(m_images->GetFrame(3),
                                        "H\xF6"
                                        "he",
                                        BufferApi::DT_FLOAT);
    store(*m_images, "masked.qfi");
    const TestSupport::BufferPointer floats(BufferApi::CreateBuffer());
    auto* frame = BufferApi::CreateImageFrame(BufferApi::DT_FLOAT, 2, 2, 1);
    floats->AddFrame(frame);
    const std::array<float, 4> values{-1.5F, 2.9F, 7e4F, NAN};
    std::ranges::copy(values, static_cast<float*>(frame->GetPlane(0, 0)->GetData()));
    frame->SetScaleI({3, 4, QStringLiteral("counts"), QStringLiteral("I")});
    store(*floats, "floats.qfi");
    const TestSupport::BufferPointer colours(BufferApi::CreateBuffer());
    colours->AddFrame(BufferApi::CreateImageFrame(BufferApi::DT_RGB, 1, 1, 1));
    *static_cast<BufferApi::RgbQuad*>(colours->GetFrame(0)->GetPlane(0, 0)->GetData()) = {1, 2, 3, 4};
    store(*colours, "colours.qfi");
    const std::string before = files();
    expectRefusals(
        {{"convert masked.qfi out.tif", 1,
          "qf convert: out.tif: a TIFF file cannot hold the component 'MASK'; write a .qfi file, or go "
          "without it by --lossy"},
         {"convert masked.qfi out-%d.png", 1,
          "qf convert: out-1.png: a PNG file cannot hold the component 'MASK'; write a .qfi file, or "
          "go without it by --lossy"},
         {"convert floats.qfi out.png", 1,
          "qf convert: out.png: a PNG file cannot hold pixels other than bytes and words; write a .qfi "
          "file, or go without it by --lossy"},
         {"convert colours.qfi out.png", 1,
          "qf convert: out.png: a PNG file cannot hold the fourth byte of colours; write a .qfi file, "
          "or go without it by --lossy"}});
    EXPECT_EQ(files(), before);
    EXPECT_EQ(succeed("convert masked.qfi --lossy out.tif").err,
              QString("out.tif: TIFF, 5 frames\n"
                      "lost: the component 'MASK' (2 frames), the component 'TS:Höhe' (1 frame)\n"));
    succeed("convert masked.qfi --lossy -j 2 o-%d.png");
    for (unsigned int i : {1U, 3U}) {
        m_images->GetFrame(i)->RemoveComponent(1);
    }
    m_images->GetFrame(3)->RemoveComponent(1);
    expectFrames("out.tif", {0, 1, 2, 3, 4});
    expectFrames("o-3.png", {3});
    succeed("convert floats.qfi --lossy floats.png");
    const auto words = load("floats.png");
    EXPECT_EQ(std::memcmp(words->GetFrame(0)->GetPlane(0, 0)->GetData(), "\0\0\2\0\xFF\xFF\0\0", 8), 0);
    EXPECT_TRUE(words->GetFrame(0)->GetScaleI() == frame->GetScaleI());
    succeed("convert colours.qfi --lossy colours.tif");
    EXPECT_EQ(std::memcmp(load("colours.tif")->GetFrame(0)->GetPlane(0, 0)->GetData(), "\1\2\3\0", 4), 0);
    // A file that holds everything needs no permission.
    EXPECT_EQ(succeed("convert masked.qfi --lossy copy.qfi").err, QString("copy.qfi: native, 5 frames\n"));
    EXPECT_TRUE(load("copy.qfi")->GetFrame(1)->HasMask());
}

TEST_F(ConvertCommand, takesTheFramesInTheOrderOfTheSlice)
{
    const std::vector<std::tuple<const char*, std::vector<unsigned int>>> cases{
        {"--frames 0:100:2", {0, 2, 4}},
        {"--frames=-2:", {3, 4}},
        {"--frames ::-1", {4, 3, 2, 1, 0}},
        {"--frames 3", {3}},
        {"--frames -1", {4}},
        {"--frames -2:-1", {3}},
    };
    for (const auto& [option, numbers] : cases) {
        SCOPED_TRACE(option);
        succeed(QStringLiteral("convert %1 images.qfi out.qfi --force").arg(option));
        expectFrames("out.qfi", numbers);
        succeed(QStringLiteral("convert images.qfi --force out.tif %1").arg(option));
        expectFrames("out.tif", numbers);
    }
    // Several files are one sequence; the numbers of a series are those of the sequence.
    succeed("convert images.qfi out.qfi more.qfi --frames 4:6");
    expectFrames("more.qfi", {4, 3});
    succeed("convert images.qfi --frames 1::2 folder/%d.png");
    EXPECT_EQ(QDir(path("folder")).entryList(QDir::Files | QDir::Hidden), (QStringList{"1.png", "3.png"}));
    expectFrames("folder/3.png", {3});
}

TEST_F(ConvertCommand, refusesWithAReasonAndLeavesNothing)
{
    TestSupport::setText(*m_images, "Operator", QStringLiteral("A"));
    store(*m_images, "by-a.qfi");
    m_images->SetName(QStringLiteral("evening"));
    store(*m_images, "evening.qfi");
    store(*TestSupport::sampleBuffers().front().make(), "none.qfi");
    expectRefusals({
        {"convert", 2, "qf convert: FILE is required\nSee 'qf convert --help'."},
        {"convert images.qfi", 2, "qf convert: name the files to read and, last, the file to write"},
        {"convert images.qfi out.qfi --frames ::0", 2,
         "qf convert: --frames: '::0' selects no frames; write START:STOP:STEP as Python does, such as "
         "0:100:2, or "
         "one number\nSee 'qf convert --help'."},
        {"convert images.qfi out.qfi --frames 3:1", 1,
         "qf convert: images.qfi: --frames 3:1 selects none of the 5 frames; frames count from 0, and "
         "START:STOP ends "
         "before STOP"},
        {"convert images.qfi out.qfi --frames 5", 1,
         "qf convert: images.qfi: no frame 5; frames count from 0 and there are 5"},
        {"convert images.qfi out.qfi --frames=-6", 1,
         "qf convert: images.qfi: no frame -6; frames count from 0 and there are 5"},
        {"convert images.qfi ./images.qfi --force", 2,
         "qf convert: images.qfi: the output is also an input; name another output"},
        {"convert --force images.qfi vectors.qfv folder/../images.qfi", 2,
         "qf convert: images.qfi: the output is also an input; name another output"},
        {"convert images.qfi existing.png", 1,
         "qf convert: existing.png: the file exists already; choose another name, or --force to replace it"},
        {"convert images.qfi out.bmp", 2,
         "qf convert: out.bmp: BMP files are only read; end the name in .qfi, .tif or .png"},
        {"convert images.qfi out.png", 1,
         "qf convert: out.png: a PNG file holds one frame, not 5; choose one with --frames, or number the "
         "files: "
         "out-%04d.png"},
        {"convert images.qfi %d-%d.png", 2, "qf convert: %d-%d.png: has two places for the number; keep one"},
        {"convert none.qfi %d.png", 1, "qf convert: %d.png: there are no frames"},
        {"convert images.qfi by-a.qfi out.qfi", 1,
         "qf convert: by-a.qfi: the attribute 'Operator' of the whole file is not as in images.qfi, and the "
         "output "
         "can hold one; --attributes-of-first drops what this file has"},
        {"convert by-a.qfi evening.qfi out.qfi", 1,
         "qf convert: evening.qfi: the name of the whole file is not as in by-a.qfi, and the output can hold "
         "one; "
         "--attributes-of-first drops what this file has"},
        {"convert missing.qfi out.qfi", 1, "qf convert: missing.qfi: no such file; check the name"},
        {"convert folder out.qfi", 1, "qf convert: folder: is a folder; name a file in it"},
        {"convert images.qfi folder --force", 1, "qf convert: folder: is a folder; name a file in it"},
        {"convert images.qfi no/such/out.qfi", 1,
         "qf convert: no/such/out.qfi: the folder no/such does not exist; create it first"},
        {"convert images.qfi out.qfi -j 0", 2,
         "qf convert: --jobs: Value 0 not in range 1 to 256\nSee 'qf convert --help'."},
    });
    for (const auto& [arguments, error] : std::vector<std::pair<const char*, const char*>>{
             {"convert text.txt out.qfi", "Cannot open 'text.txt': unknown content; known are "},
             {"convert damaged.qfi out.tif", "Cannot "},
             {"convert images.qfi damaged.qfi out.qfi", "Cannot "},
             {"convert vectors.qfv out.tif",
              "Cannot write 'out.tif': TIFF cannot hold vectors; a .qfi file can"},
             {"convert vectors.qfv out-%d.png", "Cannot write 'out-"}}) {
        SCOPED_TRACE(arguments);
        const std::string before = files();
        const auto run = qf(arguments);
        EXPECT_EQ(run.exitCode, 1);
        EXPECT_EQ(run.err.count('\n'), 1);
        EXPECT_THAT(run.err.toStdString(), testing::StartsWith(std::string("qf convert: ").append(error)));
        EXPECT_FALSE(run.err.contains(".part"));
        EXPECT_EQ(files(), before);
    }
    EXPECT_EQ(read("existing.png"), QByteArray("keep me"));
    succeed("convert --attributes-of-first images.qfi evening.qfi joined.qfi");
    EXPECT_EQ(load("joined.qfi")->GetFrameCount(), 10U);
    EXPECT_TRUE(load("joined.qfi")->GetAttributeList().empty());
}

TEST_F(ConvertCommand, leavesTheOldFilesWhenASeriesFails)
{
    // The second frame cannot be a PNG; the first would replace a file.
    auto mixed = TestSupport::particleImages(4, 3, 1);
    mixed->AddFrame(BufferApi::CreateVectorFrame2C(4, 3, 1, 1));
    store(*mixed, "mixed.qfi");
    write("m-0.png", "keep me too");
    const std::string before = files();
    EXPECT_EQ(
        qf("convert mixed.qfi m-%d.png").err,
        QString(
            "qf convert: m-0.png: the file exists already; choose another name, or --force to replace it\n"));
    EXPECT_EQ(qf("convert --force mixed.qfi m-%d.png").exitCode, 1);
    EXPECT_EQ(read("m-0.png"), QByteArray("keep me too"));
    EXPECT_EQ(files(), before);
}

TEST_F(ConvertCommand, takesNamesOfAllSorts)
{
    const QString name = QStringLiteral("Größe 速度 \U0001F300 100%.qfi");
    const auto run = TestSupport::runProgram(QF_PROGRAM, {"convert", "images.qfi", "--", name}, path("."));
    EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_EQ(run.err, name + QStringLiteral(": native, 5 frames\n"));
    expectFrames(name, {0, 1, 2, 3, 4});
    const auto dashed = TestSupport::runProgram(QF_PROGRAM, {"convert", name, "--", "-.tif"}, path("."));
    EXPECT_EQ(dashed.exitCode, 0) << dashed.err.toStdString();
    expectFrames("-.tif", {0, 1, 2, 3, 4});
    // A link is followed: what it points to is replaced.
    QFile::link("real.qfi", path("link.qfi"));
    write("real.qfi", "old");
    succeed("convert images.qfi link.qfi --force");
    EXPECT_TRUE(QFileInfo(path("link.qfi")).isSymLink());
    expectFrames("real.qfi", {0, 1, 2, 3, 4});
}

TEST_F(ConvertCommand, leavesNothingWhenInterrupted)
{
    store(*TestSupport::particleImages(1024, 1024, 60), "long.qfi");
    const std::string before = files();
    for (const char* output : {"out.tif", "out-%d.png"}) {
        SCOPED_TRACE(output);
        QProcess process;
        process.setWorkingDirectory(path("."));
        process.start(QF_PROGRAM, {"convert", "long.qfi", output});
        ASSERT_TRUE(process.waitForStarted());
        while (files() == before && process.state() == QProcess::Running) {
            process.waitForFinished(1);
        }
        ::kill(static_cast<pid_t>(process.processId()), SIGINT);
        ASSERT_TRUE(process.waitForFinished(20000));
        EXPECT_EQ(process.exitCode(), 130);
        EXPECT_EQ(process.readAllStandardError(), QByteArray("qf convert: interrupted\n"));
        EXPECT_EQ(files(), before);
    }
}

} // namespace
