// SPDX-License-Identifier: Apache-2.0
#include "Tools/qf/Plot/FramePlot.h"
#include "Tools/qf/Mosaic.h"
#include "Tools/qf/Plot/PlotPainter.h"

#include "Core/Buffer/BufferApi.h"
#include "Core/Common/AttributeNames.h"
#include "Core/DataObjects/BufferAttributes.h"
#include "Tests/Support/Raises.h"

#include <QGuiApplication>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace
{

using BufferApi::I_FrameImage;

class FramePlot : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        static int count = 1;
        static char name[] = "QfTests";
        static char* arguments[] = {name, nullptr};
        static const QGuiApplication application(count, arguments);
    }
};

/// Columns rise from left to right: 0, 10, 20 …, in every row.
std::unique_ptr<I_FrameImage> ramp(unsigned int width, unsigned int height)
{
    std::unique_ptr<I_FrameImage> frame(BufferApi::CreateImageFrame(BufferApi::DT_FLOAT, width, height, 1));
    auto* values =
        static_cast<float*>(frame->GetComponent(I_FrameImage::COMPONENT_PIXEL)->GetPlane(0)->GetData());
    for (unsigned int i = 0; i < width * height; ++i) {
        values[i] = 10.0F * static_cast<float>(i % width);
    }
    return frame;
}

/// Colours of the data in one row of the picture, runs of equal ones told once.
std::vector<QRgb> colorsAcross(const QImage& picture, int y, int left, int right)
{
    std::vector<QRgb> colors;
    for (int x = left; x < right; ++x) {
        if (colors.empty() || picture.pixel(x, y) != colors.back()) {
            colors.push_back(picture.pixel(x, y));
        }
    }
    return colors;
}

TEST_F(FramePlot, scalesAxesColorsAndLabels)
{
    const auto frame = ramp(8, 4);
    frame->SetScaleX({0.5, 1.0, "mm", "Position x"});
    frame->SetScaleY({-0.5, 2.0, "mm", ""});
    frame->SetScaleI({2.0, -1.0, "m/s", "Speed"});
    const Qf::Plot plot = Qf::plotOfFrame(*frame, {});
    EXPECT_DOUBLE_EQ(plot.x.from, 0.75);
    EXPECT_DOUBLE_EQ(plot.x.to, 4.75);
    EXPECT_DOUBLE_EQ(plot.y.from, 2.25);
    EXPECT_DOUBLE_EQ(plot.y.to, 0.25);
    EXPECT_EQ(plot.x.label, QString("Position x [mm]"));
    EXPECT_EQ(plot.y.label, QString("y [mm]"));
    ASSERT_TRUE(plot.colorBar);
    EXPECT_DOUBLE_EQ(plot.colorBar->low, -1.0);
    EXPECT_DOUBLE_EQ(plot.colorBar->high, 139.0);
    EXPECT_EQ(plot.colorBar->label, QString("Speed [m/s]"));
}

TEST_F(FramePlot, drawsMosaicsInTheirColors)
{
    const std::unique_ptr<I_FrameImage> frame(BufferApi::CreateImageFrame(BufferApi::DT_WORD, 6, 4, 1));
    frame->SetScaleI({2.0, 0.0, "counts", ""});
    auto* words = static_cast<unsigned short*>(frame->GetPlane(0, 0)->GetData());
    for (unsigned int i = 0; i < 24; ++i) {
        const unsigned int oddX = i % 6 % 2;
        const unsigned int oddY = i / 6 % 2;
        words[i] = static_cast<unsigned short>(oddX == oddY ? 300 - 200 * oddX : 200);
    }
    EXPECT_TRUE(Qf::plotOfFrame(*frame, {}).colorBar);
    DataObjects::BufferAttributes(*frame).set(Attr::rgbFrame, 1);
    frame->AddMask({});
    static_cast<unsigned char*>(
        frame->GetComponent(I_FrameImage::COMPONENT_MASK)->GetPlane(0)->GetData())[3] = 0;
    EXPECT_FALSE(Qf::plotOfFrame(*frame, {}).colorBar);
    Qf::FramePlotOptions inGray;
    inGray.colorMap = "gray";
    Qf::FramePlotOptions ofMask;
    ofMask.component = "MASK";
    EXPECT_TRUE(Qf::plotOfFrame(*frame, inGray).colorBar);
    EXPECT_TRUE(Qf::plotOfFrame(*frame, ofMask).colorBar);
    const QImage image = Qf::mosaicImage(*frame, 0, Qf::ValueRange{200.0, 600.0});
    for (int i = 0; i < 24; ++i) {
        EXPECT_EQ(image.pixel(i % 6, i / 6), i == 3 ? qRgba(0, 0, 0, 0) : qRgb(255, 128, 0)) << i;
    }
    // Without a range the lowest and highest channels take the ends.
    EXPECT_EQ(Qf::mosaicImage(*frame, 0, {}).pixel(5, 3), qRgb(255, 128, 0));
}

