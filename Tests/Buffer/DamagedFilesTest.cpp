// SPDX-License-Identifier: Apache-2.0
// Damaged files give an exception that names them, or what is left of their data: never a crash, a hang or a
// lot of memory. Where the format has checksums, they never give other data.
//
// DATAOBJECTS_DAMAGE_TRIES=20000 makes the long form of it, with a line of figures for each format.
#include "Core/Buffer/BufferApi.h"
#include "Core/Buffer/FrameStream.h"
#include "Core/Common/Exception.h"
#include "Tests/Support/Allocations.h"
#include "Tests/Support/Files.h"
#include "Tests/Support/Frames.h"
#include "Tests/Support/MemoryFile.h"
#include "Tests/Support/ReadEverything.h"
#include "Tests/Support/SampleBuffers.h"

#include <QDir>
#include <QLoggingCategory>

#include <cstdio>
#include <ctime>
#include <random>
#include <sys/resource.h>

/// HDF5 loses what it has read of a header that proves to be damaged; nothing of ours stands below it.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions()
{
    return "leak:libhdf5_serial\n";
}

namespace
{

using namespace BufferApi;
using TestSupport::BufferPointer;

constexpr int packed = 2;
constexpr int unpacked = 0;

/// A whole file and what it holds.
struct Sample
{
    QByteArray content;
    BufferPointer buffer;
};

Sample sampleOf(const I_Buffer& buffer, const char* extension, int packType)
{
    const QTemporaryDir folder(QStringLiteral("/dev/shm/damaged-XXXXXX"));
    const QString path = folder.filePath(QStringLiteral("whole.") + QLatin1String(extension));
    ExportBuffer(&buffer, path, {{"PackType", packType}});
    BufferPointer back(ImportBuffer(path));
    TestSupport::readEverything(*back);
    return {TestSupport::contentOf(path), std::move(back)};
}

BufferPointer frame(I_Frame* created)
{
    BufferPointer buffer(CreateBuffer());
    buffer->AddFrame(created);
    TestSupport::fillWithNoise(*created, 1);
    TestSupport::setNumber(*created, "time", 0.001);
    TestSupport::setText(*buffer, "camera", QStringLiteral("left"));
    return buffer;
}

/// A stream after its last append, as a killed writer leaves it, and finished.
void addStreamed(const I_Buffer& buffer, int packType, std::vector<Sample>& files)
{
    const QTemporaryDir folder(QStringLiteral("/dev/shm/damaged-XXXXXX"));
    const QString path = folder.filePath(QStringLiteral("stream.qfi"));
    FrameStream stream(path, {{"PackType", packType}});
    for (unsigned int i = 0; i < buffer.GetFrameCount(); ++i) {
        stream.append(*buffer.GetFrame(i));
    }
    for (const bool isFinished : {false, true}) {
        if (isFinished) {
            stream.finish();
        }
        BufferPointer back(ImportBuffer(path));
        TestSupport::readEverything(*back);
        files.push_back({TestSupport::contentOf(path), std::move(back)});
    }
}

/// Together they hold every kind of object that our files have.
std::vector<Sample> nativeFiles(int packType)
{
    const auto recording = TestSupport::vectorFields(3);
    recording->AddFrame(CreateImageFrame(DT_WORD, 40, 30, 1));
    TestSupport::fillWithNoise(*recording->GetFrame(3), 1);
    recording->GetFrame(2)->SetScaleX({7, 8, QStringLiteral("m"), QString()});
    std::vector<Sample> files;
    files.push_back(sampleOf(*frame(CreateImageFrame(DT_WORD, 8, 6, 1)), "qfi", packType));
    files.push_back(sampleOf(*recording, "qfv", packType));
    addStreamed(*recording, packType, files);
    for (const TestSupport::SampleBuffer& sample : TestSupport::sampleBuffers()) {
        if (sample.name != "LargePlanes") {
            files.push_back(sampleOf(*sample.make(), "qfi", packType));
        }
    }
    return files;
}

/// Those made by other programs that we take.
std::vector<Sample> pictures(const char* extension, qint64 mostBytes = 1200)
{
    const QStringList patterns(QStringLiteral("*.") + QLatin1String(extension));
    std::vector<Sample> files;
    for (const QFileInfo& file : QDir(TestSupport::goldenFile("")).entryInfoList(patterns, QDir::Files)) {
        if (file.size() < mostBytes && !file.baseName().endsWith(QStringLiteral("refused")) &&
            !file.baseName().endsWith(QStringLiteral("transparent"))) {
            BufferPointer buffer(ImportBuffer(file.filePath()));
            TestSupport::readEverything(*buffer);
            files.push_back({TestSupport::contentOf(file.filePath()), std::move(buffer)});
        }
    }
    return files;
}

/// Of h5py, most of them without checksums.
std::vector<Sample> nativeFilesOfOthers()
{
    return pictures("qfi", 1 << 16);
}

std::vector<Sample> picturesAndOurs(const char* extension)
{
    std::vector<Sample> files = pictures(extension);
    files.push_back(sampleOf(*frame(CreateImageFrame(DT_WORD, 8, 6, 1)), extension, packed));
    return files;
}

/// What must raise if it would give other data. TIFF, BMP and PGM have no checksums: other pixels are what
/// such a file says. A PGM whose second image is cut off is one of one image.
enum class Shows
{
    Nothing,
    Cuts,
    AnyDamage
};

struct DamagedFormat
{
    const char* name;
    std::function<std::vector<Sample>()> samples;
    Shows shows;
};

const DamagedFormat formats[] = {{"NativePacked", [] { return nativeFiles(packed); }, Shows::AnyDamage},
                                 {"NativeUnpacked", [] { return nativeFiles(unpacked); }, Shows::AnyDamage},
                                 {"NativeOfOthers", nativeFilesOfOthers, Shows::Nothing},
                                 {"Tiff", [] { return picturesAndOurs("tif"); }, Shows::Cuts},
                                 {"Png", [] { return picturesAndOurs("png"); }, Shows::AnyDamage},
                                 {"Bmp", [] { return pictures("bmp"); }, Shows::Cuts},
                                 {"Pgm", [] { return pictures("pgm"); }, Shows::Nothing}};

int wantedTries()
{
    constexpr int briefly = 400;
    bool isSet = false;
    const int tries = qEnvironmentVariableIntValue("DATAOBJECTS_DAMAGE_TRIES", &isSet);
    return isSet ? tries : briefly;
}

bool isLongForm()
{
    return qEnvironmentVariableIsSet("DATAOBJECTS_DAMAGE_TRIES");
}

/// Address space of this process, which no promise of huge sizes must take.
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

/// Time of this process alone, however busy the machine is.
long cpuMilliseconds()
{
    return std::clock() / (CLOCKS_PER_SEC / 1000);
}

/// What became of many damaged files.
struct Tally
{
    int tries = 0;
    int refused = 0;
    int same = 0;
    int other = 0;
    long longestMilliseconds = 0;
    std::size_t largestBlock = 0;
};

std::ostream& operator<<(std::ostream& stream, const Tally& tally)
{
    return stream << tally.tries << " tries: " << tally.refused << " refused, " << tally.same
                  << " the same data, " << tally.other << " other data; longest " << tally.longestMilliseconds
                  << " ms, largest block " << tally.largestBlock << " bytes";
}

class DamagedFiles : public testing::TestWithParam<DamagedFormat>
{
protected:
    void SetUp() override { QLoggingCategory::setFilterRules(QStringLiteral("rte.exception=false")); }
    void TearDown() override
    {
        QLoggingCategory::setFilterRules({});
        RecordProperty("figures", testing::PrintToString(m_tally));
        if (isLongForm()) {
            std::printf("%s: %s\n", GetParam().name, testing::PrintToString(m_tally).c_str());
        }
    }

