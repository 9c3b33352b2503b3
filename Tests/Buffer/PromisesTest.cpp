// SPDX-License-Identifier: Apache-2.0
// What a user of native files counts on and no file shows: how much memory a long recording takes, when it is
// on the disk, and what threads wait for.
#include "Core/Buffer/BufferApi.h"
#include "Core/Buffer/FrameStream.h"
#include "Core/Common/Array.h"
#include "Core/Common/Raise.h"
#include "Tests/Buffer/SystemCalls.h"
#include "Tests/Support/Files.h"
#include "Tests/Support/Frames.h"
#include "Tests/Support/InChild.h"
#include "Tests/Support/SampleBuffers.h"

#include <QDir>

#include <fstream>
#include <thread>

#include <malloc.h>
#include <sys/stat.h>

namespace
{

using namespace BufferApi;
using TestSupport::BufferPointer;

class Promises : public testing::Test
{
protected:
    [[nodiscard]] QString path(const QString& name = QStringLiteral("run.qfi")) const
    {
        return m_directory.filePath(name);
    }

private:
    // In memory where that is possible: large files and many syncs would keep a disk busy.
    QTemporaryDir m_directory{QDir(QStringLiteral("/dev/shm")).exists()
                                  ? QStringLiteral("/dev/shm/promises-XXXXXX")
                                  : QDir::temp().filePath(QStringLiteral("promises-XXXXXX"))};
};

/// Bytes of memory that the process had at most since the mark was set back, or has now.
unsigned long long memory(const std::string& field)
{
    std::ifstream status("/proc/self/status");
    for (std::string name; status >> name;) {
        unsigned long long kibibytes = 0;
        if (name == field && status >> kibibytes) {
            return 1024 * kibibytes;
        }
    }
    return 0;
}

/// How much more memory than before the call was taken at any time in it.
template <typename Call>
unsigned long long extraMemory(Call&& call)
{
    // What earlier tests freed is not to serve for this.
    RTE::freeReserve();
    malloc_trim(0);
    std::ofstream("/proc/self/clear_refs") << 5;
    const unsigned long long before = memory("VmRSS:");
    call();
    const unsigned long long peak = memory("VmHWM:");
    RTE::verify(before > 0 && peak >= before, "No figures of memory");
    return peak - before;
}

TEST_F(Promises, ARecordingOfTenGigabytesTakesTheMemoryOfAFrame)
{
#ifdef DATAOBJECTS_SANITIZED
    GTEST_SKIP() << "a sanitizer takes memory of its own";
#endif
    constexpr unsigned int frames = 512;
    constexpr unsigned long long frameBytes = 2ULL * 4096 * 2560;
    constexpr unsigned long long aLittle = 8ULL << 20U;
    const QString raised = TestSupport::inChild([&] {
        const TestSupport::HolesForZeros holes;
        const std::unique_ptr<I_FrameImage> frame(CreateImageFrame(DT_WORD, 4096, 2560, 1));
        auto* pixels = static_cast<unsigned short*>(frame->GetPlane(0, 0)->GetData());
        std::fill(pixels, pixels + frameBytes / 2, static_cast<unsigned short>(0));
        const unsigned long long forWriting = extraMemory([&] {
            FrameStream stream(path(), {{"PackType", 0}});
            for (unsigned int i = 0; i < frames; ++i) {
                pixels[frameBytes / 2 - 1] = i == 300 ? 7 : 0;
                stream.append(*frame);
            }
            stream.finish();
        });
        RTE::verify(forWriting < frameBytes, "The writer takes memory for frames");
        const unsigned long long forReading = extraMemory([&] {
            const BufferPointer buffer(ImportBuffer(path()));
            RTE::verify(buffer->GetFrameCount() == frames, "Frames are missing");
            const void* data = buffer->GetFrame(300)->GetPlane(0, 0)->GetData();
            RTE::verify(static_cast<const unsigned short*>(data)[frameBytes / 2 - 1] == 7, "Other pixels");
        });
        RTE::verify(forReading > frameBytes / 2, "Memory is not measured");
        RTE::verify(forReading < frameBytes + aLittle, "The reader takes memory for more than a frame");
    });
    EXPECT_EQ(raised, QString());
    struct stat status = {};
    ASSERT_EQ(stat(QFile::encodeName(path()).constData(), &status), 0);
    EXPECT_GT(static_cast<unsigned long long>(status.st_size), frames * frameBytes);
    EXPECT_LT(512 * status.st_blocks, 256 << 20) << "the file has no holes";
}

TEST_F(Promises, AnExportIsOnTheDiskBeforeItHasItsName)
{
    const BufferPointer buffer = TestSupport::particleImages(64, 48, 2);
    for (const char* name : {"run.qfi", "run.tif", "run.png"}) {
        SCOPED_TRACE(name);
        const TestSupport::FileCalls file;
        const BufferPointer one = TestSupport::particleImages(64, 48, 1);
        ExportBuffer(one.get(), path(QLatin1String(name)), {});
        EXPECT_EQ(file.calls(), (std::vector<std::string>{"write", "fsync", "rename", "fsync folder"}));
    }
    const TestSupport::FileCalls file;
    FrameStream stream(path(QStringLiteral("stream.qfi")));
    stream.append(*buffer->GetFrame(0));
    stream.finish();
    EXPECT_EQ(file.calls(),
              (std::vector<std::string>{"write", "fsync", "rename", "fsync folder", "write", "fsync"}));
}

TEST_F(Promises, ThreadsPackAndUnpackAtTheSameTime)
{
    const BufferPointer buffer = TestSupport::particleImages(320, 240, 3);
    const auto inTwoThreads = [&](const auto& work) {
        std::thread other([&] { work(path(QStringLiteral("a.qfi"))); });
        work(path(QStringLiteral("b.qfi")));
        other.join();
    };
    const TestSupport::CoderMeeting meeting;
    inTwoThreads([&](const QString& file) { ExportBuffer(buffer.get(), file, {{"PackType", 2}}); });
    EXPECT_TRUE(meeting.havePacked());
    inTwoThreads([&](const QString& file) {
        EXPECT_TRUE(TestSupport::buffersEqual(*BufferPointer(ImportBuffer(file)), *buffer));
    });
    EXPECT_TRUE(meeting.haveUnpacked());
    // Planes of one file, too.
    const TestSupport::CoderMeeting again;
    const BufferPointer lazy(ImportBuffer(path(QStringLiteral("a.qfi"))));
    std::thread other([&] { static_cast<void>(lazy->GetFrame(1)->GetPlane(0, 0)->GetData()); });
    static_cast<void>(lazy->GetFrame(0)->GetPlane(0, 0)->GetData());
    other.join();
    EXPECT_TRUE(again.haveUnpacked());
}

} // namespace
