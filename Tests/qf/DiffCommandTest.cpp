// SPDX-License-Identifier: Apache-2.0
#include "Tests/qf/QfFolder.h"

#include "Tests/Support/SampleBuffers.h"

#include "Core/Buffer/BufferApi.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <bit>
#include <limits>

namespace
{

using namespace BufferApi;
using TestSupport::BufferPointer;

float* floatsOf(I_Frame& frame)
{
    return static_cast<float*>(frame.GetPlane(0, 0)->GetData());
}

BufferPointer floatImage()
{
    BufferPointer buffer(CreateBuffer());
    I_Frame* frame = CreateImageFrame(DT_FLOAT, 4, 2, 1);
    buffer->AddFrame(frame);
    std::fill_n(floatsOf(*frame), 8, 100.0F);
    return buffer;
}

class DiffCommand : public QfFolder
{
protected:
    /// Compares two buffers, of which the second was changed, and expects these lines.
    void expectLines(const I_Buffer& a, const I_Buffer& b, const QString& options,
                     const std::string& lines) const
    {
        store(a, "a.qfi");
        store(b, "b.qfi");
        const auto run = qf("diff a.qfi b.qfi " + options);
        EXPECT_EQ(run.out.toStdString(), lines);
        EXPECT_EQ(run.exitCode, lines.empty() ? 0 : 1);
        EXPECT_EQ(run.err.isEmpty(), !lines.empty()) << run.err.toStdString();
    }
};

/// Whatever the store can hold, compared with itself in another packing.
TEST_F(DiffCommand, findsNothingWhereNothingDiffers)
{
    for (const TestSupport::SampleBuffer& sample : TestSupport::sampleBuffers()) {
        SCOPED_TRACE(sample.name);
        const BufferPointer buffer = sample.make();
        store(*buffer, "a.qfi");
        ExportBuffer(buffer.get(), path("b.qfi"), {{"PackType", 0}});
        const auto run = succeed("diff a.qfi b.qfi");
        EXPECT_EQ(run.out, QString());
        EXPECT_THAT(run.err.toStdString(), testing::StartsWith("a.qfi and b.qfi agree in "));
    }
}

TEST_F(DiffCommand, tellsEachThingThatDiffers)
{
    struct Change
    {
        std::function<void(I_Buffer&, I_FrameVector2C&)> make;
        const char* line;
        const char* ignore;
    };
    const std::vector<Change> changes{
        {[](I_Buffer& buffer, I_FrameVector2C&) { buffer.SetName("eddy"); }, "name: 'vortex' != 'eddy'",
         "name"},
        {[](I_Buffer& buffer, I_FrameVector2C&) { TestSupport::setText(buffer, "By", "me"); },
         "attribute By: none != 'me'", "attributes"},
        {[](I_Buffer&, I_FrameVector2C& frame) { TestSupport::setNumber(frame, "time", 0.5); },
         "frame 1, attribute time: float64 1x1: 0.001 != float64 1x1: 0.5", "attributes"},
        {[](I_Buffer&, I_FrameVector2C& frame) { TestSupport::setText(frame, "time", "0.001"); },
         "frame 1, attribute time: float64 1x1: 0.001 != '0.001'", "attributes"},
        {[](I_Buffer&, I_FrameVector2C& frame) { frame.SetGridY(8); }, "frame 1, grid y: 16 != 8", nullptr},
        {[](I_Buffer&, I_FrameVector2C& frame) {
             frame.SetScaleZ({1, 2, "mm", "z"});
         },
         "frame 1, scale z: '1 * value plane  Position z' != '1 * value + 2 mm  z'", "scales"},
        {[](I_Buffer&, I_FrameVector2C& frame) {
             frame.GetComponent("TS:Correlation")->SetScale({2, 0, "", ""});
         },
         "frame 1, TS:Correlation, scale: '1 * value' != '2 * value'", "scales"},
        {[](I_Buffer&, I_FrameVector2C& frame) { frame.ClearTypedScalars(); },
         "frame 1, component TS:Correlation: present != none", nullptr},
        {[](I_Buffer&, I_FrameVector2C& frame) { CreateTypedScalarInFrame(&frame, "Correlation", DT_WORD); },
         "frame 1, TS:Correlation, type: float32 != uint16", "type"},
        {[](I_Buffer&, I_FrameVector2C& frame) {
             static_cast<unsigned char*>(
                 frame.GetComponent(I_Frame::COMPONENT_MASK)->GetPlane(0)->GetData())[13] = 0;
         },
         "frame 1, MASK, 1 of 120 pixels, most by 1 at (1, 1): 1 != 0", "masks"},
    };
    const BufferPointer original = TestSupport::vectorFields(2);
    for (const Change& change : changes) {
        SCOPED_TRACE(change.line);
        const BufferPointer changed = TestSupport::vectorFields(2);
        change.make(*changed, dynamic_cast<I_FrameVector2C&>(*changed->GetFrame(1)));
        expectLines(*original, *changed, "", std::string(change.line) + '\n');
        expectLines(*original, *changed, "--tolerance 0.5 --relative 0", std::string(change.line) + '\n');
        expectLines(*original, *changed, "--brief", "a.qfi and b.qfi differ\n");
        expectLines(*original, *changed, "--frames 0 --ignore name,attributes", "");
        if (change.ignore != nullptr) {
            expectLines(*original, *changed, QStringLiteral("--ignore %1").arg(change.ignore), "");
        }
    }
}

TEST_F(DiffCommand, comparesPixelsByBitsOrWithinATolerance)
{
    const auto quiet = std::numeric_limits<float>::quiet_NaN();
    const auto payload = std::bit_cast<float>(0x7FC12345U);
    struct Pixels
    {
        float a;
        float b;
        const char* options;
        const char* line;
    };
    const std::vector<Pixels> cases{
        {100.0F, 100.5F, "", "frame 0, PIXEL, 1 of 8 pixels, most by 0.5 at (2, 1): 100 != 100.5\n"},
        {100.0F, 100.5F, "--tolerance 0.4",
         "frame 0, PIXEL, 1 of 8 pixels, most by 0.5 at (2, 1): 100 != 100.5\n"},
        {100.0F, 100.5F, "--tolerance 0.5", ""},
        {100.0F, 100.5F, "--relative 0.005", ""},
        {100.0F, 101.0F, "--relative 0.005 --tolerance 0.5", ""},
        {0.0F, -0.0F, "", "frame 0, PIXEL, 1 of 8 pixels, most by 0 at (2, 1): 0 != -0\n"},
        {0.0F, -0.0F, "--tolerance 0", ""},
        {quiet, payload, "", "frame 0, PIXEL, 1 of 8 pixels, most by 0 at (2, 1): nan != nan(0x7fc12345)\n"},
        {quiet, payload, "--tolerance 0", ""},
        {quiet, 1.0F, "--tolerance 1e300",
         "frame 0, PIXEL, 1 of 8 pixels, most by inf at (2, 1): nan != 1\n"},
        {INFINITY, 1.0F, "--relative 1", "frame 0, PIXEL, 1 of 8 pixels, most by inf at (2, 1): inf != 1\n"},
        {INFINITY, INFINITY, "--relative 0", ""},
    };
    for (const Pixels& c : cases) {
        SCOPED_TRACE(testing::Message() << c.a << ", " << c.b << ' ' << c.options);
        const BufferPointer a = floatImage();
        const BufferPointer b = floatImage();
        floatsOf(*a->GetFrame(0))[6] = c.a;
        floatsOf(*b->GetFrame(0))[6] = c.b;
        expectLines(*a, *b, c.options, c.line);
    }
    const BufferPointer a = floatImage();
    const BufferPointer b = floatImage();
    for (int i = 0; i < 3; ++i) {
        floatsOf(*b->GetFrame(0))[i] = static_cast<float>(90 - i * i);
    }
    expectLines(*a, *b, "", "frame 0, PIXEL, 3 of 8 pixels, most by 14 at (2, 0): 100 != 86\n");
}

TEST_F(DiffCommand, seesTheFourthByteOfColours)
{
    const auto colors = [](unsigned char reserved, unsigned char green) {
        BufferPointer buffer(CreateBuffer());
        I_Frame* frame = CreateImageFrame(DT_RGB, 1, 1, 1);
        *static_cast<RgbQuad*>(frame->GetPlane(0, 0)->GetData()) = {3, green, 1, reserved};
        buffer->AddFrame(frame);
        return buffer;
    };
    expectLines(*colors(0, 2), *colors(9, 2), "",
                "frame 0, PIXEL, 1 of 1 pixels, most by 9 at (0, 0): #010203 != #01020309\n");
    expectLines(*colors(0, 2), *colors(0, 6), "",
                "frame 0, PIXEL, 1 of 1 pixels, most by 4 at (0, 0): #010203 != #010603\n");
    expectLines(*colors(0, 2), *colors(0, 6), "--tolerance 4", "");
}

TEST_F(DiffCommand, comparesTypesAsNumbersWhenAskedTo)
{
    const auto image = [](E_DataType type, auto value) {
        BufferPointer buffer(CreateBuffer());
        I_Frame* frame = CreateImageFrame(type, 2, 1, 1);
        std::fill_n(static_cast<decltype(value)*>(frame->GetPlane(0, 0)->GetData()), 2, value);
        buffer->AddFrame(frame);
        return buffer;
    };
    const auto bytes = image(DT_BYTE, static_cast<unsigned char>(200));
    expectLines(*bytes, *image(DT_WORD, static_cast<unsigned short>(200)), "--ignore type", "");
    expectLines(*bytes, *image(DT_DOUBLE, 200.25), "--ignore type",
                "frame 0, PIXEL, 2 of 2 pixels, most by 0.25 at (0, 0): 200 != 200.25\n");
    expectLines(*bytes, *image(DT_RGB, RgbQuad{}), "--ignore type", "frame 0, PIXEL, type: uint8 != rgb\n");
    expectLines(*bytes, *floatImage(), "",
                "frame 0, width: 2 != 4\nframe 0, height: 1 != 2\nframe 0, PIXEL, type: uint8 != float32\n");
}

TEST_F(DiffCommand, comparesFilesOfDifferentLengthAndFormat)
{
    const BufferPointer images = TestSupport::particleImages(20, 16, 5);
    store(*images, "five.qfi");
    store(*images, "five.tif");
    store(*TestSupport::particleImages(20, 16, 3), "three.tif");
    EXPECT_EQ(succeed("diff five.qfi five.tif").err, QString("five.qfi and five.tif agree in 5 frames\n"));
    EXPECT_EQ(qf("diff five.qfi three.tif").out, QString("frames: 5 != 3\n"));
    EXPECT_EQ(succeed("diff -q five.qfi three.tif --frames :3").err, QString());
    const auto json = QJsonDocument::fromJson(qf("diff --json five.qfi three.tif --frames 1:").out.toUtf8());
    EXPECT_FALSE(json["same"].toBool());
    EXPECT_EQ(json["differences"][0]["what"].toString(), QString("frames"));
    EXPECT_EQ(json["differences"][0]["a"].toString(), QString("4"));
    EXPECT_EQ(json["differences"].toArray().size(), 1);
}

/// 1 means that the files differ, so all trouble is 2.
TEST_F(DiffCommand, tellsTroubleFromDifference)
{
    store(*floatImage(), "good.qfi");
    write("bad.qfi", read("good.qfi").left(3000));
    expectRefusals({
        {"diff good.qfi", 2, "qf diff: B is required\nSee 'qf diff --help'."},
        {"diff good.qfi missing.qfi", 2, "qf diff: missing.qfi: no such file; check the name"},
        {"diff missing.qfi good.qfi", 2, "qf diff: missing.qfi: no such file; check the name"},
        {"diff good.qfi good.qfi --frames 1", 2,
         "qf diff: good.qfi: no frame 1; frames count from 0 and there is 1"},
        {"diff good.qfi good.qfi --ignore colour", 2,
         "qf diff: --ignore: colour not in {name,attributes,scales,masks,type}\nSee 'qf diff --help'."},
    });
    EXPECT_EQ(qf("diff good.qfi bad.qfi").exitCode, 2);
    for (const char* tolerance : {"-1", "nan", "inf", "1mm"}) {
        const auto run = qf(QStringLiteral("diff good.qfi good.qfi --tolerance %1").arg(tolerance));
        EXPECT_EQ(run.exitCode, 2);
        EXPECT_EQ(run.err,
                  QStringLiteral("qf diff: --tolerance: '%1' is no distance; write a number from 0 on, "
                                 "such as 1e-6\nSee 'qf diff --help'.\n")
                      .arg(tolerance));
    }
}

} // namespace
