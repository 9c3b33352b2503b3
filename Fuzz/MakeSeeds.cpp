// SPDX-License-Identifier: Apache-2.0
// Writes the seeds that no golden picture stands for: small files of our own writers.
#include "Core/Buffer/BufferApi.h"
#include "Tests/Support/SampleBuffers.h"

#include <QDir>

#include <cstdio>

namespace
{

using namespace BufferApi;
using TestSupport::BufferPointer;

BufferPointer images(E_DataType type, unsigned int width, unsigned int height, unsigned int frames)
{
    BufferPointer buffer(CreateBuffer());
    for (unsigned int i = 0; i < frames; ++i) {
        auto* frame = CreateImageFrame(type, width, height, 1);
        buffer->AddFrame(frame);
        TestSupport::fillWithNoise(*frame, i);
        frame->SetScaleX({0.05, -12, QStringLiteral("mm"), QStringLiteral("x")});
        TestSupport::setNumber(*frame, "time", 0.001 * i);
        TestSupport::setText(*frame, "label", QStringLiteral("é"));
    }
    TestSupport::setText(*buffer, "camera", QStringLiteral("left"));
    return buffer;
}

BufferPointer volumes()
{
    BufferPointer buffer = images(DT_WORD, 3, 2, 1);
    for (const unsigned int depth : {3U, 2U}) {
        auto* frame = CreateImageFrame(DT_WORD, 3, 2, depth);
        TestSupport::fillWithNoise(*frame, depth);
        buffer->AddFrame(frame);
    }
    return buffer;
}

BufferPointer mixed()
{
    BufferPointer buffer = images(DT_BYTE, 3, 2, 2);
    buffer->GetFrame(1)->SetScaleX({7, 8, QStringLiteral("m"), QString()});
    auto* vectors = CreateVectorFrame3C(2, 2, 1, 2);
    vectors->AddMask({});
    TestSupport::fillWithNoise(*vectors, 1);
    buffer->AddFrame(vectors);
    return buffer;
}

void write(const QDir& folder, const char* name, const BufferPointer& buffer, int packType)
{
    ExportBuffer(buffer.get(), folder.filePath(QLatin1String(name)), {{"PackType", packType}});
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fputs("usage: MakeSeeds FOLDER\n", stderr);
        return 2;
    }
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    for (const char* reader : {"native", "tiff", "png"}) {
        folder.mkpath(QLatin1String(reader));
    }
    write(folder, "native/images.qfi", images(DT_WORD, 8, 6, 2), 2);
    write(folder, "native/plain.qfi", images(DT_WORD, 8, 6, 1), 0);
    write(folder, "native/mixed.qfv", mixed(), 2);
    write(folder, "native/no-frames.qfi", BufferPointer(CreateBuffer()), 2);
    write(folder, "tiff/words.tif", images(DT_WORD, 8, 6, 2), 0);
    write(folder, "tiff/packed.tif", images(DT_FLOAT, 8, 6, 1), 2);
    write(folder, "tiff/volumes.tif", volumes(), 0);
    write(folder, "png/words.png", images(DT_WORD, 8, 6, 1), 2);
    return 0;
}
