// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/FilesystemImport.h"

#include "Core/DataObjects/Attributes.h"
#include "Core/DataObjects/FilesystemExport.h"
#include "Core/DataObjects/ImageBufferFromBuffer.h"
#include "Core/DataObjects/ImageDataFromBuffer.h"
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
    forAllTypes([&](auto tag) {
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
    EXPECT_TRUE(samePixels(image, plane));
    EXPECT_TRUE(samePixels(image.GetMask(), plane.GetMask()));
    EXPECT_EQ(image.GetScaleZ().getOffset(), 3.0);
    EXPECT_EQ(image.GetAttributes().attributeValue("Operator").value<QString>(), QStringLiteral("é 3"));
    const auto fieldOf = [](const Image<unsigned short>& of) -> const ScalarField<float>& {
        return CastScalarFieldTo<float>(*of.GetScalarFields().Get("Peak ratio"));
    };
    EXPECT_TRUE(samePixels(fieldOf(image), fieldOf(plane)));

    EXPECT_TRUE(samePixels(ImportImageDataT<unsigned short>(file, 2, 1), plane));
    const auto volume = ImportImageVolumeT<unsigned short>(file, 2);
    EXPECT_EQ(volume.GetDepth(), 2U);
    EXPECT_TRUE(samePixels(volume.getPlane(1), plane));
    EXPECT_EQ(&volume.getPlane(0).GetAttributes(), &volume.getPlane(1).GetAttributes());

    const auto images = ImportImages(file);
    ASSERT_EQ(images.size(), 3U);
    for (unsigned int frame = 0; frame < 3; ++frame) {
        const auto& listed = dynamic_cast<const Image<unsigned short>&>(*images[frame]);
        EXPECT_TRUE(samePixels(listed, recording.getFrame(frame).getPlane(0)));
        EXPECT_EQ(listed.GetScaleZ().getOffset(), frame + 1.0);
    }
}

TEST_F(FilesystemImport, ObjectsOwnAllTheyNeed)
{
    const QString file = fileOf(BufferApi::DT_INT32, 2, 2);
    auto recording = ImportImageBufferT<int>(file);
    auto image = ImportImageT<int>(file, 1, 0);
    ASSERT_TRUE(QFile::remove(file));
    EXPECT_TRUE(recording.HasOwnerShip());
    const auto expected = imageBuffer(BufferApi::DT_INT32, 2, 2);
    EXPECT_TRUE(buffersEqual(*CreateBufferFromImageBuffer(recording, true), *expected));
    EXPECT_TRUE(image.GetImageData().HasOwnerShip());
    EXPECT_TRUE(image.GetMask().HasOwnerShip());
    // Each of these would write to a frame that is gone.
    image.SetScaleX(scaleOf(2.0));
    image.GetAttributes().set("New", 1);
    image.GetScalarFields().Add("New");
    recording.GetGlobalAttributes().set("New", 1);
    recording.getFrame(1).GetScaleI().setFactor(3.0);
    EXPECT_EQ(image.GetScaleX(), scaleOf(2.0));
    EXPECT_EQ(recording.GetGlobalAttributes().attributeValue("Project").value<QString>(), "Jet");
    EXPECT_EQ(recording.GetName(), "Recording");
}

template <typename T>
void expectConverted(const QString& file)
{
    const auto bytes = ImportImageBufferT<unsigned char>(file);
    const auto& source = bytes.getFrame(1).getPlane(1);
    const ImageData<T> expected = CreateImageDataOfType<T>(source.GetImageData(), true);

    const auto image = ImportImageT<T>(file, 1, 1);
    EXPECT_TRUE(samePixels(image, expected));
    EXPECT_TRUE(samePixels(image.GetMask(), source.GetMask()));
    EXPECT_EQ(scalesOf(image), scalesOf(source));
    EXPECT_EQ(image.GetAttributes().attributeValue("Acq.Gain").template value<double>(), 2.5);
    EXPECT_TRUE(image.GetScalarFields().Contains("Height"));

    EXPECT_TRUE(samePixels(ImportImageDataT<T>(file, 1, 1), expected));
    const auto volume = ImportImageVolumeT<T>(file, 1);
    EXPECT_TRUE(samePixels(volume.getPlane(1), expected));
    EXPECT_EQ(volume.GetScaleZ(), source.GetScaleZ());
    EXPECT_TRUE(samePixels(volume.getPlane(1).GetMask(), source.GetMask()));
    const auto recording = ImportImageBufferT<T>(file);
    EXPECT_TRUE(samePixels(recording.getFrame(1).getPlane(1), expected));
    EXPECT_EQ(recording.GetName(), QStringLiteral("Recording"));
    EXPECT_EQ(recording.getFrameCount(), 2U);
    EXPECT_TRUE(recording.GetGlobalAttributes().contains("Project"));
    EXPECT_EQ(recording.getFrame(1).getPlane(1).GetScalarFields().size(), 2U);
}

TEST_F(FilesystemImport, PixelsOfAnotherTypeAreConvertedAndAllElseKept)
{
    const QString file = fileOf(BufferApi::DT_BYTE, 2, 2);
    forAllTypes([&]<typename T>(PixelTypes::Tag<T>) { expectConverted<T>(file); });
    const QString doubles = fileOf(BufferApi::DT_DOUBLE, 1, 1);
    const auto saturated = CreateImageDataOfType<unsigned char>(*ImportImageData(doubles, 0, 0), true);
    EXPECT_TRUE(samePixels(ImportImageDataT<unsigned char>(doubles, 0, 0), saturated));
}

TEST_F(FilesystemImport, FramesThatAreNotAskedForAreNotRead)
{
    const auto buffer = imageBuffer(BufferApi::DT_WORD, 2, 3);
    const QString file = path("plain.qfi");
    BufferApi::ExportBuffer(buffer.get(), file, {{"PackType", 0}});
    for (const auto& [frame, z] : {std::pair(0U, 0U), std::pair(1U, 1U), std::pair(2U, 0U)}) {
        flipBitOf(*buffer->GetFrame(frame)->GetPlane(0, z), file);
    }
    EXPECT_TRUE(samePixels(ImportImageT<unsigned short>(file, 1, 0),
                           GetImageDataT<unsigned short>(imageFrameOf(*buffer, 1), 0)));
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
    const auto text = [](const QString& file, const char* why) {
        return "Cannot open '" + file + "': " + why;
    };
    for (const auto& [name, importFrom] : allImports()) {
        SCOPED_TRACE(name);
        const auto& import = importFrom;
        expectRaised<RTE::FileOpenError>(
            {{text(missing, "No such file or directory"), [&] { import(missing); }},
             {text(folder, "not a regular file"), [&] { import(folder); }},
             {text(empty, "the file is empty"), [&] { import(empty); }}});
        EXPECT_THROW(import(cut), RTE::FileOpenError);
    }
}

TEST_F(FilesystemImport, FramesPlanesAndTypesThatDoNotFitAreRefused)
{
    const auto written = [&](const QString& name, const std::unique_ptr<BufferApi::I_Buffer>& buffer) {
        BufferApi::ExportBuffer(buffer.get(), path(name), {});
        return path(name);
    };
    const QString file = fileOf(BufferApi::DT_WORD, 2, 2);
    const QString colours =
        written("colour.qfi", bufferOf(BufferApi::CreateImageFrame(BufferApi::DT_RGB, 2, 2, 1)));
    const QString vectors = written("vectors.qfv", bufferOf(BufferApi::CreateVectorFrame2C(2, 2, 1, 1)));
    const QString noFrames = written("none.qfi", bufferOf());
    const QString notImage = "Frame type is not an image.";
    expectRaised({{notImage, [&] { return ImportImage(file, 2, 0); }},
                  {notImage, [&] { return ImportImageT<float>(file, 2, 0); }},
                  {notImage, [&] { return ImportImages(vectors); }},
                  {"Invalid plane-index 2", [&] { return ImportImage(file, 1, 2); }},
                  {"Invalid plane-index 2", [&] { return ImportImageData(file, 1, 2); }},
                  {"Frame index out of bounds", [&] { return ImportImageVolume(file, 2); }}});
    expectRaised<RTE::Exception>(
        {{"RGB image is not supported.", [&] { return ImportImage(colours, 0, 0); }},
         {"RGB image is not supported.", [&] { return ImportImages(colours); }},
         {"RGB ImageBuffer is not supported.", [&] { return ImportImageBuffer(colours); }},
         {"BufferApi::DT_RGB not supported yet.", [&] { return ImportImageDataT<int>(colours, 0, 0); }},
         {"Given buffer has no frames", [&] { return ImportImageBufferT<float>(noFrames); }}});
    EXPECT_TRUE(ImportImages(noFrames).empty());
}

TEST_F(FilesystemImport, TheContentDecidesNotTheName)
{
    ASSERT_TRUE(QFile::rename(fileOf(BufferApi::DT_WORD, 1, 1), path("run.png")));
    EXPECT_EQ(ImportImage(path("run.png"), 0, 0)->GetWidth(), 31U);
}

} // namespace
