// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/FrameStream.h"

#include "Core/Buffer/BufferApi.h"
#include "Core/Buffer/LazyPlane.h"
#include "Tests/Support/Files.h"
#include "Tests/Support/Frames.h"
#include "Tests/Support/Raises.h"
#include "Tests/Support/SampleBuffers.h"

#include <QDir>
#include <QTemporaryDir>

#include <thread>

namespace
{

using namespace BufferApi;
using Appearance = FrameStream::Appearance;
using TestSupport::BufferPointer;
using TestSupport::buffersEqual;
using TestSupport::raises;

BufferPointer import(const QString& path)
{
    return BufferPointer(ImportBuffer(path));
}

void copyAttribute(I_Buffer& target, const std::string& name, const I_AttributeBase& attribute)
{
    if (const auto* text = dynamic_cast<const I_Attribute<QString>*>(&attribute)) {
        TestSupport::setText(target, name, text->GetValue());
        return;
    }
    auto& copy = dynamic_cast<I_AttributePlane&>(*target.CreateAttribute(name, AT_PLANE));
    if (const I_PlaneBase* plane = dynamic_cast<const I_AttributePlane&>(attribute).GetPlane()) {
        std::unique_ptr<I_PlaneBase> numbers(
            CreatePlane(plane->GetDataType(), plane->GetWidth(), plane->GetHeight()));
        readPlane(*plane, numbers->GetData());
        copy.SetPlane(numbers.release());
    }
}

void describe(I_Buffer& target, const I_Buffer& source)
{
    target.SetName(source.GetName());
    for (const auto& [name, attribute] : source.GetAttributeList()) {
        copyAttribute(target, name, *attribute);
    }
}

void appendAll(FrameStream& stream, const I_Buffer& buffer)
{
    for (unsigned int i = 0; i < buffer.GetFrameCount(); ++i) {
        stream.append(*buffer.GetFrame(i));
    }
}

class FrameStreams : public testing::Test
{
protected:
    [[nodiscard]] QString path(const QString& name = QStringLiteral("run.qfi")) const
    {
        return m_directory.filePath(name);
    }
    [[nodiscard]] QStringList files() const { return QDir(m_directory.path()).entryList(QDir::Files); }

private:
    QTemporaryDir m_directory;
};

TEST_F(FrameStreams, GiveEverythingBack)
{
    for (const TestSupport::SampleBuffer& sample : TestSupport::sampleBuffers()) {
        for (const int packType : {0, 2}) {
            SCOPED_TRACE(sample.name + std::to_string(packType));
            const BufferPointer buffer = sample.make();
            FrameStream stream(path(), {{"PackType", packType}});
            describe(stream.description(), *buffer);
            appendAll(stream, *buffer);
            EXPECT_EQ(stream.frameCount(), buffer->GetFrameCount());
            stream.finish();
            EXPECT_TRUE(buffersEqual(*import(path()), *buffer));
        }
    }
}

TEST_F(FrameStreams, TakeFramesThatHaveNothingInCommon)
{
    std::vector<BufferPointer> samples;
    FrameStream stream(path());
    for (const TestSupport::SampleBuffer& sample : TestSupport::sampleBuffers()) {
        appendAll(stream, *samples.emplace_back(sample.make()));
    }
    stream.finish();
    const BufferPointer back = import(path());
    unsigned int index = 0;
    for (const BufferPointer& sample : samples) {
        for (unsigned int i = 0; i < sample->GetFrameCount(); ++i) {
            EXPECT_TRUE(TestSupport::framesEqual(*sample->GetFrame(i), *back->GetFrame(index++))) << index;
        }
    }
    EXPECT_EQ(back->GetFrameCount(), index);
}

TEST_F(FrameStreams, LeaveAWholeFileAfterEachFrame)
{
    const BufferPointer buffer = TestSupport::vectorFields(200);
    BufferPointer expected(CreateBuffer());
    FrameStream stream(path());
    for (unsigned int i = 0; i < buffer->GetFrameCount(); ++i) {
        if (i % 40 == 0) {
            // Short and long ones, since the long ones lie elsewhere in the file.
            const QString text(i % 80 == 0 ? 3 : 70000, QLatin1Char('a' + static_cast<char>(i % 7)));
            for (I_Buffer* described : {&stream.description(), expected.get()}) {
                TestSupport::setText(*described, "text " + std::to_string(i / 80), text);
                described->SetName(QString::number(i));
            }
        }
        stream.append(*buffer->GetFrame(i));
        if (i % 9 == 0 || i % 128 < 2) {
            TestSupport::writeContent(path(QStringLiteral("copy")), TestSupport::contentOf(path()));
            const BufferPointer back = import(path(QStringLiteral("copy")));
            ASSERT_EQ(back->GetFrameCount(), i + 1);
            EXPECT_TRUE(TestSupport::framesEqual(*back->GetFrame(i), *buffer->GetFrame(i)));
            EXPECT_TRUE(TestSupport::framesEqual(*back->GetFrame(i / 2), *buffer->GetFrame(i / 2)));
            back->Clear();
            EXPECT_TRUE(buffersEqual(*back, *expected));
        }
    }
}

TEST_F(FrameStreams, AppearUnderTheirNameWhenTheyAreToldTo)
{
    const BufferPointer old = TestSupport::vectorFields(1);
    const BufferPointer buffer = TestSupport::particleImages(16, 8, 3);
    struct Case
    {
        Appearance appearance;
        QString name;
        unsigned int framesAfterOne;
    };
    for (const Case& expected : {Case{Appearance::FirstFrame, QStringLiteral("a.qfi"), 1},
                                 Case{Appearance::Finish, QStringLiteral("b.qfi"), 0},
                                 Case{Appearance::FirstFrame, QStringLiteral("c.tif"), 0}}) {
        SCOPED_TRACE(expected.name.toStdString());
        ExportBuffer(old.get(), path(QStringLiteral("old")));
        QFile::rename(path(QStringLiteral("old")), path(expected.name));
        {
            FrameStream stream(path(expected.name), {}, expected.appearance);
            EXPECT_TRUE(buffersEqual(*import(path(expected.name)), *old));
            stream.append(*buffer->GetFrame(0));
            if (expected.framesAfterOne == 0) {
                EXPECT_TRUE(buffersEqual(*import(path(expected.name)), *old));
            } else {
                EXPECT_EQ(import(path(expected.name))->GetFrameCount(), expected.framesAfterOne);
            }
            stream.append(*buffer->GetFrame(1));
            stream.append(*buffer->GetFrame(2));
        }
        EXPECT_TRUE(buffersEqual(*import(path(expected.name)), *buffer));
    }
    EXPECT_EQ(files(),
              (QStringList{QStringLiteral("a.qfi"), QStringLiteral("b.qfi"), QStringLiteral("c.tif")}));
}

TEST_F(FrameStreams, EndWhenAFrameFailsAndKeepTheOnesBefore)
{
    const BufferPointer buffer = TestSupport::particleImages(16, 8, 2);
    const QString failed = QStringLiteral("Cannot write '%1': writing frame 2 has failed").arg(path());
    {
        FrameStream stream(path(), {}, Appearance::Finish);
        appendAll(stream, *buffer);
        std::unique_ptr<I_Frame> hollow(CreateImageFrame(DT_WORD, 16, 8, 1));
        delete[] static_cast<unsigned short*>(hollow->GetPlane(0, 0)->ReleaseData());
        EXPECT_THROW(stream.append(*hollow), RTE::FileWriteError);
        EXPECT_TRUE(raises<RTE::FileWriteError>(failed, [&] { stream.append(*buffer->GetFrame(0)); }));
        EXPECT_TRUE(raises<RTE::FileWriteError>(failed, [&] { stream.finish(); }));
        EXPECT_EQ(stream.frameCount(), 2U);
    }
    EXPECT_TRUE(buffersEqual(*import(path()), *buffer));

    FrameStream stream(path());
    stream.finish();
    EXPECT_TRUE(raises<RTE::LogicError>(QStringLiteral("The stream is finished"),
                                        [&] { stream.append(*buffer->GetFrame(0)); }));
    EXPECT_EQ(import(path())->GetFrameCount(), 0U);
    stream.discard();
    EXPECT_EQ(files(), QStringList());
    FrameStream(path()).discard();
    EXPECT_EQ(files(), QStringList());
}

TEST_F(FrameStreams, ThreadsWriteAStreamEachBesideExportAndImport)
{
    const BufferPointer images = TestSupport::particleImages(640, 480, 6);
    const BufferPointer vectors = TestSupport::vectorFields(20);
    const auto streamed = [&](const I_Buffer& buffer, const QString& name) {
        FrameStream stream(path(name), {{"PackType", 2}});
        describe(stream.description(), buffer);
        appendAll(stream, buffer);
        stream.finish();
        EXPECT_TRUE(buffersEqual(*import(path(name)), buffer));
    };
    const auto exported = [&](const I_Buffer& buffer, const QString& name) {
        for (const int packType : {2, 0}) {
            ExportBuffer(&buffer, path(name), {{"PackType", packType}});
            EXPECT_TRUE(buffersEqual(*import(path(name)), buffer));
        }
    };
    std::vector<std::thread> threads;
    threads.emplace_back(streamed, std::cref(*images), QStringLiteral("a.qfi"));
    threads.emplace_back(streamed, std::cref(*vectors), QStringLiteral("b.qfv"));
    threads.emplace_back(exported, std::cref(*images), QStringLiteral("c.qfi"));
    threads.emplace_back(exported, std::cref(*vectors), QStringLiteral("d.qfv"));
    for (std::thread& thread : threads) {
        thread.join();
    }
}

} // namespace
