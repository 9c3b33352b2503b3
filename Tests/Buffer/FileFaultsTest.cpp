// SPDX-License-Identifier: Apache-2.0
// What surrounds a file goes wrong: disks, permissions, names, and files that change behind the back of those
// who read them. Everything goes through import and export.
#include "Core/Buffer/BufferApi.h"
#include "Core/Common/Raise.h"
#include "Tests/Support/Files.h"
#include "Tests/Support/Frames.h"
#include "Tests/Support/InChild.h"
#include "Tests/Support/Raises.h"
#include "Tests/Support/SampleBuffers.h"

#include <QDir>
#include <QtEndian>

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

using namespace BufferApi;
using TestSupport::BufferPointer;
using TestSupport::buffersEqual;
using TestSupport::inChild;
using TestSupport::raises;

/// A kind of file that can be written.
struct Format
{
    std::string name;
    QString extension;
    int packType;
    unsigned int frames;
};

const std::vector<Format>& writtenFormats()
{
    static const std::vector<Format> formats{{"native, packed", QStringLiteral("qfi"), 2, 5},
                                             {"native, plain", QStringLiteral("qfi"), 0, 5},
                                             {"TIFF, packed", QStringLiteral("tif"), 2, 5},
                                             {"TIFF, plain", QStringLiteral("tif"), 0, 5},
                                             {"PNG", QStringLiteral("png"), 2, 1}};
    return formats;
}

void exportTo(const I_Buffer& buffer, const QString& path, const Format& format)
{
    ExportBuffer(&buffer, path, {{"PackType", format.packType}});
}

BufferPointer import(const QString& path)
{
    return BufferPointer(ImportBuffer(path));
}

void readPlanes(const I_Buffer& buffer)
{
    for (unsigned int i = 0; i < buffer.GetFrameCount(); ++i) {
        static_cast<void>(buffer.GetFrame(i)->GetPlane(0, 0)->GetData());
    }
}

class FileFaults : public testing::Test
{
protected:
    FileFaults()
    {
        // Ordinary users have to get at what is in it.
        static_cast<void>(chmod(m_directory.path().toLocal8Bit().constData(), 0755));
    }

    [[nodiscard]] QString path(const QString& name) const { return m_directory.filePath(name); }
    [[nodiscard]] QString path(const Format& format) const
    {
        return path(QStringLiteral("file.") + format.extension);
    }
    [[nodiscard]] QStringList names() const
    {
        return QDir(m_directory.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::System);
    }
    void clear() const
    {
        for (const QString& name : names()) {
            QFile::remove(path(name));
        }
    }

private:
    QTemporaryDir m_directory;
};

TEST_F(FileFaults, AFullDiskLeavesTheOldFileAndNothingElse)
{
    for (const Format& format : writtenFormats()) {
        SCOPED_TRACE(format.name);
        clear();
        const BufferPointer buffer = TestSupport::particleImages(200, 100, format.frames);
        const QString target = path(format);
        exportTo(*buffer, target, format);
        const qint64 size = QFileInfo(target).size();
        TestSupport::writeContent(target, "old");
        for (qint64 limit = 0; limit < size; limit += std::min(size - limit - 1, size / 30) + 1) {
            const QString result = inChild([&] {
                TestSupport::limitFileSize(static_cast<unsigned long long>(limit));
                exportTo(*buffer, target, format);
            });
            EXPECT_EQ(result, QStringLiteral("FileWriteError: Cannot write '%1': File too large").arg(target))
                << limit;
            EXPECT_EQ(TestSupport::contentOf(target), "old");
            EXPECT_EQ(names(), QStringList{QFileInfo(target).fileName()});
        }
    }
}

TEST_F(FileFaults, AfterAFullDiskTheProcessWritesOn)
{
    const BufferPointer buffer = TestSupport::particleImages(200, 100, 3);
    const Format& format = writtenFormats().front();
    const QString result = inChild([&] {
        for (const unsigned long long limit : {5000ULL, 1ULL << 30U}) {
            TestSupport::limitFileSize(limit);
            try {
                exportTo(*buffer, path(format), format);
            } catch (const RTE::FileWriteError&) {
                EXPECT_EQ(limit, 5000U);
            }
        }
    });
    EXPECT_EQ(result, QString());
    EXPECT_TRUE(buffersEqual(*import(path(format)), *buffer));
}

