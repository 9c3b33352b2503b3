// SPDX-License-Identifier: Apache-2.0
/// \file
/// Writes frames as they come, as a camera program does: StreamFrames [FILE [FRAMES]]
///
/// Kill it at any moment: the file opens and holds all frames up to the last number that it printed.
#include "Core/Buffer/Buffer.h"

#include <cstdio>
#include <cstdlib>

namespace
{

std::unique_ptr<BufferApi::I_Frame> expose(unsigned int number)
{
    constexpr unsigned int width = 640;
    constexpr unsigned int height = 480;
    std::unique_ptr<BufferApi::I_Frame> frame(
        BufferApi::CreateImageFrame(BufferApi::DT_WORD, width, height, 1));
    auto* pixels = static_cast<unsigned short*>(frame->GetPlane(0, 0)->GetData());
    for (unsigned int i = 0; i < width * height; ++i) {
        pixels[i] = static_cast<unsigned short>((i + number) % width);
    }
    frame->SetScaleX({0.02, 0, QStringLiteral("mm"), QStringLiteral("x")});
    return frame;
}

void record(const QString& path, unsigned int frames)
{
    BufferApi::FrameStream stream(path, {{"PackType", 2}});
    stream.description().SetName(QStringLiteral("moving ramp"));
    for (unsigned int number = 0; number < frames; ++number) {
        stream.append(*expose(number));
        std::printf("\r%llu frames", stream.frameCount());
        std::fflush(stdout);
    }
    stream.finish();
    std::puts("");
}

} // namespace

int main(int argc, char** argv)
{
    try {
        record(QString::fromLocal8Bit(argc > 1 ? argv[1] : "run.qfi"),
               argc > 2 ? static_cast<unsigned int>(std::atoi(argv[2])) : 100);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "\n%s\n", error.what());
        return 1;
    }
}
