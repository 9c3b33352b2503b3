// SPDX-License-Identifier: Apache-2.0
#include "Tests/qf/QfFolder.h"

#include "Tests/Support/Files.h"
#include "Tests/Support/Frames.h"
#include "Tests/Support/SampleBuffers.h"

#include "Core/Buffer/BufferApi.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace
{

class VerifyCommand : public QfFolder
{
protected:
    VerifyCommand()
    {
        BufferApi::ExportBuffer(m_images.get(), path("run.qfi"), {{"PackType", 0}});
        store(*m_images, "run.tif");
    }

    TestSupport::BufferPointer m_images = TestSupport::particleImages(20, 16, 5);
};

TEST_F(VerifyCommand, tellsThatAllIsWell)
{
    store(*TestSupport::vectorFields(2), "vectors.qfv");
    const auto run = succeed("verify run.qfi run.tif vectors.qfv --quiet");
    EXPECT_EQ(run.err, QString());
    EXPECT_EQ(run.out.toStdString(),
              "run.qfi: ok, native, 5 frames, 3.1 KiB of pixels, all checksums hold\n"
              "run.tif: ok, TIFF, 5 frames, 3.1 KiB of pixels; the format has no checksums, a changed pixel "
              "does not "
              "show\n"
              "vectors.qfv: ok, native, 2 frames, 6.1 KiB of pixels, all checksums hold\n");
}

TEST_F(VerifyCommand, tellsWhenChecksumsAreMissing)
{
    // Pixels without a checksum; pixels with one, but not the table of where they are.
    for (const char* name : {"h5py-plain.qfi", "h5py-old.qfi"}) {
        SCOPED_TRACE(name);
        write(name, TestSupport::contentOf(TestSupport::goldenFile(name)));
        EXPECT_THAT(
            succeed(QStringLiteral("verify %1").arg(name)).out.toStdString(),
            testing::EndsWith("of pixels; parts of the file have no checksums, a change there does not "
                              "show; 'qf convert' writes a file that has\n"));
        const auto json =
            QJsonDocument::fromJson(succeed(QStringLiteral("verify --json %1").arg(name)).out.toUtf8());
        EXPECT_FALSE(json[0]["checksums"].toBool());
        succeed(QStringLiteral("convert --force %1 ours.qfi").arg(name));
        EXPECT_THAT(succeed("verify ours.qfi").out.toStdString(), testing::HasSubstr("all checksums hold"));
    }
    write("checked.qfi", TestSupport::contentOf(TestSupport::goldenFile("h5py.qfi")));
    EXPECT_THAT(succeed("verify checked.qfi").out.toStdString(), testing::HasSubstr("all checksums hold"));
}

TEST_F(VerifyCommand, tellsWhatIsDamagedAndReadsTheRest)
{
    for (const unsigned int number : {1U, 4U}) {
        TestSupport::flipBitOf(*m_images->GetFrame(number)->GetPlane(0, 0), path("run.qfi"));
    }
    for (const char* jobs : {"1", "4"}) {
        SCOPED_TRACE(jobs);
        const auto run = qf(QStringLiteral("verify run.qfi run.tif --jobs %1").arg(jobs));
        EXPECT_EQ(run.exitCode, 1);
        EXPECT_EQ(run.err, QString());
        const QStringList lines = run.out.split('\n');
        ASSERT_EQ(lines.size(), 5) << run.out.toStdString();
        EXPECT_EQ(lines[0], QString("run.qfi: damaged, 2 failures in 5 frames"));
        EXPECT_THAT(lines[1].toStdString(),
                    testing::StartsWith("  frame 1, PIXEL, z 0: Cannot read 'run.qfi'"));
        EXPECT_THAT(lines[2].toStdString(),
                    testing::StartsWith("  frame 4, PIXEL, z 0: Cannot read 'run.qfi'"));
        EXPECT_THAT(lines[3].toStdString(), testing::StartsWith("run.tif: ok"));
    }
    const auto run = qf("verify run.tif run.qfi --json");
    EXPECT_EQ(run.exitCode, 1);
    const auto json = QJsonDocument::fromJson(run.out.toUtf8());
    EXPECT_TRUE(json[0]["ok"].toBool());
    EXPECT_FALSE(json[0]["checksums"].toBool());
    EXPECT_FALSE(json[1]["ok"].toBool());
    EXPECT_EQ(json[1]["planes"].toInt(), 5);
    EXPECT_EQ(json[1]["damages"][1]["frame"].toInt(), 4);
    EXPECT_EQ(json[1]["damages"][1]["component"].toString(), QString("PIXEL"));
}

TEST_F(VerifyCommand, saysWhenNothingCanBeRead)
{
    write("short.qfi", read("run.qfi").left(3000));
    write("empty.qfi", {});
    write("text.qfi", "no frames at all");
    const auto run = qf("verify short.qfi empty.qfi text.qfi missing.qfi run.qfi");
    EXPECT_EQ(run.exitCode, 1);
    const QStringList lines = run.out.split('\n');
    ASSERT_EQ(lines.size(), 4) << run.out.toStdString();
    EXPECT_EQ(lines[0], QString("short.qfi: damaged, nothing can be read"));
    EXPECT_THAT(lines[1].toStdString(), testing::StartsWith("  file: Cannot "));
    EXPECT_THAT(lines[2].toStdString(), testing::StartsWith("run.qfi: ok"));
    const QStringList errors = run.err.split('\n');
    ASSERT_EQ(errors.size(), 4) << run.err.toStdString();
    EXPECT_EQ(errors[0], QString("qf verify: Cannot open 'empty.qfi': the file is empty"));
    EXPECT_THAT(errors[1].toStdString(),
                testing::StartsWith("qf verify: Cannot open 'text.qfi': unknown content; known are native"));
    EXPECT_EQ(errors[2], QString("qf verify: missing.qfi: no such file; check the name"));
}

} // namespace
