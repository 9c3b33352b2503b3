// SPDX-License-Identifier: Apache-2.0
/// \file
/// What kill_test.py kills while it writes, and what looks at the file afterwards. All frames follow from
/// their number, so that anybody can tell what should be there.
///
///     KillWriter stream FILE FRAMES    appends so many frames, prints each number once it is acknowledged
///     KillWriter export FILE           exports a buffer again and again: a file of N frames as number N
///     KillWriter check-stream FILE N   at least N frames, each as it was made
///     KillWriter check-export FILE N   number N or the one after it, as a whole
///
/// With KILL_AT_WRITE=N in its environment it kills itself in the midst of the N-th write.
#include "Core/Buffer/BufferApi.h"
#include "Core/Buffer/FrameStream.h"
#include "Tests/Support/Frames.h"
#include "Tests/Support/SampleBuffers.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>

#include <sys/syscall.h>
#include <unistd.h>

namespace
{

using namespace BufferApi;
using TestSupport::BufferPointer;

constexpr unsigned long long pageBytes = 4096;

long long writeToKillAt()
{
    const char* number = std::getenv("KILL_AT_WRITE");
    return number == nullptr ? -1 : std::atoll(number);
}

/// The system looks for signals between two pages, so that far a write can have come.
ssize_t countedWrite(int file, const void* source, std::size_t bytes, off_t offset)
{
    static const long long last = writeToKillAt();
    static long long count = 0;
    if (++count == last) {
        const auto first = static_cast<unsigned long long>(offset);
        const unsigned long long cut = (first + bytes - 1) / pageBytes * pageBytes;
        syscall(SYS_pwrite64, file, source, cut > first ? cut - first : 0, offset);
        raise(SIGKILL);
    }
    return syscall(SYS_pwrite64, file, source, bytes, offset);
}

std::unique_ptr<I_Frame> makeFrame(unsigned int number)
{
    std::unique_ptr<I_Frame> frame;
    if (number % 5 == 4) {
        frame.reset(CreateVectorFrame2C(9, 7, 1, 2));
    } else if (number % 7 == 6) {
        frame.reset(CreateImageFrame(DT_FLOAT, 33, 20 + number % 3, 2));
    } else {
        frame.reset(CreateImageFrame(DT_WORD, 64, 48, 1));
    }
    TestSupport::fillWithNoise(*frame, number);
    TestSupport::setNumber(*frame, "time", 0.001 * number);
    TestSupport::setText(*frame, "note " + std::to_string(number % 3), QString::number(number));
    if (number % 3 == 2) {
        frame->SetScaleX({0.5 + number, 0, QStringLiteral("mm"), QStringLiteral("x")});
    }
    return frame;
}

/// What is known of the recording when frame `number` is appended.
void describe(I_Buffer& buffer, unsigned int number)
{
    buffer.SetName(QStringLiteral("run"));
    TestSupport::setText(buffer, "started", QStringLiteral("yes"));
    if (number >= 3) {
        TestSupport::setText(buffer, "since frame 3", QString(70000, QLatin1Char('x')));
    }
    TestSupport::setText(buffer, "tens", QString::number(number / 10));
}

void say(unsigned int number)
{
    std::printf("%u\n", number);
    std::fflush(stdout);
}

int stream(const QString& path, unsigned int frames)
{
    FrameStream file(path, {{"PackType", frames % 2 == 0 ? 2 : 0}});
    for (unsigned int number = 0; number < frames; ++number) {
        describe(file.description(), number);
        file.append(*makeFrame(number));
        say(number + 1);
    }
    file.finish();
    return 0;
}

BufferPointer makeBuffer(unsigned int frames)
{
    BufferPointer buffer(CreateBuffer());
    for (unsigned int number = 0; number < frames; ++number) {
        buffer->AddFrame(makeFrame(number).release());
    }
    describe(*buffer, frames == 0 ? 0 : frames - 1);
    return buffer;
}

int exportAgain(const QString& path)
{
    for (unsigned int frames = 1;; frames = frames % 30 + 1) {
        ExportBuffer(makeBuffer(frames).get(), path, {{"PackType", frames % 2 == 0 ? 2 : 0}});
        say(frames);
    }
}

bool isAsMade(const I_Buffer& buffer, unsigned int described)
{
    const BufferPointer made = makeBuffer(buffer.GetFrameCount());
    describe(*made, described);
    const testing::AssertionResult result = TestSupport::buffersEqual(*made, buffer);
    if (!result) {
        std::fprintf(stderr, "%s\n", result.message());
    }
    return static_cast<bool>(result);
}

int checkStream(const QString& path, unsigned int acknowledged)
{
    const BufferPointer buffer(ImportBuffer(path));
    const unsigned int frames = buffer->GetFrameCount();
    if (frames < acknowledged || frames > acknowledged + 1) {
        std::fprintf(stderr, "%u frames, %u were acknowledged\n", frames, acknowledged);
        return 1;
    }
    if (frames == 0) {
        return 0;
    }
    return isAsMade(*buffer, frames - 1) ? 0 : 1;
}

int checkExport(const QString& path, unsigned int done)
{
    const BufferPointer buffer(ImportBuffer(path));
    const unsigned int frames = buffer->GetFrameCount();
    if (frames != done && frames != done % 30 + 1) {
        std::fprintf(stderr, "%u frames, the last export had %u\n", frames, done);
        return 1;
    }
    return isAsMade(*buffer, frames - 1) ? 0 : 1;
}

int run(const std::string& work, const QString& path, unsigned int number)
{
    if (work == "stream") {
        return stream(path, number);
    }
    if (work == "export") {
        return exportAgain(path);
    }
    return work == "check-stream" ? checkStream(path, number) : checkExport(path, number);
}

} // namespace

// In place of the system library's for all libraries of this process.
extern "C" __attribute__((visibility("default"))) ssize_t pwrite(int file, const void* source,
                                                                 std::size_t bytes, off_t offset)
{
    return countedWrite(file, source, bytes, offset);
}

extern "C" __attribute__((visibility("default"))) ssize_t pwrite64(int file, const void* source,
                                                                   std::size_t bytes, off64_t offset)
{
    return countedWrite(file, source, bytes, offset);
}

int main(int argc, char** argv)
{
    if (argc < 3) {
        return 2;
    }
    try {
        return run(argv[1], QString::fromLocal8Bit(argv[2]),
                   argc > 3 ? static_cast<unsigned int>(std::atoi(argv[3])) : 0);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
