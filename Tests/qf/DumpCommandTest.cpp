// SPDX-License-Identifier: Apache-2.0
#include "Tests/qf/QfFolder.h"

#include "Tests/Support/SampleBuffers.h"

#include "Core/Buffer/BufferApi.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include <bit>
#include <csignal>
#include <cstring>
#include <limits>

namespace
{

using namespace BufferApi;

/// values.qfi: frame 0 holds floats of all sorts with a scale, 1 colours, 2 a volume of bytes.
class DumpCommand : public QfFolder
{
protected:
    DumpCommand()
    {
        const std::unique_ptr<I_Buffer> buffer(CreateBuffer());
        auto* numbers = addFrame<float>(*buffer, DT_FLOAT, 3, 2, 1);
        const std::vector<float> values{0.1F, -0.0F, 1e-45F, NAN, -INFINITY, 16777216.0F};
        std::copy(values.begin(), values.end(), numbers);
        buffer->GetFrame(0)->SetScaleI({2.0, 1.0, QStringLiteral("m/s"), QString()});
        auto* colors = addFrame<RgbQuad>(*buffer, DT_RGB, 2, 1, 1);
        colors[0] = {3, 2, 1, 0};
        colors[1] = {0, 128, 255, 0};
        auto* bytes = addFrame<unsigned char>(*buffer, DT_BYTE, 4, 3, 2);
        std::iota(bytes, bytes + 12, static_cast<unsigned char>(0));
        std::fill_n(static_cast<unsigned char*>(buffer->GetFrame(2)->GetPlane(0, 1)->GetData()), 12,
                    static_cast<unsigned char>(255));
        store(*buffer, "values.qfi");
        store(*TestSupport::vectorFields(1), "vectors.qfv");
    }

    template <typename T>
    static T* addFrame(I_Buffer& buffer, E_DataType type, unsigned int width, unsigned int height,
                       unsigned int depth)
    {
        I_Frame* frame = CreateImageFrame(type, width, height, depth);
        buffer.AddFrame(frame);
        return static_cast<T*>(frame->GetPlane(0, 0)->GetData());
    }

    void expectText(const QString& arguments, const char* text) const
    {
        const auto run = succeed("dump " + arguments);
        EXPECT_EQ(run.out.toStdString(), text) << arguments.toStdString();
        EXPECT_EQ(run.err, QString());
    }
};

TEST_F(DumpCommand, printsEachValueExactly)
{
    expectText("values.qfi", "     0.1       -0    1e-45\n     nan     -inf 16777216\n");
    expectText("--csv values.qfi", "0.1,-0,1e-45\nnan,-inf,16777216\n");
    expectText("values.qfi --scaled --csv", "1.2000000029802322,1,1\nnan,-inf,33554433\n");
    expectText("values.qfi --frame 1", "#010203 #ff8000\n");
    expectText("--frame 2 values.qfi --region 2x2+1+1", " 5  6\n 9 10\n");
    expectText("--frame 2 values.qfi --z 1 --region 1x1+3+2 --csv", "255\n");
    expectText("vectors.qfv --component U --region 3x1+0+0", "0.25  0.5 0.75\n");
    expectText("vectors.qfv --component U --scaled --region 3x1+0+0", "0.625  1.25 1.875\n");
}

TEST_F(DumpCommand, printsJsonForPrograms)
{
    const auto number =
        QJsonDocument::fromJson(succeed("dump values.qfi --json --region 2x2+1+0").out.toUtf8());
    EXPECT_EQ(number["component"].toString(), QString("PIXEL"));
    EXPECT_EQ(number["type"].toString(), QString("float32"));
    EXPECT_EQ(number["unit"].toString(), QString("m/s"));
    EXPECT_EQ(number["x"].toInt(), 1);
    EXPECT_EQ(number["width"].toInt(), 2);
    const QJsonArray rows = number["values"].toArray();
    ASSERT_EQ(rows.size(), 2);
    EXPECT_EQ(rows[0].toArray(), (QJsonArray{-0.0, std::stod("1e-45")}));
    EXPECT_EQ(rows[1].toArray(), (QJsonArray{QJsonValue::Null, 16777216.0}));
    const auto color = QJsonDocument::fromJson(succeed("dump values.qfi --json --frame 1").out.toUtf8());
    EXPECT_EQ(color["values"].toArray(),
              (QJsonArray{QJsonArray{QJsonArray{1, 2, 3}, QJsonArray{255, 128, 0}}}));
}

TEST_F(DumpCommand, givesTheBytesAsStored)
{
    const auto raw = [this](const QString& arguments) {
        QProcess process;
        process.setWorkingDirectory(path("."));
        process.start(QF_PROGRAM, QStringList{"dump", "values.qfi", "--raw"} + arguments.split(' '));
        EXPECT_TRUE(process.waitForFinished());
        EXPECT_EQ(process.exitCode(), 0);
        return process.readAllStandardOutput().toHex();
    };
    EXPECT_EQ(raw("--frame 1"), QByteArray("010203ff8000"));
    EXPECT_EQ(raw("--frame 2 --region 2x3+1+0"), QByteArray("01020506090a"));
    EXPECT_EQ(raw("--region 3x1+0+1"), QByteArray("0000c07f000080ff0000804b"));
}

TEST_F(DumpCommand, refusesWithAReason)
{
    expectRefusals({
        {"dump", 2, "qf dump: FILE is required\nSee 'qf dump --help'."},
        {"dump missing.qfi", 1, "qf dump: missing.qfi: no such file; check the name"},
        {"dump values.qfi --frame 3", 1,
         "qf dump: values.qfi: no frame 3; frames count from 0 and there are 3"},
        {"dump values.qfi --component U", 1, "qf dump: values.qfi: no component 'U'; the frame has PIXEL"},
        {"dump values.qfi --z 1", 1, "qf dump: values.qfi: no plane 1; planes count from 0 and there are 1"},
        {"dump values.qfi --region 3x3+0+0", 1,
         "qf dump: values.qfi: the region exceeds the plane of 3x2 pixels; choose a smaller --region"},
        {"dump values.qfi --frame 1 --scaled", 1,
         "qf dump: values.qfi: colours have no scale; leave out --scaled"},
        {"dump values.qfi --raw --scaled", 1,
         "qf dump: values.qfi: bytes are not scaled; choose one of --scaled and --raw"},
        {"dump values.qfi --raw --json", 2, "qf dump: --json excludes --raw\nSee 'qf dump --help'."},
    });
    EXPECT_THAT(qf("dump vectors.qfv").err.toStdString(), testing::HasSubstr("choose one of its components"));
}

TEST_F(DumpCommand, endsQuietlyWhenNobodyReadsOn)
{
    store(*TestSupport::particleImages(1000, 1000, 1), "large.qfi");
    // Whether the signal of a closed pipe is left as it is or ignored, as some parents do.
    for (const char* before : {"", "trap '' PIPE; "}) {
        const QString script = QStringLiteral("set -o pipefail; %1%2 dump large.qfi | head -n 1 >/dev/null")
                                   .arg(before, QStringLiteral(QF_PROGRAM));
        const auto run = TestSupport::runProgram("bash", {"-c", script}, path("."));
        EXPECT_EQ(run.err, QString());
        EXPECT_EQ(run.exitCode, 141);
    }
}

} // namespace
