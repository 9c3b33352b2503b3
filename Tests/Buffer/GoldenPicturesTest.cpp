// SPDX-License-Identifier: Apache-2.0
// Pictures that programs of others made, see golden/make_golden.py: all of them follow one formula.
#include "Core/Buffer/BufferApi.h"
#include "Core/Common/PixelTypes.h"
#include "Tests/Support/Files.h"
#include "Tests/Support/Raises.h"

#include <QTemporaryDir>

#include <cstring>

namespace
{

using BufferApi::E_DataType;

unsigned long long value(unsigned int x, unsigned int y, unsigned int frame)
{
    return 37ULL * x + 101ULL * y + 13ULL * x * y + 1000ULL * frame;
}

/// A gray value, or a colour as 65536 red + 256 green + blue, as the formula has it.
using Formula = double (*)(unsigned long long value);

template <int bits, int factor = 1>
double unsignedBits(unsigned long long v)
{
    return static_cast<double>(v % (1ULL << bits) * factor);
}

double spread(unsigned long long v)
{
    return static_cast<double>(v * 2654435761ULL % (1ULL << 32));
}

template <typename T>
double wrapped(unsigned long long v)
{
    return static_cast<double>(static_cast<T>(v));
}

double spreadSigned(unsigned long long v)
{
    return wrapped<int>(v * 2654435761ULL);
}

double eighth(unsigned long long v)
{
    return static_cast<double>(v) / 8 - 100;
}

double third(unsigned long long v)
{
    return static_cast<double>(v) / 3.0;
}

double colour(unsigned long long v)
{
    return static_cast<double>((v % 256) << 16 | ((v + 85) % 256) << 8 | 3 * v % 256);
}

template <int bits>
double grayMap(unsigned long long v)
{
    return static_cast<double>((5 * (v % (1ULL << bits)) + 3) % 256);
}

double colourMap(unsigned long long v)
{
    const unsigned long long index = v % 256;
    return static_cast<double>((5 * index + 3) % 256 << 16 | 11 * index % 256 << 8 | (255 - index));
}

struct Golden
{
    const char* file;
    E_DataType type;
    Formula formula;
    unsigned int width = 13;
    unsigned int height = 7;
    unsigned int frames = 1;
};

void PrintTo(const Golden& golden, std::ostream* stream)
{
    *stream << golden.file;
}

constexpr auto byte = unsignedBits<8>;
constexpr auto word = unsignedBits<16>;

const std::vector<Golden> pictures = {{"f32-big.tif", BufferApi::DT_FLOAT, eighth},
                                      {"f32-little.tif", BufferApi::DT_FLOAT, eighth},
                                      {"f32-predictor.tif", BufferApi::DT_FLOAT, eighth, 37, 19},
                                      {"f64-big.tif", BufferApi::DT_DOUBLE, third},
                                      {"gray-alpha-opaque.png", BufferApi::DT_BYTE, byte},
                                      {"h5py.qfi", BufferApi::DT_WORD, word, 13, 7, 3},
                                      {"h5py-old.qfi", BufferApi::DT_WORD, word, 13, 7, 3},
                                      {"h5py-texts.qfi", BufferApi::DT_WORD, word, 13, 7, 3},
                                      {"i16.tif", BufferApi::DT_INT32, wrapped<short>},
                                      {"i32-big.tif", BufferApi::DT_INT32, spreadSigned},
                                      {"i8.tif", BufferApi::DT_INT32, wrapped<signed char>},
                                      {"pages-bigtiff-big.tif", BufferApi::DT_WORD, word, 13, 7, 3},
                                      {"pages.ome.tif", BufferApi::DT_WORD, word, 13, 7, 5},
                                      {"palette-8bit-map.tif", BufferApi::DT_RGB, colourMap},
                                      {"palette-colour.bmp", BufferApi::DT_RGB, colourMap},
                                      {"palette-colour.png", BufferApi::DT_RGB, colourMap},
                                      {"palette-colour.tif", BufferApi::DT_RGB, colourMap},
                                      {"palette-gray.png", BufferApi::DT_BYTE, grayMap<8>},
                                      {"palette-gray.tif", BufferApi::DT_BYTE, grayMap<8>},
                                      {"palette-gray4.png", BufferApi::DT_BYTE, grayMap<4>},
                                      {"rgb-lzw-predictor.tif", BufferApi::DT_RGB, colour},
                                      {"rgb-separate-deflate-tiles.tif", BufferApi::DT_RGB, colour, 37, 19},
                                      {"rgb-separate.tif", BufferApi::DT_RGB, colour},
                                      {"rgb-tiles.tif", BufferApi::DT_RGB, colour, 37, 19},
                                      {"rgb.bmp", BufferApi::DT_RGB, colour},
                                      {"rgb.png", BufferApi::DT_RGB, colour},
                                      {"rgb.tif", BufferApi::DT_RGB, colour},
                                      {"rgb32.bmp", BufferApi::DT_RGB, colour},
                                      {"rgba-opaque.png", BufferApi::DT_RGB, colour},
                                      {"rgba-opaque.tif", BufferApi::DT_RGB, colour},
                                      {"u1-lsb-packbits.tif", BufferApi::DT_BYTE, unsignedBits<1>},
                                      {"u1.bmp", BufferApi::DT_BYTE, unsignedBits<1, 255>},
                                      {"u1.png", BufferApi::DT_BYTE, unsignedBits<1, 255>},
                                      {"u1.tif", BufferApi::DT_BYTE, unsignedBits<1>},
                                      {"u10-plain.pgm", BufferApi::DT_WORD, unsignedBits<10>},
                                      {"u10.tif", BufferApi::DT_WORD, unsignedBits<10>},
                                      {"u12-deflate-big.tif", BufferApi::DT_WORD, unsignedBits<12>},
                                      {"u12.tif", BufferApi::DT_WORD, unsignedBits<12>},
                                      {"u14.tif", BufferApi::DT_WORD, unsignedBits<14>},
                                      {"u16-big.tif", BufferApi::DT_WORD, word},
                                      {"u16-bigtiff-big.tif", BufferApi::DT_WORD, word},
                                      {"u16-bigtiff.tif", BufferApi::DT_WORD, word},
                                      {"u16-deflate-predictor-big.tif", BufferApi::DT_WORD, word, 37, 19},
                                      {"u16-interlaced.png", BufferApi::DT_WORD, word, 37, 19},
                                      {"u16-inverted.tif", BufferApi::DT_WORD, word},
                                      {"u16-little.tif", BufferApi::DT_WORD, word},
                                      {"u16-lzw-predictor-big.tif", BufferApi::DT_WORD, word, 37, 19},
                                      {"u16-lzw-predictor.tif", BufferApi::DT_WORD, word},
                                      {"u16-tiles.tif", BufferApi::DT_WORD, word, 37, 19},
                                      {"u16.pgm", BufferApi::DT_WORD, word},
                                      {"u16.png", BufferApi::DT_WORD, word},
                                      {"u2.png", BufferApi::DT_BYTE, unsignedBits<2, 85>},
                                      {"u2.tif", BufferApi::DT_BYTE, unsignedBits<2>},
                                      {"u32-deflate-predictor-big.tif", BufferApi::DT_UINT32, spread, 37, 19},
                                      {"u32.tif", BufferApi::DT_UINT32, spread},
                                      {"u4-interlaced.png", BufferApi::DT_BYTE, unsignedBits<4, 17>},
                                      {"u4-rle.bmp", BufferApi::DT_BYTE, unsignedBits<4, 17>},
                                      {"u4.bmp", BufferApi::DT_BYTE, unsignedBits<4, 17>},
                                      {"u4.png", BufferApi::DT_BYTE, unsignedBits<4, 17>},
                                      {"u4.tif", BufferApi::DT_BYTE, unsignedBits<4>},
                                      {"u8-deflate.tif", BufferApi::DT_BYTE, byte, 37, 19},
                                      {"u8-inverted.tif", BufferApi::DT_BYTE, byte},
                                      {"u8-lzw.tif", BufferApi::DT_BYTE, byte, 37, 19},
                                      {"u8-packbits.tif", BufferApi::DT_BYTE, byte, 37, 19},
                                      {"u8-rle.bmp", BufferApi::DT_BYTE, byte},
                                      {"u8-topdown.bmp", BufferApi::DT_BYTE, byte},
                                      {"u8.bmp", BufferApi::DT_BYTE, byte},
                                      {"u8.pgm", BufferApi::DT_BYTE, byte},
                                      {"u8.png", BufferApi::DT_BYTE, byte},
                                      {"u8.tif", BufferApi::DT_BYTE, byte}};

std::unique_ptr<BufferApi::I_Buffer> readGolden(const std::string& file)
{
    return std::unique_ptr<BufferApi::I_Buffer>(BufferApi::ImportBuffer(TestSupport::goldenFile(file)));
}

double pixel(const BufferApi::I_PlaneBase& plane, unsigned long long index)
{
    if (plane.GetDataType() == BufferApi::DT_RGB) {
        const BufferApi::RgbQuad quad = static_cast<const BufferApi::RgbQuad*>(plane.GetData())[index];
        return 65536.0 * quad.red + 256.0 * quad.green + quad.blue + 16777216.0 * quad.reserved;
    }
    return PixelTypes::visit(
        plane.GetDataType(),
        [&](auto tag) {
            return static_cast<double>(
                static_cast<const typename decltype(tag)::type*>(plane.GetData())[index]);
        },
        [] { return RTE::LogicError(QStringLiteral("no pixels")); });
}

void expectFrame(const BufferApi::I_Frame& frame, const Golden& golden, unsigned int index)
{
    SCOPED_TRACE("frame " + std::to_string(index));
    ASSERT_EQ(frame.GetDataType(), golden.type);
    ASSERT_EQ(frame.GetWidth(), golden.width);
    ASSERT_EQ(frame.GetHeight(), golden.height);
    ASSERT_EQ(frame.GetDepth(), 1U);
    const auto& plane = *frame.GetComponent(BufferApi::I_FrameImage::COMPONENT_PIXEL)->GetPlane(0);
    for (unsigned int y = 0; y < golden.height; ++y) {
        for (unsigned int x = 0; x < golden.width; ++x) {
            ASSERT_EQ(pixel(plane, 1ULL * y * golden.width + x), golden.formula(value(x, y, index)))
                << "at (" << x << ", " << y << ")";
        }
    }
}

class GoldenPictures : public testing::TestWithParam<Golden>
{
};

TEST_P(GoldenPictures, GiveTheFormulasPixels)
{
    const Golden& golden = GetParam();
    const auto buffer = readGolden(golden.file);
    EXPECT_FALSE(buffer->IsModified(0));
    ASSERT_EQ(buffer->GetFrameCount(), golden.frames);
    for (unsigned int i = 0; i < golden.frames; ++i) {
        expectFrame(*buffer->GetFrame(i), golden, i);
    }
}

INSTANTIATE_TEST_SUITE_P(All, GoldenPictures, testing::ValuesIn(pictures));

TEST(GoldenPicturesOfSeveralKinds, GiveEachFrameItsOwn)
{
    const std::vector<Golden> pages = {{"", BufferApi::DT_WORD, word},
                                       {"", BufferApi::DT_BYTE, byte, 5, 9},
                                       {"", BufferApi::DT_FLOAT, eighth, 2, 3},
                                       {"", BufferApi::DT_RGB, colour, 3, 2}};
    const auto tiff = readGolden("pages.tif");
    ASSERT_EQ(tiff->GetFrameCount(), 4U);
    for (unsigned int i = 0; i < 4; ++i) {
        expectFrame(*tiff->GetFrame(i), pages[i], i);
    }
    const auto pgm = readGolden("two-images.pgm");
    ASSERT_EQ(pgm->GetFrameCount(), 2U);
    expectFrame(*pgm->GetFrame(0), {"", BufferApi::DT_BYTE, byte}, 0);
    expectFrame(*pgm->GetFrame(1), {"", BufferApi::DT_WORD, word}, 0);
}

TEST(GoldenPicturesOfMicroscopes, GiveEachSeriesItsOwnScales)
{
    const auto pages = readGolden("pages.ome.tif");
    for (unsigned int i = 0; i < 5; ++i) {
        const Zt::LinearScale usual(Zt::ScalePreset::X);
        const Zt::LinearScale x(0.05, 0, QStringLiteral("mm"), usual.getDescription());
        EXPECT_EQ(pages->GetFrame(i)->GetScaleX(), i < 3 ? x : usual) << i;
        EXPECT_EQ(pages->GetFrame(i)->GetScaleY(), Zt::LinearScale(Zt::ScalePreset::Y)) << i;
    }
}

TEST(GoldenPicturesOfMicroscopes, BelieveWhatTheDescriptionSaysAndNoMore)
{
    const Zt::LinearScale none(Zt::ScalePreset::X);
    const auto scale = [&](const char* unit) {
        return Zt::LinearScale(0.05, 0, QString::fromUtf8(unit), none.getDescription());
    };
    const struct
    {
        const char* text;
        const char* other;
        Zt::LinearScale x;
    } cases[] = {{"SizeXUnit=\"mm\"", "SizeXUnit=\"in\"", scale("in")},
                 {"PhysicalSizeXUnit", "PhysicalSizeQUnit", scale("\xC2\xB5m")},
                 {"SizeXUnit=\"mm\"", "SizeXUnit=\"px\"", none},
                 {"SizeX=\"0.05\"", "SizeX=\"-.05\"", none},
                 {"</OME>", "<!OME>", none},
                 {"IFD=\"0\"", "IFD=\"9\"", none}};
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("changed.tif"));
    for (const auto& c : cases) {
        SCOPED_TRACE(c.other);
        QByteArray content = TestSupport::contentOf(TestSupport::goldenFile("pages.ome.tif"));
        const auto at = content.indexOf(c.text);
        ASSERT_GE(at, 0);
        content.replace(at, static_cast<qsizetype>(std::strlen(c.other)), c.other);
        TestSupport::writeContent(path, content);
        const std::unique_ptr<BufferApi::I_Buffer> buffer(BufferApi::ImportBuffer(path));
        EXPECT_EQ(buffer->GetFrame(0)->GetScaleX(), c.x);
    }
}