/// Mounts an empty disk of 64 KiB there, in a name space of the process's own.
bool mountSmallDisk(const QString& directory)
{
    const bool isAlone = unshare(CLONE_NEWNS) == 0 || unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0;
    return isAlone && mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
           mount("tmpfs", directory.toLocal8Bit().constData(), "tmpfs", 0, "size=64k") == 0;
}

TEST_F(FileFaults, ASmallDiskIsFullInTheSameWay)
{
    const QString disk = path(QStringLiteral("disk"));
    QDir().mkpath(disk);
    const QString refused = inChild([&] {
        if (!mountSmallDisk(disk)) {
            RTE::raise(RTE::LogicError(QStringLiteral("mount")));
        }
    });
    if (!refused.isEmpty()) {
        GTEST_SKIP() << "this process may not mount a disk";
    }
    for (const Format& format : writtenFormats()) {
        SCOPED_TRACE(format.name);
        const BufferPointer buffer = TestSupport::particleImages(400, 300, format.frames);
        const QString target = disk + QStringLiteral("/file.") + format.extension;
        const QString result = inChild([&] {
            if (mountSmallDisk(disk)) {
                EXPECT_TRUE(raises<RTE::FileWriteError>(
                    QStringLiteral("Cannot write '%1': No space left on device").arg(target),
                    [&] { exportTo(*buffer, target, format); }));
                EXPECT_TRUE(QDir(disk).isEmpty());
            }
        });
        EXPECT_EQ(result, QString());
    }
}

/// A name that cannot be written to or read from, and what the system has against it.
struct BadName
{
    QString name;
    QString writing;
    QString reading;
};

TEST_F(FileFaults, NamesThatDoNotWorkAreRefusedWithTheReason)
{
    const BufferPointer buffer = TestSupport::particleImages(8, 8, 1);
    TestSupport::writeContent(path(QStringLiteral("regular")), "x");
    QDir().mkpath(path(QStringLiteral("directory.qfi")));
    QFile::link(path(QStringLiteral("loop.qfi")), path(QStringLiteral("loop.qfi")));
    QFile::link(path(QStringLiteral("nowhere/target.qfi")), path(QStringLiteral("broken.qfi")));
    const QStringList before = names();
    const QString missing = QStringLiteral("No such file or directory");
    const QString tooLong = QStringLiteral("File name too long");
    const QString loop = QStringLiteral("Too many levels of symbolic links");
    const BadName bad[] = {{path(QStringLiteral("none/file.qfi")), missing, missing},
                           {path(QStringLiteral("regular/file.qfi")), QStringLiteral("Not a directory"),
                            QStringLiteral("Not a directory")},
                           {path(QStringLiteral("directory.qfi")), QStringLiteral("it is not a file"),
                            QStringLiteral("not a regular file")},
                           {path(QStringLiteral("loop.qfi")), loop, loop},
                           {path(QStringLiteral("broken.qfi")), missing, missing},
                           {path(QString(252, QLatin1Char('n')) + QStringLiteral(".qfi")), tooLong, tooLong},
                           {path(QString(200, QChar(0x901F)) + QStringLiteral(".qfi")), tooLong, tooLong},
                           {path(QStringLiteral("null")) + QChar(0) + QStringLiteral(".qfi"),
                            QStringLiteral("it is not a name of a file"), QStringLiteral("Invalid argument")},
                           {QString(), QStringLiteral("it is not a name of a file"), missing},
                           {QStringLiteral("/proc/file.qfi"), missing, missing},
                           {QStringLiteral("/dev/full"), QStringLiteral("it is not a file"),
                            QStringLiteral("not a regular file")}};
    for (const BadName& name : bad) {
        SCOPED_TRACE(name.name.toStdString());
        EXPECT_TRUE(
            raises<RTE::FileWriteError>(QStringLiteral("Cannot write '%1': %2").arg(name.name, name.writing),
                                        [&] { ExportBuffer(buffer.get(), name.name); }));
        EXPECT_TRUE(raises<RTE::FileOpenError>(
            QStringLiteral("Cannot open '%1': %2").arg(name.name, name.reading), [&] { import(name.name); }));
        EXPECT_EQ(names(), before);
    }
}