TEST_F(FramePlot, drawsEachPixelInItsColorAndNothingElseInsideTheAxes)
{
    const auto frame = ramp(8, 4);
    frame->AddMask({});
    auto* valid = static_cast<unsigned char*>(
        frame->GetComponent(I_FrameImage::COMPONENT_MASK)->GetPlane(0)->GetData());
    std::fill(valid, valid + 32, static_cast<unsigned char>(1));
    valid[3] = 0;
    Qf::FramePlotOptions options;
    options.colorMap = "gray";
    options.range = {0.0, 70.0};
    Qf::Plot plot = Qf::plotOfFrame(*frame, options);
    plot.colorBar.reset();
    const QImage picture = Qf::paintPlot(plot, 400);
    // The axes' frame is black, so that the data begins behind the first black pixel.
    const int middle = picture.height() / 2 - 20;
    int left = picture.width() / 3;
    while (picture.pixel(left, middle) != qRgb(0, 0, 0)) {
        --left;
    }
    const std::vector<QRgb> colors = colorsAcross(picture, middle, left - 20, picture.width() - 30);
    for (int column = 1; column < 7; ++column) {
        const int gray = static_cast<int>(std::lround(255.0 * column / 7.0));
        EXPECT_THAT(colors, testing::Contains(qRgb(gray, gray, gray))) << column;
    }
    const QColor blank(0xd8, 0xdc, 0xe4);
    int blanks = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            blanks += picture.pixelColor(x, y) == blank ? 1 : 0;
        }
    }
    const int pixelWidth = (picture.width() - left) / 9;
    EXPECT_GT(blanks, pixelWidth * pixelWidth / 2);
    EXPECT_LT(blanks, 2 * pixelWidth * pixelWidth);
}

TEST_F(FramePlot, cutsRegionsWithTheirAxes)
{
    const auto frame = ramp(8, 4);
    Qf::FramePlotOptions options;
    options.region = QRect(5, 1, 2, 3);
    const Qf::Plot plot = Qf::plotOfFrame(*frame, options);
    EXPECT_EQ(plot.columns, 2);
    EXPECT_EQ(plot.rows, 3);
    EXPECT_DOUBLE_EQ(plot.x.from, 4.5);
    EXPECT_DOUBLE_EQ(plot.y.to, 3.5);
    EXPECT_DOUBLE_EQ(plot.colorBar->low, 50.0);
    EXPECT_DOUBLE_EQ(plot.colorBar->high, 60.0);
}

