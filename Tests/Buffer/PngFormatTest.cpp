// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/BufferApi.h"
#include "Tests/Support/Files.h"
#include "Tests/Support/Frames.h"
#include "Tests/Support/SampleBuffers.h"

namespace
{

using namespace BufferApi;
using TestSupport::BufferPointer;

class PngFormat : public testing::Test
{
protected:
    [[nodiscard]] QString path() const { return m_directory.filePath(QStringLiteral("file.png")); }
    [[nodiscard]] QString failure(const I_Buffer& buffer) const
    {
        try {
            ExportBuffer(&buffer, path(), {});
        } catch (const RTE::FileWriteError& raised) {
            return raised.message().section(QStringLiteral(": "), 1);
        }
        return {};
    }

private:
    QTemporaryDir m_directory;
};

TEST_F(PngFormat, GivesPixelsScalesAndAttributesBack)
{
    for (const E_DataType type : {DT_BYTE, DT_WORD, DT_RGB}) {
        for (const auto& [width, height] : {std::pair(1U, 1U), {17U, 5U}, {701U, 523U}}) {
            SCOPED_TRACE(type);
            BufferPointer buffer(CreateBuffer());
            auto* frame = CreateImageFrame(type, width, height, 1);
            buffer->AddFrame(frame);
            TestSupport::fillWithNoise(*frame, type);
            if (type == DT_RGB) {
                auto* pixels = static_cast<RgbQuad*>(frame->GetPlane(0, 0)->GetData());
                std::for_each(pixels, pixels + std::size_t{width} * height,
                              [](RgbQuad& p) { p.reserved = 0; });
            }
            buffer->SetName(QStringLiteral("Größe"));
            frame->SetScaleY({-0.05, 8, QStringLiteral("µm"), QStringLiteral("y")});
            TestSupport::setText(*buffer, "Long", QString(10'000'000, QLatin1Char('x')));
            TestSupport::setNumber(*frame, "time", 0.1);
            ExportBuffer(buffer.get(), path(), {});
            const BufferPointer back(ImportBuffer(path()));
            EXPECT_FALSE(back->IsModified(0));
            EXPECT_TRUE(TestSupport::buffersEqual(*buffer, *back));
        }
    }
}

TEST_F(PngFormat, RefusesWhatOnlyItCannotHold)
{
    EXPECT_EQ(failure(*TestSupport::particleImages(3, 2, 2)),
              QStringLiteral("PNG cannot hold more than one frame; .tif and .qfi files can"));
    EXPECT_EQ(failure(*BufferPointer(CreateBuffer())), QStringLiteral("PNG needs one frame"));
    BufferPointer deep(CreateBuffer());
    deep->AddFrame(CreateImageFrame(DT_BYTE, 2, 2, 3));
    EXPECT_EQ(failure(*deep), QStringLiteral("PNG cannot hold 3 planes; .tif and .qfi files can"));
    BufferPointer floats(CreateBuffer());
    floats->AddFrame(CreateImageFrame(DT_FLOAT, 2, 2, 1));
    EXPECT_EQ(
        failure(*floats),
        QStringLiteral(
            "PNG cannot hold pixels other than bytes, words and packed colour; .tif and .qfi files can"));
}

} // namespace