    /// Reads all of a damaged file.
    void tryOne(const QByteArray& content, const I_Buffer& whole, bool mustShow);
    [[nodiscard]] const Tally& tally() const { return m_tally; }

private:
    void read(const QString& path, const I_Buffer& whole, bool mustShow);

    Tally m_tally;
};

void DamagedFiles::read(const QString& path, const I_Buffer& whole, bool mustShow)
{
    try {
        const BufferPointer buffer(ImportBuffer(path));
        TestSupport::readEverything(*buffer);
        const auto isSame = TestSupport::buffersEqual(whole, *buffer);
        ++(isSame ? m_tally.same : m_tally.other);
        EXPECT_TRUE(isSame || !mustShow) << isSame.message();
    } catch (const RTE::Exception& raised) {
        ++m_tally.refused;
        EXPECT_TRUE(raised.message().contains(path)) << raised.what();
    }
}

void DamagedFiles::tryOne(const QByteArray& content, const I_Buffer& whole, bool mustShow)
{
    constexpr std::size_t mostBytes = 1U << 25U;
    constexpr long mostMilliseconds = 5000;
    const TestSupport::MemoryFile file(content);
    const long begin = cpuMilliseconds();
    TestSupport::forgetLargestAllocation();
    read(file.path(), whole, mustShow);
    const std::size_t largest = TestSupport::largestAllocation();
    const long milliseconds = cpuMilliseconds() - begin;
    EXPECT_LT(largest, mostBytes);
    EXPECT_LT(milliseconds, mostMilliseconds);
    ++m_tally.tries;
    m_tally.largestBlock = std::max(m_tally.largestBlock, largest);
    m_tally.longestMilliseconds = std::max(m_tally.longestMilliseconds, milliseconds);
}

TEST_P(DamagedFiles, WithOneByteChangedRaiseOrGiveData)
{
    const std::vector<Sample> samples = GetParam().samples();
    ASSERT_GE(samples.size(), 4U);
    const AddressSpaceLimit limit;
    std::mt19937 random(7);
    for (int attempt = 0; attempt < wantedTries() && !HasFailure(); ++attempt) {
        const Sample& sample = samples[static_cast<std::size_t>(attempt) % samples.size()];
        QByteArray content = sample.content;
        const auto at = static_cast<qsizetype>(random() % static_cast<unsigned long>(content.size()));
        content[at] = static_cast<char>(content[at] ^ static_cast<char>(1 + random() % 255));
        SCOPED_TRACE(testing::Message() << "try " << attempt << ", byte " << at);
        tryOne(content, *sample.buffer, GetParam().shows == Shows::AnyDamage);
    }
    EXPECT_GT(tally().refused, 0);
}

/// As a disk loses them: zeros, or bytes of something else, over up to 4096 bytes. Fletcher32 of zeros is
/// zero, so zeros over a whole plane as it is and its checksum go unseen.
TEST_P(DamagedFiles, WithABlockLostRaiseOrGiveData)
{
    constexpr unsigned long most = 4096;
    const std::vector<Sample> samples = GetParam().samples();
    const AddressSpaceLimit limit;
    std::mt19937 random(8);
    for (int attempt = 0; attempt < wantedTries() && !HasFailure(); ++attempt) {
        const Sample& sample = samples[static_cast<std::size_t>(attempt) % samples.size()];
        QByteArray content = sample.content;
        const auto size = static_cast<unsigned long>(content.size());
        const auto at = static_cast<qsizetype>(random() % size);
        const auto count = std::min(static_cast<qsizetype>(2 + random() % most), content.size() - at);
        const bool isZero = attempt % 2 == 0 && GetParam().name != std::string("NativeUnpacked");
        std::generate_n(content.begin() + at, count,
                        [&] { return isZero ? '\0' : static_cast<char>(random()); });
        SCOPED_TRACE(testing::Message() << "try " << attempt << ", bytes " << at << " + " << count);
        tryOne(content, *sample.buffer, GetParam().shows == Shows::AnyDamage);
    }
    EXPECT_GT(tally().refused, 0);
}

TEST_P(DamagedFiles, CutAtEveryLengthRaiseOrGiveData)
{
    const std::vector<Sample> samples = GetParam().samples();
    const AddressSpaceLimit limit;
    for (const Sample& sample : samples) {
        const qsizetype size = sample.content.size();
        const qsizetype tries = isLongForm() ? size : wantedTries() / static_cast<qsizetype>(samples.size());
        for (qsizetype attempt = 0; attempt < tries && !HasFailure(); ++attempt) {
            const qsizetype length = attempt * size / tries;
            SCOPED_TRACE(testing::Message() << "length " << length << " of " << size);
            tryOne(sample.content.left(length), *sample.buffer, GetParam().shows != Shows::Nothing);
        }
    }
    EXPECT_GT(tally().refused, tally().tries / 2);
}

INSTANTIATE_TEST_SUITE_P(Formats, DamagedFiles, testing::ValuesIn(formats),
                         [](const auto& format) { return format.param.name; });

/// What fuzzing found: content, and a part of the message besides the file's name.
struct Finding
{
    const char* name;
    QByteArray content;
    const char* reason;
};

QByteArray png(const QByteArray& rest)
{
    return QByteArray::fromHex("89504e470d0a1a0a0000000d4948445200000008000000061000000000"
                               "8bfe5c64") +
           rest;
}

void expectRefused(const std::vector<Finding>& findings)
{
    constexpr std::size_t mostBytes = 1U << 25U;
    for (const Finding& finding : findings) {
        SCOPED_TRACE(finding.name);
        const TestSupport::MemoryFile file(finding.content);
        const long begin = cpuMilliseconds();
        TestSupport::forgetLargestAllocation();
        try {
            TestSupport::readEverything(*BufferPointer(ImportBuffer(file.path())));
            ADD_FAILURE() << "was read";
        } catch (const RTE::FileReadError& raised) {
            EXPECT_THAT(raised.what(), testing::AllOf(testing::HasSubstr(file.path().toStdString()),
                                                      testing::HasSubstr(finding.reason)));
        }
        EXPECT_LT(TestSupport::largestAllocation(), mostBytes);
        EXPECT_LT(cpuMilliseconds() - begin, 1000);
    }
}

/// A file of h5py with one byte changed, so far behind the name of an attribute, a filter or a part of the
/// file.
QByteArray changed(const char* file, const QByteArray& name, qsizetype distance, char byte)
{
    QByteArray content = TestSupport::contentOf(TestSupport::goldenFile(file));
    const qsizetype at = content.indexOf(name) + name.size() + distance;
    content[at] = byte;
    return content;
}

TEST(FoundFiles, AreRefusedQuicklyAndWithoutMuchMemory)
{
    const std::vector<Finding> findings{{"text of half a gigabyte",
                                         png(QByteArray::fromHex("21000118") + "iTXtFrame record"),
                                         "the file ends early"},
                                        {"bitmap without width",
                                         QByteArray("BM") + QByteArray(8, '\0') +
                                             QByteArray::fromHex("3600000028000000"
                                                                 "00000000"
                                                                 "ffffff7f"
                                                                 "01001800") +
                                             QByteArray(24, '\0'),
                                         "it has no pixels"}};
    expectRefused(findings);
}

/// HDF5 1.10 crashes, hangs or reads elsewhere with each of these.
TEST(FoundFiles, ThatHdf5CannotTakeAreRefused)
{
    const char* old = "h5py-old.qfi";
    const char* texts = "h5py-texts.qfi";
    expectRefused(
        {{"type of no class", changed(old, QByteArrayLiteral("qf_choices\0"), 5, '\x1f'),
          "unknown datatype class"},
         {"number wider than its bytes", changed(old, QByteArrayLiteral("qf_choices\0"), 15, '\x7f'),
          "qf_choices: its type of numbers is damaged"},
         {"values larger than their type", changed(old, QByteArrayLiteral("is_calibrated\0"), 17, '\x7f'),
          "/: its header is damaged"},
         {"names beyond the file", changed(old, "HEAP", 9, '\x7f'), "/: its header is damaged"},
         {"chunks without dimensions", changed(old, QByteArrayLiteral("fletcher32\0"), 15, '\0'),
          "PIXEL: its header is damaged"},
         {"chunks larger than they are", changed(old, QByteArrayLiteral("fletcher32\0"), 37, '\1'),
          "PIXEL: a chunk has the wrong size"},
         {"packed chunks larger than they are", changed(texts, QByteArrayLiteral("shuffle\0"), 60, '\1'),
          "PIXEL: packed bytes are damaged"},
         {"a chunk beyond the file", changed(texts, QByteArrayLiteral("TREE\1\0\6"), 20, '\x7f'),
          "PIXEL: addr overflow"},
         {"text beyond its heap", changed(texts, "GCOL", 23, '\x7f'), "qf_format: its text is damaged"},
         {"heap without end", changed(texts, "GCOL", 12, '\0'), "qf_format: its text is damaged"}});
}

} // namespace
