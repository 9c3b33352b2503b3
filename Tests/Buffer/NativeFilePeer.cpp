// SPDX-License-Identifier: Apache-2.0
// The C++ side of Python/native_file_test.py: writes files that Python reads, and reads files that it
// changed.
#include "Core/Buffer/BufferApi.h"
#include "Core/Buffer/FrameStream.h"
#include "Tests/Support/Files.h"
#include "Tests/Support/Frames.h"
#include "Tests/Support/InChild.h"
#include "Tests/Support/SampleBuffers.h"

#include <QDir>
#include <QFileInfo>
#include <QLoggingCategory>

#include <cstring>
#include <thread>

namespace
{

using namespace BufferApi;
using TestSupport::BufferPointer;

QString otherFile;

void writeBoth(const I_Buffer& buffer, const QDir& directory, const std::string& name)
{
    const QString base = QString::fromStdString(name);
    ExportBuffer(&buffer, directory.filePath(base + QStringLiteral(".packed.qfi")), {{"PackType", 2}});
    ExportBuffer(&buffer, directory.filePath(base + QStringLiteral(".plain.qfi")), {{"PackType", 0}});
}

/// What a stream is when it is finished, and what it leaves when it is killed: between two frames, and in the
/// midst of writing the first of its two tables of contents.
void writeStreamed(const I_Buffer& buffer, const QDir& directory, const QString& base)
{
    const QString path = directory.filePath(base + QStringLiteral(".streamed.qfi"));
    FrameStream stream(path, {{"PackType", 2}});
    TestSupport::setText(stream.description(), "Camera", QStringLiteral("Größe"));
    for (unsigned int i = 0; i < buffer.GetFrameCount(); ++i) {
        stream.append(*buffer.GetFrame(i));
    }
    QByteArray killed = TestSupport::contentOf(path);
    TestSupport::writeContent(directory.filePath(base + QStringLiteral(".killed.qfi")), killed);
    killed.replace(0, 8, QByteArray(8, '\0'));
    TestSupport::writeContent(directory.filePath(base + QStringLiteral(".torn.qfi")), killed);
    stream.finish();
}

void writePixels(const I_Buffer& buffer, const QString& path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    for (unsigned int i = 0; i < buffer.GetFrameCount(); ++i) {
        const I_PlaneBase& plane = *buffer.GetFrame(i)->GetPlane(0, 0);
        const auto bytes = GetDataTypeSize(plane.GetDataType()) * plane.GetWidth() * plane.GetHeight();
        file.write(static_cast<const char*>(plane.GetData()), static_cast<qsizetype>(bytes));
    }
}

BufferPointer images()
{
    BufferPointer buffer = TestSupport::particleImages(640, 600, 5);
    TestSupport::setText(*buffer, "Camera", QStringLiteral("Größe"));
    return buffer;
}

void writeFiles(const QDir& directory)
{
    for (const TestSupport::SampleBuffer& sample : TestSupport::sampleBuffers()) {
        writeBoth(*sample.make(), directory, "sample-" + sample.name);
    }
    writeBoth(*images(), directory, "images");
    writeStreamed(*images(), directory, QStringLiteral("images"));
    writeStreamed(*TestSupport::vectorFields(4), directory, QStringLiteral("vectors"));
    writePixels(*images(), directory.filePath(QStringLiteral("images.raw")));
    writeBoth(*TestSupport::vectorFields(4), directory, "vectors");
    writeBoth(*TestSupport::vectorFields(1), directory, "one");
}

template <typename T>
std::vector<T> numbersOf(const I_Buffer& buffer, const std::string& name)
{
    const auto* attribute = dynamic_cast<const I_AttributePlane*>(buffer.FindAttribute(name));
    const I_PlaneBase* plane = attribute == nullptr ? nullptr : attribute->GetPlane();
    if (plane == nullptr || !IsOfType<T>(*plane)) {
        return {};
    }
    const auto* values = static_cast<const T*>(plane->GetData());
    return {values, values + plane->GetWidth()};
}

bool isFilled(const I_Frame& frame, unsigned short value)
{
    const auto* pixels = static_cast<const unsigned short*>(frame.GetPlane(0, 0)->GetData());
    return std::all_of(pixels, pixels + 640 * 600, [&](unsigned short pixel) { return pixel == value; });
}

/// Five frames of images and a sixth that Python appended: all pixels 7.
void checkAppended(const QString& path)
{
    const BufferPointer changed(ImportBuffer(path));
    const BufferPointer original = images();
    ASSERT_EQ(changed->GetFrameCount(), 6U);
    for (unsigned int i = 0; i < 5; ++i) {
        EXPECT_TRUE(TestSupport::framesEqual(*changed->GetFrame(i), *original->GetFrame(i))) << i;
    }
    const I_Frame& last = *changed->GetFrame(5);
    EXPECT_TRUE(isFilled(last, 7));
    EXPECT_TRUE(last.GetAttributeList().empty());
    const auto* comment = dynamic_cast<const I_Attribute<QString>*>(changed->FindAttribute("comment"));
    ASSERT_NE(comment, nullptr);
    EXPECT_EQ(comment->GetValue(), QStringLiteral("über"));
    EXPECT_EQ(numbersOf<double>(*changed, "gain"), std::vector<double>{2.5});
    EXPECT_EQ(numbersOf<int>(*changed, "window"), (std::vector<int>{32, 16}));
    EXPECT_EQ(numbersOf<double>(*changed, "isSeeded"), std::vector<double>{1});
}

/// The pixels and nothing else of them.
void checkPlain(const QString& path)
{
    const BufferPointer plain(ImportBuffer(path));
    const BufferPointer original = images();
    ASSERT_EQ(plain->GetFrameCount(), original->GetFrameCount());
    const I_Frame& frame = *plain->GetFrame(4);
    EXPECT_TRUE(TestSupport::planesEqual(frame.GetPlane(0, 0), original->GetFrame(4)->GetPlane(0, 0)));
    EXPECT_TRUE(frame.GetAttributeList().empty());
    EXPECT_EQ(frame.GetScaleX().getFactor(), 1);
    EXPECT_EQ(frame.GetScaleX().getUnit(), QString());
}

/// The last frame as it was; nothing was ever written of the others, and the file says that this means 9.
void checkUnwritten(const QString& path)
{
    checkPlain(path);
    const BufferPointer buffer(ImportBuffer(path));
    for (unsigned int i = 0; i < 4; ++i) {
        EXPECT_TRUE(isFilled(*buffer->GetFrame(i), 9)) << i;
    }
}

/// What an application's log may do while an error is raised: wait for a thread that reads another file.
void waitForReader(QtMsgType, const QMessageLogContext&, const QString&)
{
    std::thread([] { const BufferPointer buffer(ImportBuffer(otherFile)); }).join();
}

/// A file that is refused with a reason, before memory is taken for what it promises.
void checkRefused(const QString& path, const QString& reason)
{
    otherFile = QFileInfo(path).dir().filePath(QStringLiteral("images.plain.qfi"));
    const QString result = TestSupport::inChild([&] {
        QLoggingCategory::setFilterRules({});
        qInstallMessageHandler(waitForReader);
        TestSupport::limitMemory(1ULL << 30U);
        const BufferPointer buffer(ImportBuffer(path));
        for (unsigned int i = 0; i < buffer->GetFrameCount(); ++i) {
            static_cast<void>(buffer->GetFrame(i)->GetPlane(0, 0)->GetData());
        }
    });
    EXPECT_THAT(result.toStdString(),
                testing::AnyOf(testing::HasSubstr("Error: Cannot read '" + path.toStdString()),
                               testing::HasSubstr("Error: Cannot open '" + path.toStdString())));
    EXPECT_THAT(result.toStdString(), testing::HasSubstr(reason.toStdString()));
}

/// Two frames without pixels after those of the original do not hinder the others.
void checkIncomplete(const QString& path)
{
    const BufferPointer incomplete(ImportBuffer(path));
    const BufferPointer original = images();
    for (const unsigned int i : {0U, 1U, 2U, 3U, 4U, 0U, 3U}) {
        EXPECT_TRUE(TestSupport::framesEqual(*incomplete->GetFrame(i), *original->GetFrame(i))) << i;
    }
    for (const unsigned int i : {5U, 6U, 5U}) {
        EXPECT_THROW(static_cast<void>(incomplete->GetFrame(i)->GetPlane(0, 0)->GetData()),
                     RTE::FileReadError);
    }
}

/// A file that is shortened before its pixels are read.
void checkShortened(const QString& path)
{
    const BufferPointer buffer(ImportBuffer(path));
    const I_PlaneBase& plane = *buffer->GetFrame(0)->GetPlane(0, 0);
    EXPECT_TRUE(QFile::resize(path, QFileInfo(path).size() / 2));
    EXPECT_THROW(static_cast<void>(plane.GetData()), RTE::FileReadError);
}

/// What other programs wrote anew, in other chunks and through other filters.
void checkRewritten(const QString& path, const I_Buffer& original)
{
    const BufferPointer rewritten(ImportBuffer(path));
    EXPECT_TRUE(TestSupport::buffersEqual(*rewritten, original));
}

} // namespace

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    if (argc == 3 && std::strcmp(argv[1], "write") == 0) {
        writeFiles(QDir(QString::fromLocal8Bit(argv[2])));
    } else if (argc == 3 && std::strcmp(argv[1], "check-appended") == 0) {
        checkAppended(QString::fromLocal8Bit(argv[2]));
    } else if (argc == 3 && std::strcmp(argv[1], "check-rewritten") == 0) {
        checkRewritten(QString::fromLocal8Bit(argv[2]), *images());
    } else if (argc == 3 && std::strcmp(argv[1], "check-vectors") == 0) {
        checkRewritten(QString::fromLocal8Bit(argv[2]), *TestSupport::vectorFields(4));
    } else if (argc == 3 && std::strcmp(argv[1], "check-plain") == 0) {
        checkPlain(QString::fromLocal8Bit(argv[2]));
    } else if (argc == 3 && std::strcmp(argv[1], "check-unwritten") == 0) {
        checkUnwritten(QString::fromLocal8Bit(argv[2]));
    } else if (argc == 3 && std::strcmp(argv[1], "check-incomplete") == 0) {
        checkIncomplete(QString::fromLocal8Bit(argv[2]));
    } else if (argc == 3 && std::strcmp(argv[1], "check-shortened") == 0) {
        checkShortened(QString::fromLocal8Bit(argv[2]));
    } else if (argc == 4 && std::strcmp(argv[1], "check-refused") == 0) {
        checkRefused(QString::fromLocal8Bit(argv[2]), QString::fromLocal8Bit(argv[3]));
    } else {
        return 2;
    }
    return testing::Test::HasFailure() ? 1 : 0;
}