TEST_F(FramePlot, leavesNoLabelOutsideThePicture)
{
    for (const QSize size : {QSize(8, 4), QSize(1200, 2), QSize(2, 900), QSize(900, 700)}) {
        const auto frame =
            ramp(static_cast<unsigned int>(size.width()), static_cast<unsigned int>(size.height()));
        frame->SetScaleX({1e-7, 0.0, "kilometre", "A rather long description of the axis"});
        frame->SetScaleY({1e9, 0.0, "kilometre", "A rather long description of the axis"});
        Qf::FramePlotOptions options;
        options.title = QString(300, QLatin1Char('W'));
        const QImage picture = Qf::paintPlot(Qf::plotOfFrame(*frame, options), 500);
        for (int x = 0; x < picture.width(); ++x) {
            ASSERT_EQ(picture.pixel(x, 0), qRgb(255, 255, 255)) << x;
            ASSERT_EQ(picture.pixel(x, picture.height() - 1), qRgb(255, 255, 255)) << x;
        }
        for (int y = 0; y < picture.height(); ++y) {
            ASSERT_EQ(picture.pixel(0, y), qRgb(255, 255, 255)) << y;
            ASSERT_EQ(picture.pixel(picture.width() - 1, y), qRgb(255, 255, 255)) << y;
        }
    }
}

TEST_F(FramePlot, tellsWhatCanBeDrawn)
{
    const auto frame = ramp(8, 4);
    const std::unique_ptr<BufferApi::I_Frame> vectors(BufferApi::CreateVectorFrame2C(4, 3, 1, 1));
    Qf::FramePlotOptions unknown;
    unknown.component = "U";
    EXPECT_TRUE(TestSupport::raises<RTE::InvalidArgumentError>(
        "no component 'U'; the frame has PIXEL", [&] { (void)Qf::plotOfFrame(*frame, unknown); }));
    EXPECT_EQ(Qf::plotOfFrame(*vectors, unknown).columns, 4);
    EXPECT_THROW((void)Qf::plotOfFrame(*vectors, {}), RTE::InvalidArgumentError);
    Qf::FramePlotOptions beyond;
    beyond.z = 1;
    EXPECT_TRUE(TestSupport::raises<RTE::OutOfRangeError>("no plane 1; planes count from 0 and there are 1",
                                                          [&] { (void)Qf::plotOfFrame(*frame, beyond); }));
    Qf::FramePlotOptions outside;
    outside.region = QRect(7, 0, 2, 2);
    EXPECT_THROW((void)Qf::plotOfFrame(*frame, outside), RTE::OutOfRangeError);
}

TEST(ValueRange, ignoresAFewHotPixelsAndWhatIsNoNumber)
{
    std::vector<double> values(2001);
    std::iota(values.begin(), values.end(), 0.0);
    values[1000] = std::nan("");
    values[3] = 1e9;
    const Qf::ValueRange range = Qf::percentileRange(values);
    EXPECT_NEAR(range.low, 10.0, 2.0);
    EXPECT_NEAR(range.high, 1990.0, 2.0);
    EXPECT_LT(Qf::percentileRange({7.0, 7.0}).low, 7.0);
    EXPECT_GT(Qf::percentileRange({7.0, 7.0}).high, 7.0);
    // Nearly all background: the few others must not vanish.
    values.assign(2000, 0.0);
    values[7] = 5.0;
    EXPECT_DOUBLE_EQ(Qf::percentileRange(values).high, 5.0);
    EXPECT_DOUBLE_EQ(Qf::symmetric({-1.0, 3.0}).low, -3.0);
}

TEST(ColorMap, endsInItsEndColorsAndHasZeroInTheMiddle)
{
    for (const QString& name : Qf::ColorMap::names()) {
        const Qf::ColorMap map(name);
        EXPECT_EQ(map.color(-5.0), map.color(0.0));
        EXPECT_EQ(map.color(2.0), map.color(1.0));
        EXPECT_NE(map.color(0.0), map.color(1.0));
    }
    EXPECT_EQ(Qf::ColorMap("gray").color(0.5), qRgb(128, 128, 128));
    EXPECT_EQ(Qf::ColorMap("viridis").color(1.0), qRgb(0xfd, 0xe7, 0x25));
    EXPECT_TRUE(Qf::ColorMap("diverging").isDiverging());
    EXPECT_TRUE(TestSupport::raises<RTE::InvalidArgumentError>(
        "no colour map 'jet', choose one of gray, viridis, inferno, diverging",
        [] { Qf::ColorMap map("jet"); }));
}

} // namespace
