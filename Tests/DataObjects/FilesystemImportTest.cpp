// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/FilesystemImport.h"

#include "Core/DataObjects/Attributes.h"
#include "Core/DataObjects/FilesystemExport.h"
#include "Core/DataObjects/ImageBufferFromBuffer.h"
#include "Tests/Support/Allocations.h"
#include "Tests/Support/Files.h"
#include "Tests/Support/Frames.h"
#include "Tests/Support/ImageFrames.h"
#include "Tests/Support/PixelTypeList.h"
#include "Tests/Support/Raises.h"
#include "Tests/Support/SamePixels.h"

#include <QDir>
#include <QTemporaryDir>

#include <functional>

namespace
{

using namespace DataObjects;
using namespace TestSupport;

template <typename Pixels>
auto spanOf(const Pixels& pixels)
{
    return std::span(pixels.begin(), static_cast<std::size_t>(pixels.size()));
}

class FilesystemImport : public testing::Test
{
protected:
    [[nodiscard]] QString path(const QString& name) const { return m_folder.filePath(name); }

    /// A native file of the frames that imageBuffer() makes.
    QString fileOf(BufferApi::E_DataType type, unsigned int depth, unsigned int frames,
                   const QString& name = "run.qfi", int packType = 2) const
    {
        const auto buffer = imageBuffer(type, depth, frames);
        BufferApi::ExportBuffer(buffer.get(), path(name), {{"PackType", packType}});
        return path(name);
    }

