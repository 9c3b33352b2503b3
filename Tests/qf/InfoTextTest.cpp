// SPDX-License-Identifier: Apache-2.0
#include "Tools/qf/InfoText.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cmath>

namespace
{

using BufferApi::I_Buffer;
using BufferApi::I_Frame;
using BufferApi::I_FrameImage;

void setText(I_Frame& frame, const std::string& name, const QString& value)
{
    dynamic_cast<BufferApi::I_Attribute<QString>&>(*frame.CreateAttribute(name, BufferApi::AT_STRING))
        .SetValue(value);
}

I_Frame* imageFrame(BufferApi::E_DataType type, const QString& time)
{
    auto* frame = BufferApi::CreateImageFrame(type, 2, 2, 2);
    for (unsigned int z = 0; z < 2; ++z) {
        auto* bytes = static_cast<unsigned char*>(
            frame->GetComponent(I_FrameImage::COMPONENT_PIXEL)->GetPlane(z)->GetData());
        std::fill(bytes, bytes + 4 * BufferApi::GetDataTypeSize(type), static_cast<unsigned char>(0));
    }
    setText(*frame, "time", time);
    return frame;
}

Qf::FileInfo infoOf(const I_Buffer& buffer)
{
    std::vector<unsigned int> numbers;
    std::vector<Qf::Statistics> statistics;
    for (unsigned int i = 0; i < buffer.GetFrameCount(); ++i) {
        numbers.push_back(i);
        const auto ofFrame = Qf::statistics(i, *buffer.GetFrame(i));
        statistics.insert(statistics.end(), ofFrame.begin(), ofFrame.end());
    }
    return {"run.qfi", 2048, "native", Qf::summarize(buffer, numbers), statistics, {}};
}

TEST(InfoText, tellsRunsOfFramesAndWhatChangesWithinThem)
{
    const std::unique_ptr<I_Buffer> buffer(BufferApi::CreateBuffer());
    buffer->SetName("evening\x1b[2Jrun");
    buffer->AddFrame(imageFrame(BufferApi::DT_BYTE, "0"));
    buffer->AddFrame(imageFrame(BufferApi::DT_BYTE, "1"));
    buffer->AddFrame(imageFrame(BufferApi::DT_BYTE, "2"));
    buffer->AddFrame(imageFrame(BufferApi::DT_INT32, "3"));
    const std::string text = Qf::infoText({infoOf(*buffer)}, true).toStdString();
    EXPECT_THAT(text, testing::StartsWith("run.qfi  image  4 frames  2x2x2  mixed  2.0 KiB\n"));
    EXPECT_THAT(text, testing::HasSubstr("frames 0 to 2: 2x2x2, uint8"));
    EXPECT_THAT(text, testing::HasSubstr("attribute time              0 ... 2\n"));
    EXPECT_THAT(text, testing::HasSubstr("frame 3: 2x2x2, int32"));
    EXPECT_THAT(text, testing::HasSubstr("attribute time              3\n"));
    // A file must not steer the terminal.
    EXPECT_THAT(text, testing::HasSubstr("evening\\x1b[2Jrun"));
}

TEST(InfoText, tellsVectors)
{
    const std::unique_ptr<I_Buffer> buffer(BufferApi::CreateBuffer());
    auto* frame = BufferApi::CreateVectorFrame2C(5, 4, 1, 2);
    frame->SetGridX(16);
    frame->SetGridY(8);
    buffer->AddFrame(frame);
    const std::string text = Qf::infoText({infoOf(*buffer)}, true).toStdString();
    EXPECT_THAT(text, testing::HasSubstr("vector  1 frame  5x4  float32"));
    EXPECT_THAT(text, testing::HasSubstr("16 x 8 x 1 pixels"));
    EXPECT_THAT(text, testing::HasSubstr("choices                     2"));
    const QJsonObject json = QJsonDocument::fromJson(Qf::infoJson({infoOf(*buffer)}).toUtf8())
                                 .array()
                                 .at(0)["frames"]
                                 .toArray()
                                 .at(0)
                                 .toObject();
    EXPECT_EQ(json["kind"].toString(), QString("vector"));
    EXPECT_EQ(json["choices"].toInt(), 2);
    EXPECT_EQ(json["grid"].toArray().at(0).toInt(), 16);
}

TEST(InfoText, writesJsonThatEveryReaderTakes)
{
    const std::unique_ptr<I_Buffer> buffer(BufferApi::CreateBuffer());
    buffer->SetName(QChar(0xD83D) + QStringLiteral("\\ud83d \x01 ") + QString::fromUtf8("\xF0\x9F\x98\x80") +
                    QChar(0xDE00));
    EXPECT_THAT(Qf::infoJson({infoOf(*buffer)}).toStdString(),
                testing::HasSubstr("\"\\ufffd\\\\ud83d \\u0001 \xF0\x9F\x98\x80\\ufffd\""));
}

TEST(InfoText, countsWhatIsNoNumberApart)
{
    const std::unique_ptr<I_Buffer> buffer(BufferApi::CreateBuffer());
    I_Frame* frame = imageFrame(BufferApi::DT_DOUBLE, "0");
    frame->SetScaleI({-2.0, 1.0, "m", ""});
    auto* low = static_cast<double*>(frame->GetPlane(0, 0)->GetData());
    auto* high = static_cast<double*>(frame->GetPlane(0, 1)->GetData());
    low[0] = std::nan("");
    low[1] = 1e9;
    std::fill(high, high + 4, 1e9 + 2.0);
    buffer->AddFrame(frame);
    const Qf::Statistics values = Qf::statistics(0, *buffer->GetFrame(0)).at(0);
    EXPECT_EQ(values.count, 7U);
    EXPECT_EQ(values.notFinite, 1U);
    EXPECT_DOUBLE_EQ(values.minimum, 1.0 - 2.0 * (1e9 + 2.0));
    EXPECT_DOUBLE_EQ(values.maximum, 1.0);
    EXPECT_NEAR(values.mean, 1.0 - 2.0 * (5e9 + 8.0) / 7.0, 1.0);
    const double deviation =
        2.0 * std::sqrt((1e18 + 4.0 * (1e9 + 2.0) * (1e9 + 2.0)) / 7.0 - std::pow((5e9 + 8.0) / 7.0, 2));
    EXPECT_NEAR(values.deviation, deviation, 1e-6 * deviation);

    std::fill(low, low + 4, std::nan(""));
    std::fill(high, high + 4, std::nan(""));
    const QJsonObject json = QJsonDocument::fromJson(Qf::infoJson({infoOf(*buffer)}).toUtf8())
                                 .array()
                                 .at(0)["statistics"]
                                 .toArray()
                                 .at(0)
                                 .toObject();
    EXPECT_EQ(json["count"].toInt(), 0);
    EXPECT_TRUE(json["mean"].isNull());
}

TEST(InfoText, hashesColorsWithoutTheByteThatCarriesNothing)
{
    const auto hash = [](unsigned char reserved, unsigned char green) {
        const std::unique_ptr<I_Buffer> buffer(BufferApi::CreateBuffer());
        I_Frame* frame = BufferApi::CreateImageFrame(BufferApi::DT_RGB, 1, 1, 1);
        *static_cast<BufferApi::RgbQuad*>(frame->GetPlane(0, 0)->GetData()) = {3, green, 1, reserved};
        buffer->AddFrame(frame);
        Qf::PlanesHash planes;
        planes.add(*buffer->GetFrame(0));
        return planes.text();
    };
    EXPECT_EQ(hash(0, 2), hash(9, 2));
    EXPECT_NE(hash(0, 2), hash(0, 4));
    // printf '\x01\x02\x03' | sha256sum
    EXPECT_EQ(hash(0, 2), QString("039058c6f2c0cb492c533b0a4d14ef77cc0f78abccced5287d84a1a2011cfb81"));
}

} // namespace
