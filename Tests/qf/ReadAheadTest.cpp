// SPDX-License-Identifier: Apache-2.0
#include "Tools/qf/ReadAhead.h"

#include "Tools/qf/Parallel.h"

#include "Tests/Support/Files.h"
#include "Tests/Support/Frames.h"
#include "Tests/Support/SampleBuffers.h"

#include "Core/Common/Raise.h"

#include <QTemporaryDir>

#include <atomic>

#include <sys/resource.h>

namespace
{

/// Frames of several files, each frame different.
class ReadAheadThreads : public testing::Test
{
protected:
    QString makeFile(const QString& name, unsigned int frames)
    {
        m_sources.push_back(TestSupport::particleImages(40, 30, frames));
        const QString path = m_folder.filePath(name);
        BufferApi::ExportBuffer(m_sources.back().get(), path, {});
        return path;
    }

    void expectSame(const BufferApi::I_Frame& frame, std::size_t file, unsigned int index) const
    {
        EXPECT_TRUE(TestSupport::framesEqual(frame, *m_sources[file]->GetFrame(index)))
            << file << ", " << index;
    }

    QTemporaryDir m_folder;
    std::vector<TestSupport::BufferPointer> m_sources;
};

TEST_F(ReadAheadThreads, giveTheFramesInOrder)
{
    const QStringList paths{makeFile("a.qfi", 5), makeFile("none.qfi", 0), makeFile("b.tif", 3)};
    for (const unsigned int jobs : {1U, 2U, 7U}) {
        SCOPED_TRACE(jobs);
        const Qf::FrameInputs inputs(paths);
        EXPECT_EQ(inputs.frameCount(), 8U);
        Qf::ReadAhead frames(inputs, {7, 6, 4, 0, 5}, jobs);
        expectSame(frames.take(0), 2, 2);
        expectSame(frames.take(1), 2, 1);
        expectSame(frames.take(2), 0, 4);
        expectSame(frames.take(2), 0, 4);
        expectSame(frames.take(4), 2, 0);
    }
}

TEST_F(ReadAheadThreads, endWhenNobodyTakesTheRest)
{
    const QString path = makeFile("a.qfi", 20);
    std::vector<unsigned int> all(20);
    std::iota(all.begin(), all.end(), 0U);
    for (int i = 0; i < 20; ++i) {
        const Qf::FrameInputs inputs({path});
        Qf::ReadAhead frames(inputs, all, 4);
        if (i % 2 == 0) {
            expectSame(frames.take(0), 0, 0);
        }
    }
}

TEST_F(ReadAheadThreads, passOverDamageUntilItIsMet)
{
    const QString path = makeFile("a.qfi", 3);
    BufferApi::ExportBuffer(m_sources.front().get(), path, {{"PackType", 0}});
    TestSupport::flipBitOf(*m_sources.front()->GetFrame(1)->GetPlane(0, 0), path);
    for (const unsigned int jobs : {1U, 3U}) {
        const Qf::FrameInputs inputs({path});
        Qf::ReadAhead frames(inputs, {0, 1, 2}, jobs);
        int failures = 0;
        for (unsigned int i = 0; i < 3; ++i) {
            const BufferApi::I_PlaneBase& plane = *frames.take(i).GetPlane(0, 0);
            try {
                static_cast<void>(plane.GetData());
            } catch (const RTE::Exception&) {
                ++failures;
            }
        }
        EXPECT_EQ(failures, 1);
    }
}

/// More files than the process may have open.
TEST_F(ReadAheadThreads, closeFilesThatAreDone)
{
    rlimit before = {};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
    QStringList paths;
    std::vector<unsigned int> numbers;
    for (unsigned int i = 0; i < 60; ++i) {
        paths << makeFile(QStringLiteral("%1.png").arg(i), 1);
        numbers.push_back(i);
    }
    const rlimit few = {50, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &few), 0);
    {
        const Qf::FrameInputs inputs(paths);
        Qf::ReadAhead frames(inputs, numbers, 3);
        for (unsigned int i = 0; i < 60; ++i) {
            expectSame(frames.take(i), i, 0);
        }
    }
    setrlimit(RLIMIT_NOFILE, &before);
}

TEST(ParallelThreads, doEachTaskOnceAndRaiseTheFirstFailure)
{
    for (const unsigned int jobs : {1U, 4U}) {
        std::vector<std::atomic<int>> done(1000);
        Qf::forEachInParallel(done.size(), jobs, [&](std::size_t i) { ++done[i]; });
        EXPECT_TRUE(std::all_of(done.begin(), done.end(), [](const auto& count) { return count == 1; }));
        std::atomic<int> count = 0;
        const auto fail = [&](std::size_t i) {
            ++count;
            if (i == 3) {
                RTE::raise(RTE::LogicError(QStringLiteral("three")));
            }
        };
        EXPECT_THROW(Qf::forEachInParallel(100000, jobs, fail), RTE::LogicError);
        EXPECT_TRUE(jobs > 1 || count == 4) << count;
    }
}

} // namespace