    QTemporaryDir m_folder;
};

/// Every function that reads a file, by a path.
const std::vector<std::pair<std::string, std::function<void(const QString&)>>>& allImports()
{
    static const std::vector<std::pair<std::string, std::function<void(const QString&)>>> imports = {
        {"ImportImage", [](const QString& path) { return ImportImage(path, 0, 0); }},
        {"ImportImageBuffer", [](const QString& path) { return ImportImageBuffer(path); }},
        {"ImportImageData", [](const QString& path) { return ImportImageData(path, 0, 0); }},
        {"ImportImageVolume", [](const QString& path) { return ImportImageVolume(path, 0); }},
        {"ImportImages", [](const QString& path) { return ImportImages(path); }},
        {"ImportImageT", [](const QString& path) { return ImportImageT<float>(path, 0, 0); }},
        {"ImportImageBufferT", [](const QString& path) { return ImportImageBufferT<int>(path); }},
        {"ImportImageDataT", [](const QString& path) { return ImportImageDataT<double>(path, 0, 0); }},
        {"ImportImageVolumeT",
         [](const QString& path) { return ImportImageVolumeT<unsigned char>(path, 0); }}};
    return imports;
}

TEST_F(FilesystemImport, RecordingsOfAllTypesComeBackBitForBit)
{
    forEachPixelType([&](auto tag) {
        const auto type = BufferApi::GetDataType<typename decltype(tag)::type>();
        const auto original = imageBuffer(type, 3, 2);
        ExportImageBuffer(*GetImageBuffer(*original, true), path("copy"));
        const auto recording = ImportImageBuffer(path(QStringLiteral("copy.qfi")));
        EXPECT_TRUE(buffersEqual(*CreateBufferFromImageBuffer(*recording, true), *original));
    });
}

TEST_F(FilesystemImport, ImagesAreOneFrameAndPlaneOfTheFile)
{
    const QString file = fileOf(BufferApi::DT_WORD, 2, 3);
    const auto recording = ImportImageBufferT<unsigned short>(file);
    const auto image = ImportImageT<unsigned short>(file, 2, 1);
    const auto& plane = recording.getFrame(2).getPlane(1);
    EXPECT_TRUE(samePixels(spanOf(image), spanOf(plane)));
    EXPECT_TRUE(std::equal(image.GetMask().begin(), image.GetMask().end(), plane.GetMask().begin()));
    EXPECT_EQ(image.GetScaleZ().getOffset(), 3.0);
    EXPECT_EQ(image.GetAttributes().attributeValue("Operator").value<QString>(), QStringLiteral("é 3"));
    const auto field = image.GetScalarFields().Get(QStringLiteral("Peak ratio"));
    EXPECT_TRUE(samePixels(spanOf(CastScalarFieldTo<float>(*field)),
                           spanOf(CastScalarFieldTo<float>(*plane.GetScalarFields().Get("Peak ratio")))));

    const auto data = ImportImageDataT<unsigned short>(file, 2, 1);
    EXPECT_TRUE(samePixels(spanOf(data), spanOf(plane)));
    const auto volume = ImportImageVolumeT<unsigned short>(file, 2);
    EXPECT_EQ(volume.GetDepth(), 2U);
    EXPECT_TRUE(samePixels(spanOf(volume.getPlane(1)), spanOf(plane)));
    EXPECT_EQ(&volume.getPlane(0).GetAttributes(), &volume.getPlane(1).GetAttributes());
}

TEST_F(FilesystemImport, ListsHavePlaneZeroOfEachFrame)
{
    const QString file = fileOf(BufferApi::DT_FLOAT, 2, 3);
    const auto recording = ImportImageBufferT<float>(file);
    const auto images = ImportImages(file);
    ASSERT_EQ(images.size(), 3U);
    for (unsigned int frame = 0; frame < 3; ++frame) {
        const auto& image = dynamic_cast<const Image<float>&>(*images[frame]);
        EXPECT_TRUE(samePixels(spanOf(image), spanOf(recording.getFrame(frame).getPlane(0))));
        EXPECT_EQ(image.GetScaleZ().getOffset(), frame + 1.0);
    }
}

TEST_F(FilesystemImport, ObjectsOwnAllTheyNeed)
{
    const QString file = fileOf(BufferApi::DT_INT32, 2, 2);
    const auto recording = ImportImageBufferT<int>(file);
    auto image = ImportImageT<int>(file, 1, 0);
    ASSERT_TRUE(QFile::remove(file));
    EXPECT_TRUE(recording.HasOwnerShip());
    EXPECT_TRUE(image.GetImageData().HasOwnerShip());
    EXPECT_TRUE(image.GetMask().HasOwnerShip());
    // Each of these would write to a frame that is gone.
    image.SetScaleX(Zt::LinearScale(2.0, 0.0, "m", "x"));
    image.GetAttributes().set("New", 1);
    image.GetScalarFields().Add("New");
    EXPECT_EQ(image.GetScaleX().getFactor(), 2.0);
    ImageBuffer<int> changed(recording);
    changed.GetGlobalAttributes().set("New", 1);
    changed.getFrame(1).GetScaleI().setFactor(3.0);
    EXPECT_EQ(changed.GetGlobalAttributes().attributeValue("Project").value<QString>(), "Jet");
    EXPECT_EQ(changed.GetName(), "Recording");
}

template <typename T>
void expectConverted(const QString& file)
{
    const auto bytes = ImportImageBufferT<unsigned char>(file);
    const auto& source = bytes.getFrame(1).getPlane(1);
    const ImageData<T> expected = CreateImageDataOfType<T>(source.GetImageData(), true);

    const auto image = ImportImageT<T>(file, 1, 1);
    EXPECT_TRUE(samePixels(spanOf(image), spanOf(expected)));
    EXPECT_TRUE(std::equal(image.GetMask().begin(), image.GetMask().end(), source.GetMask().begin()));
    EXPECT_EQ(image.GetScaleX(), source.GetScaleX());
    EXPECT_EQ(image.GetScaleI(), source.GetScaleI());
    EXPECT_EQ(image.GetAttributes().attributeValue("Acq.Gain").template value<double>(), 2.5);
    EXPECT_TRUE(image.GetScalarFields().Contains("Height"));

    EXPECT_TRUE(samePixels(spanOf(ImportImageDataT<T>(file, 1, 1)), spanOf(expected)));
    const auto volume = ImportImageVolumeT<T>(file, 1);
    EXPECT_TRUE(samePixels(spanOf(volume.getPlane(1)), spanOf(expected)));
    EXPECT_EQ(volume.GetScaleZ(), source.GetScaleZ());
    EXPECT_EQ(volume.IsMaskValid(3, 4, 1), source.IsMaskValid(3, 4));
    const auto recording = ImportImageBufferT<T>(file);
    EXPECT_TRUE(samePixels(spanOf(recording.getFrame(1).getPlane(1)), spanOf(expected)));
    EXPECT_EQ(recording.GetName(), "Recording");
    EXPECT_EQ(recording.getFrameCount(), 2U);
    EXPECT_TRUE(recording.GetGlobalAttributes().contains("Project"));
    EXPECT_EQ(recording.getFrame(1).getPlane(1).GetScalarFields().size(), 2U);
}

TEST_F(FilesystemImport, PixelsOfAnotherTypeAreConvertedAndAllElseKept)
{
    const QString file = fileOf(BufferApi::DT_BYTE, 2, 2);
    forEachPixelType([&](auto tag) { expectConverted<typename decltype(tag)::type>(file); });
    const auto wide = ImportImageDataT<double>(fileOf(BufferApi::DT_DOUBLE, 1, 1), 0, 0);
    const auto narrow = ImportImageDataT<unsigned char>(path(QStringLiteral("run.qfi")), 0, 0);
    ImageData<unsigned char> saturated(wide.GetSize());
    saturated.Assign(wide);
    EXPECT_TRUE(samePixels(spanOf(narrow), spanOf(saturated)));
}

TEST_F(FilesystemImport, FramesThatAreNotAskedForAreNotRead)
{
    const auto buffer = imageBuffer(BufferApi::DT_WORD, 2, 3);
    const QString file = path("plain.qfi");
    BufferApi::ExportBuffer(buffer.get(), file, {{"PackType", 0}});
    for (const auto& [frame, z] : {std::pair(0U, 0U), std::pair(1U, 1U), std::pair(2U, 0U)}) {
        flipBitOf(*buffer->GetFrame(frame)->GetPlane(0, z), file);
    }
    const auto image = ImportImageT<unsigned short>(file, 1, 0);
    EXPECT_TRUE(samePixels(spanOf(image),
                           std::span(static_cast<const unsigned short*>(pixelsOf(*buffer->GetFrame(1), 0)),
                                     static_cast<std::size_t>(image.size()))));
    EXPECT_THROW((void)ImportImage(file, 1, 1), RTE::FileReadError);
    EXPECT_THROW((void)ImportImageVolume(file, 1), RTE::FileReadError);
    EXPECT_THROW((void)ImportImages(file), RTE::FileReadError);
    EXPECT_THROW((void)ImportImageBufferT<float>(file), RTE::FileReadError);
}

TEST_F(FilesystemImport, PixelsOfTheRightTypeAreMoved)
{
    const ImageData<float> plane(1000, 1000, 1.5F);
    const QString file = path("large.qfi");
    ExportImageData(plane, file);
    forgetLargestAllocation();
    const auto image = ImportImageT<float>(file, 0, 0);
    EXPECT_EQ(largestAllocation(), 4'000'000U);
    EXPECT_EQ(image(999, 999), 1.5F);
    EXPECT_FALSE(image.IsMaskSpawned()) << "a file without a mask";
    const auto converted = ImportImageT<double>(file, 0, 0);
    EXPECT_FALSE(converted.IsMaskSpawned());
    EXPECT_TRUE(AllValuesValid(converted));
}

TEST_F(FilesystemImport, FilesThatCannotBeReadAreNamedByEveryFunction)
{
    const QString missing = path("missing.qfi");
    const QString folder = path("folder.qfi");
    const QString empty = path("empty.qfi");
    const QString cut = path("cut.qfi");
    ASSERT_TRUE(QDir().mkpath(folder));
    writeContent(empty, {});
    const QByteArray whole = contentOf(fileOf(BufferApi::DT_WORD, 1, 1));
    writeContent(cut, whole.first(whole.size() / 2));
    for (const auto& [name, import] : allImports()) {
        SCOPED_TRACE(name);
        EXPECT_TRUE(raises<RTE::FileOpenError>(
            QStringLiteral("Cannot open '%1': No such file or directory").arg(missing),
            [&] { import(missing); }));
        EXPECT_TRUE(raises<RTE::FileOpenError>(
            QStringLiteral("Cannot open '%1': not a regular file").arg(folder), [&] { import(folder); }));
        EXPECT_TRUE(raises<RTE::FileOpenError>(
            QStringLiteral("Cannot open '%1': the file is empty").arg(empty), [&] { import(empty); }));
        EXPECT_THROW(import(cut), RTE::FileOpenError);
    }
}

TEST_F(FilesystemImport, FramesPlanesAndTypesThatDoNotFitAreRefused)
{
    const QString file = fileOf(BufferApi::DT_WORD, 2, 2);
    const QString notImage = "Frame type is not an image.";
    EXPECT_TRUE(raises(notImage, [&] { return ImportImage(file, 2, 0); }));
    EXPECT_TRUE(raises(notImage, [&] { return ImportImageT<float>(file, 2, 0); }));
    EXPECT_TRUE(raises("Invalid plane-index 2", [&] { return ImportImage(file, 1, 2); }));
    EXPECT_TRUE(raises("Invalid plane-index 2", [&] { return ImportImageData(file, 1, 2); }));
    EXPECT_TRUE(raises("Frame index out of bounds", [&] { return ImportImageVolume(file, 2); }));

    const std::unique_ptr<BufferApi::I_Buffer> colour(BufferApi::CreateBuffer());
    colour->AddFrame(BufferApi::CreateImageFrame(BufferApi::DT_RGB, 2, 2, 1));
    const QString colourFile = path("colour.qfi");
    BufferApi::ExportBuffer(colour.get(), colourFile, {});
    const QString noImage = "RGB image is not supported.";
    EXPECT_TRUE(raises<RTE::Exception>(noImage, [&] { return ImportImage(colourFile, 0, 0); }));
    EXPECT_TRUE(raises<RTE::Exception>(noImage, [&] { return ImportImages(colourFile); }));
    EXPECT_TRUE(raises<RTE::Exception>("RGB ImageBuffer is not supported.",
                                       [&] { return ImportImageBuffer(colourFile); }));
    EXPECT_TRUE(raises<RTE::Exception>("BufferApi::DT_RGB not supported yet.",
                                       [&] { return ImportImageDataT<int>(colourFile, 0, 0); }));

    const std::unique_ptr<BufferApi::I_Buffer> vectors(BufferApi::CreateBuffer());
    vectors->AddFrame(BufferApi::CreateVectorFrame2C(2, 2, 1, 1));
    const QString vectorFile = path("vectors.qfv");
    BufferApi::ExportBuffer(vectors.get(), vectorFile, {});
    EXPECT_TRUE(raises(notImage, [&] { return ImportImages(vectorFile); }));

    const std::unique_ptr<BufferApi::I_Buffer> none(BufferApi::CreateBuffer());
    const QString noFrames = path("none.qfi");
    BufferApi::ExportBuffer(none.get(), noFrames, {});
    EXPECT_TRUE(ImportImages(noFrames).empty());
    EXPECT_TRUE(raises<RTE::Exception>("Given buffer has no frames",
                                       [&] { return ImportImageBufferT<float>(noFrames); }));
}

TEST_F(FilesystemImport, TheContentDecidesNotTheName)
{
    ASSERT_TRUE(QFile::rename(fileOf(BufferApi::DT_WORD, 1, 1), path("run.png")));
    EXPECT_EQ(ImportImage(path("run.png"), 0, 0)->GetWidth(), 31U);
}

} // namespace
