// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/FilesystemExport.h"

#include "Core/Buffer/ImportExport.h"
#include "Core/DataObjects/AttributesContainer.h"
#include "Core/DataObjects/FilesystemImport.h"
#include "Core/DataObjects/ImageBufferFromBuffer.h"
#include "Core/DataObjects/ImageFromBuffer.h"
#include "Core/DataObjects/ImageToBuffer.h"
#include "Core/DataObjects/LazyMask.h"
#include "Tests/DataObjects/Fields.h"
#include "Tests/Support/AllTypes.h"
#include "Tests/Support/Allocations.h"
#include "Tests/Support/Files.h"
#include "Tests/Support/Frames.h"
#include "Tests/Support/ImageFrames.h"
#include "Tests/Support/Raises.h"
#include "Tests/Support/SamePixels.h"
#include "Tests/Support/Scales.h"

#include <QDir>
#include <QTemporaryDir>

namespace
{

using namespace DataObjects;
using namespace TestSupport;

/// Every function that writes a file, by a path.
const std::vector<std::pair<std::string, std::function<void(const QString&)>>>& allExports()
{
    static const std::vector<std::pair<std::string, std::function<void(const QString&)>>> exports = {
        {"ExportImage", [](const QString& path) { ExportImage(Image<float>(3, 2, 1.0F, true), path); }},
        {"ExportImageBuffer",
         [](const QString& path) { ExportImageBuffer(ImageBuffer<int>(3, 2, 1, 2, 7, true), path); }},
        {"ExportImageData", [](const QString& path) { ExportImageData(ImageData<int>(3, 2, 7), path); }},
        {"ExportImageVolume",
         [](const QString& path) {
             ExportImageVolume(ImageVolume<int>({3, 2, 2}, 7, true), path);
         }},
        {"ExportMask", [](const QString& path) { ExportMask(Mask(3, 2, true), path); }},
        {"ExportScalarField", [](const QString& path) {
             ScalarField<double> field(3, 2, Zt::LinearScale(Zt::ScalePreset::I));
             field.InitializeWithZeros();
             ExportScalarField(field, path);
         }}};
    return exports;
}

class FilesystemExport : public testing::Test
{
protected:
    [[nodiscard]] QString path(const QString& name) const { return m_folder.filePath(name); }
    [[nodiscard]] QStringList files() const
    {
        return QDir(m_folder.path()).entryList(QDir::Files | QDir::Hidden | QDir::System, QDir::Name);
    }

