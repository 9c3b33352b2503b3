// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/BufferApi.h"
#include "Core/Buffer/LazyPlane.h"
#include "Tests/Support/Files.h"
#include "Tests/Support/Frames.h"
#include "Tests/Support/InChild.h"
#include "Tests/Support/ReadEverything.h"
#include "Tests/Support/SampleBuffers.h"

#include <QDir>
#include <QElapsedTimer>

#include <hdf5.h>

#include <atomic>
#include <malloc.h>
#include <thread>

namespace
{

using namespace BufferApi;
using TestSupport::BufferPointer;
using TestSupport::buffersEqual;
using TestSupport::contentOf;
using TestSupport::SampleBuffer;
using TestSupport::writeContent;

constexpr int packed = 2;
constexpr int unpacked = 0;

void exportTo(const I_Buffer& buffer, const QString& path, int packType)
{
    ExportBuffer(&buffer, path, {{"PackType", packType}});
}

BufferPointer import(const QString& path)
{
    return BufferPointer(ImportBuffer(path));
}

class NativeFile : public testing::Test
{
protected:
    [[nodiscard]] QString path(const QString& name = QStringLiteral("file.qfi")) const
    {
        return m_directory.filePath(name);
    }
    [[nodiscard]] QStringList fileNames() const { return QDir(m_directory.path()).entryList(QDir::Files); }

private:
    QTemporaryDir m_directory;
};

class NativeFileRoundTrip : public NativeFile, public testing::WithParamInterface<SampleBuffer>
{
};

TEST_P(NativeFileRoundTrip, GivesEverythingBack)
{
    const BufferPointer buffer = GetParam().make();
    for (const int packType : {packed, unpacked}) {
        SCOPED_TRACE(packType);
        exportTo(*buffer, path(), packType);
        const BufferPointer back = import(path());
        EXPECT_FALSE(back->IsModified(0));
        EXPECT_TRUE(buffersEqual(*buffer, *back));
        exportTo(*import(path()), path(QStringLiteral("again.qfv")), packType);
        EXPECT_EQ(contentOf(path()), contentOf(path(QStringLiteral("again.qfv"))));
    }
}

INSTANTIATE_TEST_SUITE_P(Samples, NativeFileRoundTrip, testing::ValuesIn(TestSupport::sampleBuffers()),
                         [](const auto& sample) { return sample.param.name; });

TEST_F(NativeFile, WorksOnWhenTheApplicationClosesHdf5)
{
    const BufferPointer buffer = TestSupport::sampleBuffers().front().make();
    for (int round = 0; round < 3; ++round) {
        exportTo(*buffer, path(), packed);
        EXPECT_TRUE(buffersEqual(*import(path()), *buffer));
        ASSERT_GE(H5close(), 0);
    }
}

TEST_F(NativeFile, NeitherShowsNorUsesWhatMemoryHeldBefore)
{
    for (const SampleBuffer& sample : TestSupport::sampleBuffers()) {
        const BufferPointer buffer = sample.make();
        for (const int packType : {packed, unpacked}) {
            SCOPED_TRACE(sample.name + std::to_string(packType));
            QByteArray contents[2];
            for (const int round : {0, 1}) {
                // What is allocated and what is freed is filled with other bytes each time.
                mallopt(M_PERTURB, round == 0 ? 0x55 : 0xA9);
                exportTo(*buffer, path(), packType);
                EXPECT_TRUE(buffersEqual(*import(path()), *buffer));
                mallopt(M_PERTURB, 0);
                contents[round] = contentOf(path());
            }
            EXPECT_EQ(contents[0], contents[1]);
        }
    }
}

TEST_F(NativeFile, ReadsAPlaneWhenItIsAskedForAlsoOnceTheNameIsGone)
{
    const BufferPointer buffer = TestSupport::particleImages(64, 48, 3);
    exportTo(*buffer, path(), packed);
    const BufferPointer first = import(path());
    const BufferPointer second = import(path());
    exportTo(*TestSupport::vectorFields(1), path(), packed);
    EXPECT_TRUE(isUnread(*first->GetFrame(2)->GetPlane(0, 0)));
    EXPECT_TRUE(
        TestSupport::planesEqual(first->GetFrame(2)->GetPlane(0, 0), buffer->GetFrame(2)->GetPlane(0, 0)));
    EXPECT_TRUE(isUnread(*first->GetFrame(1)->GetPlane(0, 0)));
    exportTo(*first, path(QStringLiteral("copy.qfi")), unpacked);
    EXPECT_TRUE(isUnread(*first->GetFrame(1)->GetPlane(0, 0)));
    EXPECT_TRUE(buffersEqual(*import(path(QStringLiteral("copy.qfi"))), *buffer));
    QFile::remove(path());
    EXPECT_TRUE(buffersEqual(*second, *buffer));
}

TEST_F(NativeFile, ReplacesTheFileThatItsPlanesAreStillIn)
{
    const BufferPointer buffer = TestSupport::particleImages(64, 48, 2);
    exportTo(*buffer, path(), packed);
    const BufferPointer lazy = import(path());
    exportTo(*lazy, path(), unpacked);
    EXPECT_TRUE(buffersEqual(*import(path()), *buffer));
    EXPECT_TRUE(buffersEqual(*lazy, *buffer));
}

TEST_F(NativeFile, OpensManyFramesOfManyScalesAndAttributesQuickly)
{
    constexpr unsigned int frames = 1000;
    BufferPointer buffer(CreateBuffer());
    for (unsigned int i = 0; i < frames; ++i) {
        auto* frame = CreateImageFrame(DT_BYTE, 2, 2, 1);
        TestSupport::fillWithNoise(*frame, i);
        frame->SetScaleX({1.0 + i, 0, QStringLiteral("mm"), QString::number(i)});
        TestSupport::setNumber(*frame, "attribute " + std::to_string(i), i);
        buffer->AddFrame(frame);
    }
    exportTo(*buffer, path(), packed);
    QElapsedTimer timer;
    timer.start();
    const BufferPointer back = import(path());
    EXPECT_LT(timer.elapsed(), 100);
    EXPECT_TRUE(buffersEqual(*buffer, *back));
}

TEST_F(NativeFile, KeepsTheOldFileAndNothingElseWhenAnExportFails)
{
    BufferPointer buffer = TestSupport::particleImages(8, 8, 2);
    exportTo(*buffer, path(), packed);
    const QByteArray before = contentOf(path());
    delete[] static_cast<unsigned short*>(buffer->GetFrame(1)->GetPlane(0, 0)->ReleaseData());
    EXPECT_THROW(exportTo(*buffer, path(), packed), RTE::FileWriteError);
    EXPECT_EQ(contentOf(path()), before);
    EXPECT_EQ(fileNames(), QStringList{QStringLiteral("file.qfi")});
}

TEST_F(NativeFile, LeavesNothingForTheEndOfTheProcessWhenItIsDamaged)
{
#ifdef DATAOBJECTS_SANITIZED
    GTEST_SKIP() << "a sanitizer prints a summary of its own when the process ends";
#endif
    exportTo(*TestSupport::vectorFields(2), path(), packed);
    const QByteArray whole = contentOf(path());
    const QString printed = TestSupport::inChild([&] {
        for (qsizetype at = 0; at < whole.size(); at += 101) {
            QByteArray damaged = whole;
            damaged[at] = static_cast<char>(~damaged[at]);
            writeContent(path(), damaged);
            try {
                TestSupport::readEverything(*import(path()));
            } catch (const RTE::Exception&) {
                continue;
            }
        }
    });
    EXPECT_EQ(printed, QString());
}

TEST_F(NativeFile, HoldsMoreChoicesThanOneAttributeCanList)
{
    BufferPointer buffer(CreateBuffer());
    buffer->AddFrame(CreateVectorFrame2C(1, 1, 1, 16000));
    TestSupport::fillWithNoise(*buffer->GetFrame(0), 1);
    exportTo(*buffer, path(), packed);
    EXPECT_TRUE(buffersEqual(*import(path()), *buffer));
}

TEST_F(NativeFile, ShowsDamageOfTextsOfAnyLength)
{
    BufferPointer buffer = TestSupport::particleImages(4, 4, 1);
    buffer->SetName(QString(100000, QLatin1Char('n')));
    buffer->GetFrame(0)->SetScaleY(
        {1, 0, QString(100000, QLatin1Char('u')), QString(90000, QLatin1Char('d'))});
    exportTo(*buffer, path(), packed);
    const QByteArray whole = contentOf(path());
    for (const char letter : {'n', 'u', 'd'}) {
        const qsizetype first = whole.indexOf(QByteArray(1000, letter));
        const qsizetype last = whole.lastIndexOf(QByteArray(1000, letter));
        ASSERT_TRUE(first >= 0 && last > first) << letter;
        for (const qsizetype at : {first, last}) {
            QByteArray damaged = whole;
            damaged[at + 500] = '!';
            writeContent(path(), damaged);
            EXPECT_THROW(import(path())->GetFrame(0), RTE::Exception) << letter;
        }
    }
}

TEST_F(NativeFile, NamesTheFileThatItCannotWrite)
{
    const BufferPointer buffer = TestSupport::particleImages(8, 8, 1);
    QDir().mkpath(path(QStringLiteral("directory.qfi")));
    for (const char* name : {"none/file.qfi", "directory.qfi"}) {
        const QString target = path(QLatin1String(name));
        try {
            exportTo(*buffer, target, packed);
            ADD_FAILURE() << name;
        } catch (const RTE::FileWriteError& error) {
            EXPECT_TRUE(error.message().contains(target)) << error.what();
        }
    }
    EXPECT_THROW(ExportBuffer(nullptr, path()), RTE::InvalidArgumentError);
}

TEST_F(NativeFile, FollowsALinkAndKeepsThePermissionsOfTheFileBehindIt)
{
    const BufferPointer buffer = TestSupport::particleImages(8, 8, 1);
    writeContent(path(), "old");
    const auto permissions = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
    ASSERT_TRUE(QFile::setPermissions(path(), permissions));
    const QString link = path(QStringLiteral("link.qfi"));
    ASSERT_TRUE(QFile::link(path(), link));
    exportTo(*buffer, link, packed);
    EXPECT_TRUE(QFileInfo(link).isSymLink());
    EXPECT_TRUE(buffersEqual(*import(path()), *buffer));
    EXPECT_FALSE(QFile::permissions(path()).testFlag(QFileDevice::ReadOther));
}

TEST_F(NativeFile, WritesAnyExtensionThatNoFormatOwns)
{
    const BufferPointer buffer = TestSupport::vectorFields(2);
    for (const char* name : {"a.b", "run.1", "field.qfv", "without", "Größe 速度.QFI"}) {
        const QString target = path(QString::fromUtf8(name));
        exportTo(*buffer, target, packed);
        EXPECT_TRUE(buffersEqual(*import(target), *buffer)) << name;
    }
}

/// What is no file of ours: content, and a part of the message besides the file's name.
struct BadFile
{
    std::string name;
    QByteArray content;
    QString reason;
};

TEST_F(NativeFile, RefusesWhatIsNoFileOfFrames)
{
    const std::vector<BadFile> files{
        {"empty", "", QStringLiteral("the file is empty")},
        {"text", "x y u v\n1 2 3 4\n", QStringLiteral("unknown content; known are native (.qfi, .qfv)")},
        {"signature", QByteArray("\x89HDF\r\n\x1a\n", 8), QStringLiteral("Cannot open")},
        {"zeros", QByteArray("\x89HDF\r\n\x1a\n", 8) + QByteArray(5000, '\0'), QStringLiteral("Cannot open")},
        {"cut off", contentOf(TestSupport::goldenFile("h5py-old.qfi")).left(1000),
         QStringLiteral("truncated file")}};
    for (const BadFile& file : files) {
        SCOPED_TRACE(file.name);
        writeContent(path(), file.content);
        try {
            import(path());
            ADD_FAILURE();
        } catch (const RTE::FileOpenError& error) {
            EXPECT_TRUE(error.message().contains(path()) && error.message().contains(file.reason))
                << error.what();
        }
    }
    EXPECT_THROW(import(path(QStringLiteral("missing.qfi"))), RTE::FileOpenError);
    EXPECT_THROW(import(QFileInfo(path()).absolutePath()), RTE::FileOpenError);
    EXPECT_THROW(import(QStringLiteral("/dev/zero")), RTE::FileOpenError);
}

TEST_F(NativeFile, ThreadsWorkOnDifferentBuffersAndReadOneTogether)
{
    const BufferPointer shared = TestSupport::particleImages(100, 80, 16);
    const QString plainPath = path(QStringLiteral("plain.qfi"));
    exportTo(*shared, path(), packed);
    exportTo(*shared, plainPath, unpacked);
    const BufferPointer lazy = import(path());
    const BufferPointer lazyPlain = import(plainPath);
    std::atomic<int> equal = 0;
    const auto work = [&](int number) {
        const QString own = path(QStringLiteral("own%1.qfi").arg(number));
        for (int round = 0; round < 4; ++round) {
            const BufferPointer buffer = TestSupport::particleImages(70, 60, 3);
            exportTo(*buffer, own, (round + number) % 2 == 0 ? packed : unpacked);
            equal += buffersEqual(*buffer, *import(own)) ? 1 : 0;
        }
        equal += buffersEqual(*shared, number < 2 ? *lazy : *lazyPlain) ? 1 : 0;
        equal += buffersEqual(*shared, number < 2 ? *lazyPlain : *lazy) ? 1 : 0;
    };
    std::vector<std::thread> threads;
    for (int number = 0; number < 4; ++number) {
        threads.emplace_back(work, number);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(equal, 4 * 6);
}

} // namespace
