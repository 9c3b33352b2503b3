// SPDX-License-Identifier: Apache-2.0
// Cut and altered pictures give pixels or an exception of the library, never anything worse.
#include "Core/Buffer/BufferApi.h"
#include "Core/Common/Exception.h"
#include "Tests/Support/Files.h"

#include <QDir>
#include <QLoggingCategory>

#include <random>
#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

namespace
{

/// A file in memory: truncating and rewriting one on a disk may wait for the disk each time.
class MemoryFile
{
public:
    MemoryFile() : m_descriptor(memfd_create("damaged", MFD_CLOEXEC)) {}
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    ~MemoryFile() { close(m_descriptor); }

    [[nodiscard]] QString path() const { return QStringLiteral("/proc/self/fd/%1").arg(m_descriptor); }
    void set(const QByteArray& content) const
    {
        EXPECT_EQ(ftruncate(m_descriptor, 0), 0);
        EXPECT_EQ(pwrite(m_descriptor, content.data(), static_cast<std::size_t>(content.size()), 0),
                  content.size());
    }

private:
    int m_descriptor;
};

/// Address space of this process, which a promise of huge sizes must not take.
class AddressSpaceLimit
{
public:
    AddressSpaceLimit()
    {
        getrlimit(RLIMIT_AS, &m_before);
        rlimit limit = m_before;
#ifndef DATAOBJECTS_SANITIZED
        constexpr rlim_t bytes = 1ULL << 30;
        limit.rlim_cur = bytes;
#endif
        setrlimit(RLIMIT_AS, &limit);
    }
    AddressSpaceLimit(const AddressSpaceLimit&) = delete;
    AddressSpaceLimit& operator=(const AddressSpaceLimit&) = delete;
    ~AddressSpaceLimit()
    {
        setrlimit(RLIMIT_AS, &m_before);
    }

private:
    rlimit m_before{};
};

/// The pictures of one extension that are small enough to be cut at every length.
class DamagedPictures : public testing::TestWithParam<const char*>
{
protected:
    void SetUp() override { QLoggingCategory::setFilterRules(QStringLiteral("rte.exception=false")); }
    void TearDown() override { QLoggingCategory::setFilterRules({}); }

    [[nodiscard]] QStringList pictures() const
    {
        const QStringList patterns(QStringLiteral("*.") + QLatin1String(GetParam()));
        QStringList paths;
        for (const QFileInfo& file : QDir(TestSupport::goldenFile("")).entryInfoList(patterns, QDir::Files)) {
            if (file.size() < 1200 && !file.baseName().endsWith(QStringLiteral("refused")) &&
                !file.baseName().endsWith(QStringLiteral("transparent"))) {
                paths.append(file.filePath());
            }
        }
        return paths;
    }

    /// True when all pixels came.
    bool readAll(const QByteArray& content)
    {
        m_file.set(content);
        try {
            const std::unique_ptr<BufferApi::I_Buffer> buffer(BufferApi::ImportBuffer(m_file.path()));
            for (unsigned int i = 0; i < buffer->GetFrameCount(); ++i) {
                static_cast<void>(buffer->GetFrame(i)->GetPlane(0, 0)->GetData());
            }
            return true;
        } catch (const RTE::Exception& raised) {
            EXPECT_THAT(raised.what(), testing::HasSubstr(m_file.path().toStdString()));
            return false;
        }
    }

private:
    MemoryFile m_file;
    AddressSpaceLimit m_limit;
};

TEST_P(DamagedPictures, CutAtEveryLengthRaiseOrGivePixels)
{
    EXPECT_GE(pictures().size(), 4);
    for (const QString& picture : pictures()) {
        SCOPED_TRACE(picture.toStdString());
        const QByteArray whole = TestSupport::contentOf(picture);
        for (qsizetype length = 0; length < whole.size(); ++length) {
            const bool isRead = readAll(whole.left(length));
            ASSERT_FALSE(isRead && length < whole.size() / 4) << length;
        }
        EXPECT_TRUE(readAll(whole));
    }
}

TEST_P(DamagedPictures, WithFlippedBitsRaiseOrGivePixels)
{
    std::mt19937 random(7);
    for (const QString& picture : pictures()) {
        const QByteArray whole = TestSupport::contentOf(picture);
        for (int round = 0; round < 400; ++round) {
            QByteArray content = whole;
            for (int flips = 1 + round % 3; flips > 0; --flips) {
                const auto place =
                    static_cast<qsizetype>(random() % static_cast<unsigned long>(content.size()));
                content[place] = static_cast<char>(content[place] ^ 1 << random() % 8);
            }
            readAll(content);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(All, DamagedPictures, testing::Values("tif", "png", "bmp", "pgm"),
                         [](const auto& format) { return format.param; });

} // namespace