TEST_F(FileFaults, NamesOfAllLettersAndOfTheGreatestLengthWork)
{
    for (const Format& format : writtenFormats()) {
        const BufferPointer buffer = TestSupport::particleImages(8, 8, format.frames);
        for (const QString& base : {QStringLiteral("Größe 速度 \U0001F300"), QString(251, QLatin1Char('n')),
                                    QStringLiteral("n") + QString(83, QChar(0x901F)) + QLatin1Char('x')}) {
            const QString target = path(base + QLatin1Char('.') + format.extension);
            exportTo(*buffer, target, format);
            EXPECT_TRUE(buffersEqual(*import(target), *buffer)) << target.toStdString();
        }
    }
    EXPECT_EQ(names().size(), 9);
}

TEST_F(FileFaults, ABrokenLinkStaysOneAndItsTargetIsMade)
{
    const Format& format = writtenFormats().front();
    const BufferPointer buffer = TestSupport::particleImages(8, 8, 1);
    ASSERT_TRUE(QFile::link(QStringLiteral("later.qfi"), path(QStringLiteral("link.qfi"))));
    exportTo(*buffer, path(QStringLiteral("link.qfi")), format);
    EXPECT_TRUE(QFileInfo(path(QStringLiteral("link.qfi"))).isSymLink());
    EXPECT_TRUE(buffersEqual(*import(path(QStringLiteral("later.qfi"))), *buffer));
}

TEST_F(FileFaults, PermissionsAreKeptTo)
{
    const BufferPointer buffer = TestSupport::particleImages(8, 8, 1);
    const Format& format = writtenFormats().front();
    const QString target = path(format);
    exportTo(*buffer, target, format);
    const QByteArray before = TestSupport::contentOf(target);
    const QString folder = path(QStringLiteral("folder"));
    QDir().mkpath(folder);
    const auto refuses = [&](const QString& what, const QString& text, const std::function<void()>& call) {
        const QString result = inChild([&] {
            TestSupport::becomeOrdinaryUser();
            call();
        });
        EXPECT_EQ(result, text + QStringLiteral(": Permission denied")) << what.toStdString();
    };
    ASSERT_EQ(chmod(folder.toLocal8Bit().constData(), 0555), 0);
    const QString inFolder = folder + QStringLiteral("/file.qfi");
    refuses(QStringLiteral("read-only folder"),
            QStringLiteral("FileWriteError: Cannot write '%1'").arg(inFolder),
            [&] { exportTo(*buffer, inFolder, format); });
    ASSERT_EQ(chmod(target.toLocal8Bit().constData(), 0444), 0);
    ASSERT_EQ(chmod(folder.toLocal8Bit().constData(), 0777), 0);
    ASSERT_EQ(chmod(path(QString()).toLocal8Bit().constData(), 0777), 0);
    refuses(QStringLiteral("read-only file"), QStringLiteral("FileWriteError: Cannot write '%1'").arg(target),
            [&] { exportTo(*buffer, target, format); });
    ASSERT_EQ(chmod(target.toLocal8Bit().constData(), 0), 0);
    refuses(QStringLiteral("unreadable file"), QStringLiteral("FileOpenError: Cannot open '%1'").arg(target),
            [&] { import(target); });
    ASSERT_EQ(chmod(target.toLocal8Bit().constData(), 0644), 0);
    EXPECT_EQ(TestSupport::contentOf(target), before);
    EXPECT_EQ(names().size(), 2);
    EXPECT_TRUE(QDir(folder).isEmpty());
}

QByteArray little(quint32 value)
{
    const quint32 bytes = qToLittleEndian(value);
    return {reinterpret_cast<const char*>(&bytes), sizeof(bytes)};
}