    QTemporaryDir m_folder;
};

TEST_F(FilesystemExport, NamesWithoutASuffixGetTheNativeOne)
{
    const std::vector<std::pair<QString, QString>> names = {
        {"name", "name.qfi"},   {"run.1", "run.1"}, {"a.b", "a.b"},     {"a.b.c", "a.b.c"},
        {"name.", "name..qfi"}, {".name", ".name"}, {"é", "é.qfi"},     {"name.QFI", "name.QFI"},
        {"x.qfv", "x.qfv"},     {"a b", "a b.qfi"}, {"n.TIF", "n.TIF"}, {"p.png", "p.png"}};
    for (const auto& [name, expected] : names) {
        ExportImageData(ImageData<unsigned char>(3, 2, 7), path(name));
        EXPECT_EQ(files(), QStringList{expected}) << name.toStdString();
        EXPECT_EQ(ImportImageDataT<int>(path(expected), 0, 0)(2, 1), 7) << name.toStdString();
        QFile::remove(path(expected));
    }
    // A dot in the name of a folder is no suffix of the file.
    ExportMask(Mask(3, 2, true), path("run.1/mask"));
    EXPECT_TRUE(QFile::exists(path("run.1/mask.qfi")));
}

TEST_F(FilesystemExport, EveryFunctionMakesItsFoldersAndCompletesThePath)
{
    for (const auto& [name, exportTo] : allExports()) {
        const QString folder = path(QString::fromStdString(name) + QStringLiteral("/sub"));
        exportTo(folder + QStringLiteral("/name"));
        EXPECT_EQ(QDir(folder).entryList(QDir::Files), QStringList{"name.qfi"}) << name;
    }
}

TEST_F(FilesystemExport, FoldersThatCannotBeMadeAreRefusedAndNothingIsWritten)
{
    const QString file = path("file");
    writeContent(file, "content");
    for (const auto& [name, exportTo] : allExports()) {
        SCOPED_TRACE(name);
        const auto call = [&] { exportTo(file + QStringLiteral("/sub/name")); };
        EXPECT_TRUE(raises("Failed to create directory for export!", call));
        EXPECT_EQ(contentOf(file), "content");
        EXPECT_EQ(files(), QStringList{"file"});
    }
}

TEST_F(FilesystemExport, FilesThatCannotBeWrittenAreNamedAndTheirFolderStays)
{
    const QString taken = path("sub/taken.qfi");
    ASSERT_TRUE(QDir().mkpath(taken));
    const QString text = QStringLiteral("Cannot write '%1': it is not a file").arg(taken);
    for (const auto& [name, exportTo] : allExports()) {
        EXPECT_TRUE(raises<RTE::FileWriteError>(text, [&] { exportTo(taken); })) << name;
    }
    EXPECT_THROW(ExportImageData(ImageData<float>(3, 2, 1.0F), path("made/float.png")), RTE::FileWriteError)
        << "PNG does not hold floats";
    EXPECT_TRUE(QDir(path("made")).isEmpty());
}

TEST_F(FilesystemExport, AFailedExportLeavesTheOldFile)
{
    const QString file = path("old.qfi");
    ExportImageData(ImageData<int>(3, 2, 7), file);
    ImageBuffer<int> broken(3, 2, 1, 2, 9, true);
    const std::unique_ptr<int[]> released(broken.getFrame(1).getPlane(0).GetImageData().ReleaseRawPointer());
    EXPECT_TRUE(raises("data-pointer is null", [&] { ExportImageBuffer(broken, file); }));
    EXPECT_EQ(files(), QStringList{"old.qfi"});
    EXPECT_EQ(ImportImageDataT<int>(file, 0, 0)(2, 1), 7);
}

TEST_F(FilesystemExport, ImagesOfAllTypesComeBackBitForBit)
{
    forAllTypes([&]<typename T>(PixelTypes::Tag<T>) {
        const auto frame = imageFrame(BufferApi::GetDataType<T>(), 1);
        const QString file = path("image.qfi");
        ExportImage(GetImageT<T>(*frame, 0, true), file);
        const auto buffer = CreateBufferFromImageT(ImportImageT<T>(file, 0, 0), true);
        EXPECT_TRUE(framesEqual(*buffer->GetFrame(0), *frame));
    });
}

/// Frames of different size and depth, the middle one of a single plane; NaN and -0.0 in their scales.
ImageBuffer<float> mixedRecording()
{
    std::vector<ImageVolume<float>> volumes;
    volumes.emplace_back(Math::Size3T<unsigned int>(5, 4, 3), 1.5F, true);
    volumes.emplace_back(Math::Size3T<unsigned int>(2, 9, 1), -0.0F, true);
    volumes.emplace_back(Math::Size3T<unsigned int>(5, 4, 3), 2.5F, false);
    volumes[0].getPlane(1).SetMaskValid(2, 1, false);
    volumes[1].getPlane(0).ReplaceMaskStrategy(std::make_unique<LazyMask>(2U, 9U, true));
    volumes[1].getPlane(0).GetScalarFields().Add("é", 7.0F);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    volumes[2].SetScaleX(Zt::LinearScale(nan, -0.0, "µm", "x"));
    volumes[2].SetScaleY(Zt::LinearScale(-0.0, nan, QString(), QString()));
    volumes[2].SetScaleZ(Zt::LinearScale(nan, 1.0, QString(), QString()));
    volumes[2].SetScaleI(
        Zt::LinearScale(1.0, -std::numeric_limits<double>::infinity(), QString(), QString()));
    volumes[2].GetAttributes().set("Frame", std::vector<float>{-0.0F, 1.0F});
    AttributesContainer attributes;
    attributes.set("Project", QStringLiteral("Jet"));
    ImageBuffer<float> recording(std::move(volumes), attributes);
    recording.SetName("Mixed");
    return recording;
}

TEST_F(FilesystemExport, RecordingsAreTheFilesOfTheirWholeBuffers)
{
    const auto empty = ImageBuffer<float>::CreateEmptyImageBuffer();
    empty->SetName("Empty");
    const ImageBuffer<float> mixed = mixedRecording();
    const ImageBuffer<float> noPixels(0, 3, 2, 2, 1.0F, true);
    for (const ImageBuffer<float>* const recording : {&std::as_const(*empty), &mixed, &noPixels}) {
        SCOPED_TRACE(recording->GetName().toStdString());
        ExportImageBuffer(*recording, path("frames.qfi"));
        const auto buffer = CreateBufferFromImageBuffer(*recording, true);
        BufferApi::ExportBuffer(buffer.get(), path("whole.qfi"), {{"PackType", 2}});
        EXPECT_EQ(contentOf(path("frames.qfi")), contentOf(path("whole.qfi")));
    }
    // The scales need not be numbers.
    const QString file = path("mixed.qfi");
    ExportImageBuffer(mixed, file);
    EXPECT_TRUE(buffersEqual(*CreateBufferFromImageBuffer(*ImportImageBuffer(file), true),
                             *CreateBufferFromImageBuffer(mixed, true)));
    EXPECT_EQ(ImportImageVolumeT<int>(file, 2).GetDepth(), 3U);
}

TEST_F(FilesystemExport, ImagesThatWereMovedFromAreRefused)
{
    const QString file = path("moved.qfi");
    Image<float> image(3, 2, 1.5F, true);
    const Image<float> target(std::move(image));
    ImageVolume<float> volume({3, 2, 2}, 1.5F, true);
    const Image<float> plane(std::move(volume.getPlane(1)));
    Mask mask(3, 2, true);
    const std::unique_ptr<bool[]> pixels(mask.ReleaseRawPointer());
    const QString text = "data-pointer is null";
    expectRaised({{text, [&] { ExportImage(image, file); }},
                  {text, [&] { ExportImageVolume(volume, file); }},
                  {text, [&] { ExportMask(mask, file); }}});
    EXPECT_TRUE(files().isEmpty());
}

TEST_F(FilesystemExport, MasksAreBytesOf255And0)
{
    unsigned char bytes[] = {0, 1, 255, 2, 0, 0};
    const Mask mask(reinterpret_cast<bool*>(bytes), 3, 2, false);
    ExportMask(mask, path("mask"));
    const auto picture = ImportImage(path("mask.qfi"), 0, 0);
    const std::vector<unsigned char> expected = {0, 255, 255, 255, 0, 0};
    EXPECT_TRUE(samePixels(dynamic_cast<const Image<unsigned char>&>(*picture), expected));
    EXPECT_EQ(picture->GetScaleX(), defaultScales[0]);

    ExportMask(Mask(40, 30, false), path("none.png"));
    EXPECT_TRUE(samePixels(ImportImageDataT<int>(path("none.png"), 0, 0), std::vector<int>(1200)));
}

TEST_F(FilesystemExport, ScalarFieldsAreImagesWithTheirScale)
{
    forAllTypes([&]<typename T>(PixelTypes::Tag<T>) {
        ScalarField<T> field(3, 2, kelvin);
        std::iota(field.begin(), field.end(), T{10});
        ExportScalarField(static_cast<const ScalarFieldVariant&>(field), path("field"));
        const auto image = ImportImage(path("field.qfi"), 0, 0);
        EXPECT_TRUE(samePixels(dynamic_cast<const Image<T>&>(*image), field));
        EXPECT_EQ(image->GetScaleI(), kelvin);
        EXPECT_TRUE(AllValuesValid(*image));
    });
    EXPECT_TRUE(raises<RTE::Exception>("Unsupported scalar field type",
                                       [&] { ExportScalarField(StrangeField(3, 2), path("strange")); }));
    EXPECT_FALSE(QFile::exists(path("strange.qfi")));
}

TEST_F(FilesystemExport, OtherFormatsGetTheMasksThatTellSomething)
{
    Image<unsigned short> image(3, 2, 7, true);
    for (const QString& name : {QStringLiteral("a.tif"), QStringLiteral("a.png")}) {
        ExportImage(image, path(name));
        const auto read = ImportImage(path(name), 0, 0);
        EXPECT_EQ(dynamic_cast<const Image<unsigned short>&>(*read)(2, 1), 7);
        EXPECT_TRUE(AllValuesValid(*read));
    }
    image.SetMaskValid(1, 1, false);
    EXPECT_THROW(ExportImage(image, path("b.png")), RTE::FileWriteError);
    ImageBuffer<float> recording(3, 2, 1, 2, 1.5F, true);
    ExportImageBuffer(recording, path("run.tif"));
    EXPECT_EQ(ImportImageBufferT<float>(path("run.tif")).getFrameCount(), 2U);
}

TEST_F(FilesystemExport, AMaskThatNobodyAskedForIsWrittenAndNotMade)
{
    Image<float> image(3, 2, 1.0F, true);
    image.ReplaceMaskStrategy(std::make_unique<LazyMask>(3U, 2U, true));
    ExportImage(image, path("lazy.tif"));
    EXPECT_FALSE(image.IsMaskSpawned());
    for (const QString& name : {QStringLiteral("lazy.qfi"), QStringLiteral("lazy.1")}) {
        ExportImage(image, path(name));
        const std::unique_ptr<BufferApi::I_Buffer> buffer(BufferApi::ImportBuffer(path(name), {}));
        EXPECT_TRUE(buffer->GetFrame(0)->HasMask());
        EXPECT_TRUE(AllValuesValid(*ImportImage(path(name), 0, 0)));
    }
    EXPECT_FALSE(image.IsMaskSpawned());
}

TEST_F(FilesystemExport, PixelsAndMasksAreWrittenFromWhereTheyAre)
{
    constexpr unsigned int side = 1000;
    ImageVolume<float> volume({side, side, 2}, 1.5F, true);
    volume.SetMaskValid(3, 4, 1, false);
    forgetLargestAllocation();
    ExportImageVolume(volume, path("plain.qfi"));
    EXPECT_LT(largestAllocation(), 4ULL * side * side);
    const auto read = ImportImageVolumeT<float>(path(QStringLiteral("plain.qfi")), 0);
    EXPECT_EQ(read.GetVoxel(999, 999, 1), 1.5F);
    EXPECT_FALSE(read.IsMaskValid(3, 4, 1));
    EXPECT_TRUE(AllValuesValid(read.getPlane(0)));
    volume.getPlane(1).ReplaceMaskStrategy(std::make_unique<LazyMask>(2U, 2U, true));
    (void)volume.getPlane(1).GetMask();
    EXPECT_TRUE(raises("Source and destination have different sizes.",
                       [&] { ExportImageVolume(volume, path("plain.qfi")); }));
}

} // namespace