TEST(GoldenPicturesThatNoFrameHolds, AreRefusedWithAReason)
{
    const std::map<std::string, QString> reasons = {
        {"c64-refused.tif", "gray complex samples of 64 bits are not supported"},
        {"rgb16-refused.tif", "coloured unsigned samples of 16 bits are not supported"},
        {"rgba-transparent.png", "it has transparent pixels"},
        {"rgba-transparent.tif", "it has transparent pixels"},
        {"u64-refused.tif", "gray unsigned samples of 64 bits are not supported"},
        {"u8-lzma-refused.tif", "compression LZMA is not supported; save it with deflate or LZW"}};
    for (const auto& [file, reason] : reasons) {
        SCOPED_TRACE(file);
        const QString path = TestSupport::goldenFile(file);
        EXPECT_TRUE(TestSupport::raises<RTE::FileReadError>(
            QStringLiteral("Cannot read '%1': %2").arg(path, reason), [&, name = file] {
                const auto buffer = readGolden(name);
                static_cast<void>(buffer->GetFrame(0)->GetPlane(0, 0)->GetData());
            }));
    }
}

TEST(BitmapsOfRuns, AreRefusedWhenTheirCodeIsDamaged)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("damaged.bmp"));
    constexpr qsizetype height = 22;
    for (const char* file : {"u4-rle.bmp", "u8-rle.bmp"}) {
        const QByteArray content = TestSupport::contentOf(TestSupport::goldenFile(file));
        const QByteArray withoutEnd = content.chopped(2);
        const QByteArray tooManyRows = QByteArray(content).replace(height, 1, "\6");
        const QByteArray cutWithin = withoutEnd.chopped(2) + QByteArray("\0\7a", 3);
        for (const QByteArray& damaged : {withoutEnd, tooManyRows, cutWithin}) {
            TestSupport::writeContent(path, damaged);
            EXPECT_TRUE(TestSupport::raises<RTE::FileReadError>(
                QStringLiteral("Cannot read '%1': the bitmap's runs are damaged").arg(path), [&] {
                    const std::unique_ptr<BufferApi::I_Buffer> buffer(BufferApi::ImportBuffer(path));
                    static_cast<void>(buffer->GetFrame(0)->GetPlane(0, 0)->GetData());
                }));
        }
    }
}

} // namespace