QByteArray big(quint32 value)
{
    const quint32 bytes = qToBigEndian(value);
    return {reinterpret_cast<const char*>(&bytes), sizeof(bytes)};
}

QByteArray golden(const char* name)
{
    return TestSupport::contentOf(TestSupport::goldenFile(name));
}

QByteArray bitmap(quint32 width, quint32 height, const char* name = "rgb.bmp")
{
    return golden(name).replace(18, 4, little(width)).replace(22, 4, little(height));
}

/// With a header whose checksum is right.
QByteArray png(quint32 width, quint32 height)
{
    QByteArray content = golden("u16.png").replace(16, 4, big(width)).replace(20, 4, big(height));
    quint32 sum = 0xFFFFFFFF;
    for (const char byte : content.mid(12, 17)) {
        sum ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit) {
            sum = sum >> 1U ^ ((sum & 1U) != 0 ? 0xEDB88320U : 0U);
        }
    }
    return content.replace(29, 4, big(~sum));
}

/// With other values of tags that hold one number.
QByteArray tiff(const std::map<quint16, quint32>& values)
{
    QByteArray content = golden("u16-little.tif");
    const auto at = [&](qsizetype offset, auto zero) {
        return qFromLittleEndian<decltype(zero)>(content.constData() + offset);
    };
    const auto directory = static_cast<qsizetype>(at(4, quint32{}));
    for (qsizetype entry = 0; entry < at(directory, quint16{}); ++entry) {
        const qsizetype offset = directory + 2 + 12 * entry;
        const auto value = values.find(at(offset, quint16{}));
        if (value != values.end()) {
            const QByteArray tag = content.mid(offset, 2);
            content.replace(offset, 12, tag + QByteArray("\4\0", 2) + little(1) + little(value->second));
        }
    }
    return content;
}

/// A file whose header promises what it does not hold, and a part of what is said about it.
struct Promise
{
    std::string name;
    QString extension;
    QByteArray content;
    QString reason;
};

TEST_F(FileFaults, PicturesThatPromiseTooMuchAreRefusedBeforeMemoryIsTaken)
{
    constexpr quint32 huge = 0x7FFFFFFF;
    const QString ends = QStringLiteral("the file ends before its");
    const Promise promises[] = {
        {"PGM", QStringLiteral("pgm"), "P5 60000 60000 65535\n" + QByteArray(100, 'x'), ends},
        {"plain PGM", QStringLiteral("pgm"), "P2 60000 60000 255\n1 2 3", ends},
        {"PGM, digits", QStringLiteral("pgm"), "P5 99999999999999999999 1 255\nx",
         QStringLiteral("is damaged")},
        {"BMP", QStringLiteral("bmp"), bitmap(huge, huge), ends},
        {"BMP, runs", QStringLiteral("bmp"), bitmap(60000, 60000, "u8-rle.bmp"), ends},
        {"BMP, upside down", QStringLiteral("bmp"), bitmap(1, 0x80000000), ends},
        {"BMP, negative", QStringLiteral("bmp"), bitmap(0xFFFFFFFF, 1), QStringLiteral("damaged")},
        {"PNG", QStringLiteral("png"), png(60000, 60000), QStringLiteral("too small for 60000 x 60000")},
        {"PNG, overflow", QStringLiteral("png"), png(huge, huge), QString()},
        {"TIFF", QStringLiteral("tif"), tiff({{256, 60000}, {257, 60000}, {278, 60000}}), QString()},
        {"TIFF, overflow", QStringLiteral("tif"),
         tiff({{256, 0xFFFFFFFF}, {257, 0xFFFFFFFF}, {278, 0xFFFFFFFF}}), QString()},
        {"TIFF, bytes", QStringLiteral("tif"),
         tiff({{256, 60000}, {257, 60000}, {278, 60000}, {279, 0xFFFFFFFF}}), QString()},
        {"TIFF, place", QStringLiteral("tif"), tiff({{273, 0xFFFFFFFF}}), QString()}};
    for (const Promise& promise : promises) {
        SCOPED_TRACE(promise.name);
        const QString name = path(QStringLiteral("file.") + promise.extension);
        TestSupport::writeContent(name, promise.content);
        const QString result = inChild([&] {
            TestSupport::limitMemory(1ULL << 30U);
            readPlanes(*import(name));
        });
        EXPECT_THAT(result.toStdString(),
                    testing::StartsWith("FileReadError: Cannot read '" + name.toStdString() + "': "));
        EXPECT_THAT(result.toStdString(), testing::HasSubstr(promise.reason.toStdString()));
    }
}

