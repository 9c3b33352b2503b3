// SPDX-License-Identifier: Apache-2.0
/// \file
/// Images and recordings into files and out of them: ObjectFiles FOLDER
#include "Core/Buffer/BufferApi.h"
#include "Core/DataObjects/DataObjects.h"

#include <cstdio>

namespace
{

using namespace DataObjects;

/// Three frames that get brighter.
void record(const QString& folder)
{
    ImageBuffer<unsigned short> recording(64, 48, 1, 3, 0, true);
    for (unsigned int frame = 0; frame < recording.getFrameCount(); ++frame) {
        recording.getFrame(frame) = static_cast<unsigned short>(100 * frame);
        recording.getFrame(frame).SetScaleX(Zt::LinearScale(0.02, 0.0, "mm", "Position x"));
    }
    ExportImageBuffer(recording, folder + "/run");
}

void halve(const QString& folder)
{
    Image<float> image = ImportImageT<float>(folder + "/run.qfi", 2, 0); // the third of the words
    image /= 2.0;
    image.SetMaskValid(0, 0, false);
    image.GetAttributes().set("Operator", QStringLiteral("Half"));
    ExportImage(image, folder + "/results/half"); // half.qfi, with mask, scales and attributes
}

/// Whatever the file holds.
void describe(const QString& path)
{
    std::unique_ptr<BufferApi::I_Buffer> file(BufferApi::ImportBuffer(path));
    const BufferStructureInformation what = GetBufferStructureInformationForBuffer(*file);
    const std::unique_ptr<Variant> object = GetDataObjectFromBuffer(std::move(file));
    if (object->getTypeIdentifier() == TypeIdentifier::imageBuffer) {
        const auto& recording = dynamic_cast<const ImageBufferVariant&>(*object);
        const ImageVariant& image = recording.getFrame(0).getPlane(0);
        std::printf("%u frame of %u x %u, %g %s wide, the first pixel of row 1 is %g, all valid: %d\n",
                    what.frameCount, what.width, what.height, image.GetScaleX().getScaled(what.width),
                    qPrintable(image.GetScaleX().getUnit()), getImageDataLine(image.GetImageData(), 1)[0],
                    AllValuesValid(recording));
    }
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s FOLDER\n", argv[0]);
        return 2;
    }
    try {
        const QString folder = QString::fromLocal8Bit(argv[1]);
        record(folder);
        halve(folder);
        describe(folder + "/results/half.qfi");
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
