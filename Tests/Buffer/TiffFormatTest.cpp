// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/TiffFormat.h"

#include "Core/Buffer/BufferApi.h"
#include "Core/Buffer/Formats/TiffWriter.h"
#include "Core/Buffer/LazyPlane.h"
#include "Tests/Support/Files.h"
#include "Tests/Support/Frames.h"
#include "Tests/Support/Raises.h"
#include "Tests/Support/SampleBuffers.h"

#include <QtEndian>

#include <bit>
#include <cmath>
#include <numeric>
#include <thread>

namespace
{

using namespace BufferApi;
using TestSupport::BufferPointer;
using TestSupport::buffersEqual;
using TestSupport::contentOf;
using TestSupport::raises;
using TestSupport::writeContent;

BufferPointer import(const QString& path)
{
    return BufferPointer(ImportBuffer(path));
}

class TiffFormat : public testing::Test
{
protected:
    [[nodiscard]] QString path(const char* name = "file.tif") const
    {
        return m_directory.filePath(QLatin1String(name));
    }

private:
    QTemporaryDir m_directory;
};

I_FrameImage& addNoise(I_Buffer& buffer, E_DataType type, unsigned int width, unsigned int height,
                       unsigned int depth = 1)
{
    auto* frame = CreateImageFrame(type, width, height, depth);
    buffer.AddFrame(frame);
    TestSupport::fillWithNoise(*frame, width + height);
    if (type == DT_RGB) {
        for (unsigned int z = 0; z < depth; ++z) {
            auto* pixels = static_cast<RgbQuad*>(frame->GetPlane(0, z)->GetData());
            std::for_each(pixels, pixels + std::size_t{width} * height, [](RgbQuad& p) { p.reserved = 0; });
        }
    }
    return *frame;
}

/// All types that TIFF holds, in sizes below and above a strip.
BufferPointer allTypes()
{
    BufferPointer buffer(CreateBuffer());
    for (const E_DataType type : {DT_BYTE, DT_WORD, DT_INT32, DT_UINT32, DT_FLOAT, DT_DOUBLE, DT_RGB}) {
        for (const auto& [width, height] : {std::pair(1U, 1U), {17U, 5U}, {1U, 1000U}, {701U, 523U}}) {
            addNoise(*buffer, type, width, height);
        }
    }
    addNoise(*buffer, DT_FLOAT, 70001, 3);
    return buffer;
}

/// Volumes between images, so that frames and pages are counted apart.
BufferPointer volumes()
{
    BufferPointer buffer(CreateBuffer());
    addNoise(*buffer, DT_WORD, 5, 4);
    addNoise(*buffer, DT_WORD, 5, 4, 3).SetScaleZ({2, 1, QStringLiteral("mm"), QStringLiteral("z")});
    addNoise(*buffer, DT_WORD, 5, 4, 3).SetScaleZ({2, 1, QStringLiteral("mm"), QStringLiteral("z")});
    addNoise(*buffer, DT_RGB, 3, 2, 2);
    addNoise(*buffer, DT_FLOAT, 3, 2);
    return buffer;
}

BufferPointer withScalesAndAttributes()
{
    BufferPointer buffer = TestSupport::particleImages(33, 21, 4);
    buffer->SetName(QStringLiteral("Größe <&> ") + QChar(0) + QChar(0xDC00) + QChar(0xFFFE));
    TestSupport::setText(*buffer, "Acq.Camera \xB5", QStringLiteral("]]> & \"速度\" \U0001F300 \n"));
    I_Frame& frame = *buffer->GetFrame(2);
    frame.SetScaleX({std::nextafter(1e-5, 1.0), -0.0, QStringLiteral("m"), QStringLiteral("x")});
    frame.SetScaleY({std::bit_cast<double>(0x7FF4000000000001ULL), 1, QStringLiteral("mm"), QString()});
    frame.SetScaleZ({0, HUGE_VAL, QString(), QStringLiteral("Tiefe")});
    frame.SetScaleI({2.5, 1e-300, QStringLiteral("counts"), QStringLiteral("é")});
    TestSupport::setText(frame, "Comment", QStringLiteral("a,]}{[\"b\\"));
    return buffer;
}

TEST_F(TiffFormat, GivesAllTypesAndSizesBack)
{
    const std::vector<TestSupport::SampleBuffer> samples = {
        {"types", allTypes}, {"volumes", volumes}, {"record", withScalesAndAttributes}};
    for (const auto& [name, make] : samples) {
        const BufferPointer buffer = make();
        for (const int packType : {0, 2}) {
            SCOPED_TRACE(name + ", PackType " + std::to_string(packType));
            ExportBuffer(buffer.get(), path(), {{"PackType", packType}});
            const BufferPointer back = import(path());
            EXPECT_FALSE(back->IsModified(0));
            EXPECT_TRUE(buffersEqual(*buffer, *back));
            ExportBuffer(back.get(), path("again.tiff"), {{"PackType", packType}});
            EXPECT_EQ(contentOf(path()), contentOf(path("again.tiff")));
        }
    }
}

TEST_F(TiffFormat, TellsOtherProgramsWhichPagesAreAVolume)
{
    ExportBuffer(volumes().get(), path(), {});
    const QByteArray content = contentOf(path());
    EXPECT_TRUE(content.contains("SizeC=\"1\" SizeZ=\"3\" SizeT=\"2\""));
    EXPECT_TRUE(content.contains("PhysicalSizeZ=\"2\" PhysicalSizeZUnit=\"mm\""));
    EXPECT_TRUE(content.contains("<TiffData IFD=\"1\" PlaneCount=\"6\"/>"));
}

TEST_F(TiffFormat, RefusesARecordThatJoinsPagesOfDifferentSize)
{
    BufferPointer buffer(CreateBuffer());
    addNoise(*buffer, DT_BYTE, 2, 3);
    addNoise(*buffer, DT_BYTE, 3, 2);
    addNoise(*buffer, DT_BYTE, 2, 2, 2);
    ExportBuffer(buffer.get(), path(), {{"PackType", 0}});
    // The frames of 1, 1 and 2 planes become frames of 2, 1 and 1.
    QByteArray content = contentOf(path());
    const QByteArray frame = "{&quot;scales&quot;:[0,1,2,3]}";
    const QByteArray volume = "{&quot;depth&quot;:2,&quot;scales&quot;:[0,1,2,3]}";
    ASSERT_TRUE(content.contains(frame + ',' + frame + ',' + volume));
    content.replace(frame + ',' + frame + ',' + volume, volume + ',' + frame + ',' + frame);
    writeContent(path(), content);
    const BufferPointer back = import(path());
    ASSERT_EQ(back->GetFrameCount(), 3U);
    EXPECT_EQ(back->GetFrame(2)->GetDepth(), 1U);
    EXPECT_TRUE(raises<RTE::FileReadError>(
        QStringLiteral("Cannot read '%1': the planes of a volume differ in size or type")
            .arg(path())
            .toStdString()
            .c_str(),
        [&] { static_cast<void>(back->GetFrame(0)); }));
}

TEST_F(TiffFormat, PacksUnlessToldOtherwise)
{
    const BufferPointer buffer = TestSupport::particleImages(200, 100, 1);
    const auto sizeWith = [&](const BufferOptions& options) {
        ExportBuffer(buffer.get(), path(), options);
        return contentOf(path()).size();
    };
    EXPECT_GT(sizeWith({{"PackType", 0}}), 40000);
    EXPECT_LT(sizeWith({{"PackType", 2}}), 36000);
    EXPECT_LT(sizeWith({}), 36000);
}

TEST_F(TiffFormat, BecomesBigBeyondWhatClassicOffsetsReach)
{
    const BufferPointer buffer = allTypes();
    for (const bool isBig : {false, true}) {
        const unsigned long long limit = isBig ? 1000 : Formats::largestClassicTiff;
        const auto writer = Formats::createTiffWriter(path(), true, limit);
        for (unsigned int i = 0; i < buffer->GetFrameCount(); ++i) {
            writer->append(*buffer->GetFrame(i));
        }
        writer->finish(*buffer);
        EXPECT_EQ(contentOf(path())[2], isBig ? 43 : 42);
        EXPECT_TRUE(buffersEqual(*buffer, *import(path())));
    }
}

TEST_F(TiffFormat, ReadsAPlaneWhenItIsAskedForAlsoOnceTheNameIsGone)
{
    const BufferPointer buffer = allTypes();
    ExportBuffer(buffer.get(), path(), {});
    const BufferPointer back = import(path());
    ExportBuffer(TestSupport::particleImages(3, 3, 1).get(), path(), {});
    const I_PlaneBase& plane = *back->GetFrame(3)->GetPlane(0, 0);
    EXPECT_TRUE(isUnread(plane));
    QFile::remove(path());
    ExportBuffer(back.get(), path("copy.tif"), {});
    EXPECT_TRUE(isUnread(plane));
    EXPECT_TRUE(buffersEqual(*buffer, *back));
    EXPECT_TRUE(buffersEqual(*buffer, *import(path("copy.tif"))));
}

TEST_F(TiffFormat, FileShortenedBehindItsReaderRaises)
{
    ExportBuffer(allTypes().get(), path(), {{"PackType", 0}});
    const BufferPointer back = import(path());
    const I_PlaneBase& plane = *back->GetFrame(3)->GetPlane(0, 0);
    QFile::resize(path(), 1000);
    EXPECT_THROW(static_cast<void>(plane.GetData()), RTE::FileReadError);
    EXPECT_THROW(static_cast<void>(back->GetFrame(7)), RTE::FileReadError);
}

TEST_F(TiffFormat, ThreadsReadDifferentPlanesAtOnce)
{
    const BufferPointer buffer = allTypes();
    ExportBuffer(buffer.get(), path(), {});
    const BufferPointer back = import(path());
    std::vector<std::jthread> threads;
    for (unsigned int first = 0; first < 4; ++first) {
        threads.emplace_back([&, first] {
            for (unsigned int i = 0; i < back->GetFrameCount(); ++i) {
                const I_Frame& frame = *back->GetFrame((i + 7 * first) % back->GetFrameCount());
                static_cast<void>(frame.GetPlane(0, 0)->GetData());
            }
        });
    }
    threads.clear();
    EXPECT_TRUE(buffersEqual(*buffer, *back));
}

TEST_F(TiffFormat, RefusesWhatItCannotHold)
{
    BufferPointer vectors = TestSupport::vectorFields(1);
    BufferPointer masked(CreateBuffer());
    addNoise(*masked, DT_BYTE, 2, 2).AddMask({});
    BufferPointer scalars(CreateBuffer());
    CreateTypedScalarInFrame(&addNoise(*scalars, DT_BYTE, 2, 2), "Height", DT_FLOAT);
    BufferPointer hollow(CreateBuffer());
    hollow->AddFrame(CreateImageFrame(DT_BYTE, 0, 2, 1));
    BufferPointer colours(CreateBuffer());
    auto* last = static_cast<RgbQuad*>(addNoise(*colours, DT_RGB, 3, 2).GetPlane(0, 0)->GetData()) + 5;
    last->reserved = 1;
    const std::vector<std::pair<const I_Buffer*, const char*>> cases = {
        {colours.get(), "the fourth byte of colours, which is not 0 everywhere"},
        {vectors.get(), "vectors"},
        {masked.get(), "the component 'MASK'"},
        {scalars.get(), "the component 'TS:Height'"},
        {hollow.get(), "an image without pixels"}};
    for (const auto& [buffer, what] : cases) {
        for (const char* format : {"TIFF", "PNG"}) {
            SCOPED_TRACE(std::string(format) + " of " + what);
            const QString target = path(*format == 'T' ? "refused.tif" : "refused.png");
            try {
                ExportBuffer(buffer, target, {});
                ADD_FAILURE() << "nothing was raised";
            } catch (const RTE::FileWriteError& raised) {
                const QString reason = QStringLiteral("%1 cannot hold %2; a .qfi file can")
                                           .arg(QLatin1String(format), QLatin1String(what));
                EXPECT_TRUE(raised.message().endsWith(reason)) << raised.what();
            }
            EXPECT_FALSE(QFile::exists(target));
        }
    }
}

/// Where the number of 32 bits stands that tells the place of the n-th directory.
qsizetype linkTo(const QByteArray& tiff, unsigned int n)
{
    const auto at = [&](qsizetype place, auto zero) {
        return qFromLittleEndian<decltype(zero)>(tiff.constData() + place);
    };
    qsizetype link = 4;
    for (; n > 0; --n) {
        const auto directory = static_cast<qsizetype>(at(link, quint32{}));
        link = directory + 2 + 12 * at(directory, quint16{});
    }
    return link;
}

TEST_F(TiffFormat, RefusesDirectoriesWithoutEndOrBeyondIt)
{
    ExportBuffer(TestSupport::particleImages(4, 4, 3).get(), path(), {});
    const QByteArray whole = contentOf(path());
    const auto withLink = [&](unsigned int n, quint32 target) {
        QByteArray content = whole;
        qToLittleEndian(target, content.data() + linkTo(whole, n));
        writeContent(path(), content);
    };
    const auto placeOf = [&](unsigned int n) {
        return qFromLittleEndian<quint32>(whole.constData() + linkTo(whole, n));
    };
    const auto reason = [this](const char* text) {
        return QStringLiteral("Cannot read '%1': %2").arg(path(), QLatin1String(text));
    };
    const auto read = [this] { static_cast<void>(import(path())); };
    for (const unsigned int target : {0U, 1U, 2U}) {
        withLink(3, placeOf(target));
        EXPECT_TRUE(raises<RTE::FileReadError>(reason("its chain of directories has no end"), read));
    }
    withLink(2, 0xFFFFFFFE);
    EXPECT_TRUE(raises<RTE::FileReadError>(reason("the file ends before its last directory"), read));
    withLink(0, 0);
    EXPECT_TRUE(raises<RTE::FileReadError>(reason("it has no pages"), read));
    // Fewer pages than the record tells of: whose scales are whose is unknown.
    withLink(2, 0);
    const BufferPointer shortened = import(path());
    EXPECT_EQ(shortened->GetFrameCount(), 2U);
    EXPECT_EQ(shortened->GetFrame(0)->GetScaleX(), Zt::LinearScale(Zt::ScalePreset::X));
}

qsizetype placeOfFirst(const QByteArray& tiff)
{
    return static_cast<qsizetype>(qFromLittleEndian<quint32>(tiff.constData() + 4));
}

/// The value of a tag of the first directory, as far as it stands in the entry.
void setTag(QByteArray& tiff, quint16 tag, quint32 value)
{
    for (qsizetype entry = placeOfFirst(tiff) + 2;; entry += 12) {
        if (qFromLittleEndian<quint16>(tiff.constData() + entry) == tag) {
            qToLittleEndian(value, tiff.data() + entry + 8);
            return;
        }
    }
}

TEST_F(TiffFormat, RefusesSizesThatTheFileCannotHold)
{
    struct Promise
    {
        const char* name;
        int packType;
        quint32 width;
        quint32 height;
        quint32 rowsPerStrip;
    };
    // The files have 40 x 30 words.
    const std::vector<Promise> promises = {{"one row more than fits", 0, 40, 200, 200},
                                           {"rows", 2, 40, 0x0FFFFFFF, 1},
                                           {"columns", 2, 0xFFFFFFFF, 30, 30},
                                           {"all", 2, 0xFFFFFFFF, 0x0FFFFFFF, 1}};
    const BufferPointer buffer = TestSupport::particleImages(40, 30, 1);
    for (const Promise& promise : promises) {
        SCOPED_TRACE(promise.name);
        ExportBuffer(buffer.get(), path(), {{"PackType", promise.packType}});
        QByteArray content = contentOf(path());
        setTag(content, 256, promise.width);
        setTag(content, 257, promise.height);
        setTag(content, 278, promise.rowsPerStrip);
        writeContent(path(), content);
        EXPECT_TRUE(raises<RTE::FileReadError>(
            QStringLiteral("Cannot read '%1': the file is too small for %2 x %3 pixels")
                .arg(path())
                .arg(promise.width)
                .arg(promise.height),
            [this] { static_cast<void>(import(path())); }));
    }
}

TEST_F(TiffFormat, MirrorsRowsAndColumnsAsTheOrientationSays)
{
    BufferPointer buffer(CreateBuffer());
    auto* stored = static_cast<int*>(addNoise(*buffer, DT_INT32, 3, 3).GetPlane(0, 0)->GetData());
    std::iota(stored, stored + 9, 0);
    ExportBuffer(buffer.get(), path(), {});
    const QByteArray whole = contentOf(path());
    const std::map<quint16, std::vector<int>> expected = {{1, {0, 1, 2, 3, 4, 5, 6, 7, 8}},
                                                          {2, {2, 1, 0, 5, 4, 3, 8, 7, 6}},
                                                          {3, {8, 7, 6, 5, 4, 3, 2, 1, 0}},
                                                          {4, {6, 7, 8, 3, 4, 5, 0, 1, 2}}};
    for (const auto& [orientation, pixels] : expected) {
        QByteArray content = whole;
        // The tag SamplesPerPixel, of the default value, becomes Orientation.
        const qsizetype place = content.indexOf(QByteArray("\x15\x01\x03\x00", 4), placeOfFirst(content));
        ASSERT_GT(place, 0);
        qToLittleEndian<quint16>(274, content.data() + place);
        qToLittleEndian<quint16>(orientation, content.data() + place + 8);
        writeContent(path(), content);
        const BufferPointer back = import(path());
        const auto* got = static_cast<const int*>(back->GetFrame(0)->GetPlane(0, 0)->GetData());
        EXPECT_EQ(std::vector<int>(got, got + 9), pixels) << orientation;
    }
}

TEST_F(TiffFormat, OpensManyPagesQuickly)
{
    constexpr unsigned int count = 20000;
    BufferPointer buffer(CreateBuffer());
    for (unsigned int i = 0; i < count; ++i) {
        auto& frame = addNoise(*buffer, DT_BYTE, 2, 2);
        TestSupport::setNumber(frame, "time", i);
    }
    ExportBuffer(buffer.get(), path(), {});
    const BufferPointer back = import(path());
    ASSERT_EQ(back->GetFrameCount(), count);
    EXPECT_TRUE(TestSupport::framesEqual(*back->GetFrame(count - 1), *buffer->GetFrame(count - 1)));
}

TEST_F(TiffFormat, FullDiskRaisesAndLeavesNothing)
{
    if (!QFile::exists(QStringLiteral("/dev/full"))) {
        GTEST_SKIP();
    }
    const BufferPointer buffer = TestSupport::particleImages(64, 64, 1);
    const auto write = [&] {
        const auto writer = Formats::createTiffWriter(QStringLiteral("/dev/full"), false);
        writer->append(*buffer->GetFrame(0));
    };
    EXPECT_TRUE(raises<RTE::FileWriteError>("Cannot write '/dev/full': No space left on device", write));
}

} // namespace