/// A picture of each format that lies on the disk, of which nothing but the structure is read yet.
class ChangedFiles : public FileFaults, public testing::WithParamInterface<const char*>
{
protected:
    void SetUp() override
    {
        const QString source = QString::fromLatin1(GetParam());
        m_path = path(QStringLiteral("file.") + QFileInfo(source).suffix());
        if (source.contains(QLatin1Char('.'))) {
            TestSupport::writeContent(m_path, golden(GetParam()));
        } else {
            const int packType = source == QStringLiteral("packed") ? 2 : 0;
            ExportBuffer(TestSupport::particleImages(200, 100, 3).get(), m_path, {{"PackType", packType}});
        }
        m_content = TestSupport::contentOf(m_path);
        m_buffer = import(m_path);
        static_cast<void>(m_buffer->GetFrame(0));
    }

    /// Writes into the file itself, as a copying program does; its time is later beyond doubt.
    void overwrite(const QByteArray& content) const
    {
        TestSupport::writeContent(m_path, content);
        const timespec times[2] = {{0, UTIME_OMIT}, {4000000000, 0}};
        ASSERT_EQ(utimensat(AT_FDCWD, m_path.toLocal8Bit().constData(), times, 0), 0);
    }

    QString m_path;
    QByteArray m_content;
    BufferPointer m_buffer;
};

TEST_P(ChangedFiles, AreRefusedWhenTheyAreReadLater)
{
    const QString message =
        QStringLiteral("Cannot read '%1': the file was changed while it was open").arg(m_path);
    QByteArray others = m_content;
    std::transform(others.cbegin(), others.cend(), others.begin(),
                   [](char byte) { return static_cast<char>(~byte); });
    for (const QByteArray& content :
         {others, m_content, m_content.chopped(1), m_content.left(m_content.size() / 2), QByteArray()}) {
        overwrite(content);
        EXPECT_TRUE(raises<RTE::FileReadError>(message, [&] { readPlanes(*m_buffer); })) << content.size();
    }
}

TEST_P(ChangedFiles, AreReadAnewWhenTheyAreOpenedAgain)
{
    const BufferPointer other = TestSupport::particleImages(20, 10, 1);
    const QString otherPath = path(QStringLiteral("other.qfi"));
    ExportBuffer(other.get(), otherPath, {{"PackType", 0}});
    overwrite(TestSupport::contentOf(otherPath));
    EXPECT_TRUE(buffersEqual(*import(m_path), *other));
}

TEST_P(ChangedFiles, DoNoHarmWhenTheirNameIsGivenToAnother)
{
    const BufferPointer expected = import(m_path);
    readPlanes(*expected);
    TestSupport::writeContent(m_path + QStringLiteral(".new"), "another file");
    ASSERT_TRUE(QFile::remove(m_path) && QFile::rename(m_path + QStringLiteral(".new"), m_path));
    EXPECT_TRUE(buffersEqual(*m_buffer, *expected));
}

TEST_P(ChangedFiles, AreReadOnWhileTheyGrow)
{
    const BufferPointer expected = import(m_path);
    readPlanes(*expected);
    overwrite(m_content + "more");
    EXPECT_TRUE(buffersEqual(*m_buffer, *expected));
}

INSTANTIATE_TEST_SUITE_P(Formats, ChangedFiles,
                         testing::Values("packed", "plain", "u16-little.tif", "u16-lzw-predictor.tif",
                                         "u16.png", "rgb.bmp", "u16.pgm", "u10-plain.pgm"),
                         [](const auto& source) {
                             std::string name = source.param;
                             std::replace_if(
                                 name.begin(), name.end(), [](char c) { return c == '.' || c == '-'; }, '_');
                             return name;
                         });

} // namespace
