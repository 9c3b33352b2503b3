// SPDX-License-Identifier: Apache-2.0
/// \file
/// Reads a file and prints the size and the first pixel of its first frame: ReadFrames [FILE]
#include "Core/Buffer/Buffer.h"

#include <cstdio>

namespace
{

void printFirstPixel(const QString& path)
{
    const std::unique_ptr<BufferApi::I_Buffer> run(BufferApi::ImportBuffer(path));
    const BufferApi::I_Frame* frame = run->GetFrame(0);
    const BufferApi::I_Component* pixels = frame->GetComponent(BufferApi::I_FrameImage::COMPONENT_PIXEL);
    const auto* words = static_cast<const unsigned short*>(pixels->GetPlane(0)->GetData());
    std::printf("%u frames of %u x %u pixels, the first is %u\n", run->GetFrameCount(), frame->GetWidth(),
                frame->GetHeight(), words[0]);
}

} // namespace

int main(int argc, char** argv)
{
    try {
        printFirstPixel(QString::fromLocal8Bit(argc > 1 ? argv[1] : "run.qfi"));
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
