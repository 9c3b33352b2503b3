// SPDX-License-Identifier: Apache-2.0
// Images out of frames and into them. Views and moves touch no pixel: their time does not depend on the size.
// Copies stand beside memcpy of the same bytes, a file of frames beside the store's own reading of it.
#include "Benchmarks/Race.h"
#include "Core/Buffer/BufferApi.h"
#include "Core/Common/Array.h"
#include "Core/DataObjects/ImageBufferFromBuffer.h"
#include "Core/DataObjects/ImageDataFromBuffer.h"
#include "Core/DataObjects/ImageFromBuffer.h"
#include "Core/DataObjects/ImageMoveToBuffer.h"

#include <QFile>

#include <cstring>
#include <memory>

namespace
{

using namespace DataObjects;
using BufferApi::I_Buffer;
using BufferApi::I_FrameImage;

using FramePointer = std::unique_ptr<I_FrameImage>;

unsigned int side(const benchmark::State& state)
{
    return static_cast<unsigned int>(state.range(0));
}

FramePointer newFrame(unsigned int side, bool withMask)
{
    FramePointer frame(BufferApi::CreateImageFrame(BufferApi::DT_WORD, side, side, 1));
    auto pixels = GetImageDataT<unsigned short>(*frame, 0);
    Benchmarks::randomize(pixels, 1);
    if (withMask) {
        frame->AddMask({});
    }
    return frame;
}

/// \param withMask second argument: whether the frame has a mask, or the image gets its own
void view(benchmark::State& state)
{
    const FramePointer frame = newFrame(side(state), state.range(1) != 0);
    const auto image = GetImageT<unsigned short>(*frame, 0, false);
    if (image.begin() != GetImageDataT<unsigned short>(*frame, 0).begin() || !AllValuesValid(image)) {
        state.SkipWithError("no view");
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(GetImageT<unsigned short>(*frame, 0, false));
    }
}

void moveThereAndBack(benchmark::State& state)
{
    Image<unsigned short> image = GetImageT<unsigned short>(std::move(*newFrame(side(state), true)), 0, true);
    const unsigned short* const pixels = image.begin();
    for (auto _ : state) {
        const FramePointer frame(CreateFrameFromImageT(std::move(image), true));
        image = GetImageT<unsigned short>(std::move(*frame), 0, true);
    }
    if (image.begin() != pixels) {
        state.SkipWithError("pixels were copied");
    }
}

void copyIntoFrame(benchmark::State& state)
{
    const FramePointer source = newFrame(side(state), true);
    const FramePointer target = newFrame(side(state), true);
    const auto image = GetImageT<unsigned short>(*source, 0, true);
    const auto pixels = GetImageDataT<unsigned short>(*target, 0);
    std::vector<unsigned short> plain(pixels.size());
    std::vector<unsigned char> plainMask(pixels.size());
    Benchmarks::race(
        state, [&] { CopyImageToFrameT(image, *target, 0); },
        {{"memcpy",
          [&] {
              std::memcpy(plain.data(), image.begin(), plain.size() * sizeof(plain[0]));
              std::memcpy(plainMask.data(), image.GetMask().begin(), plainMask.size());
          }}},
        6);
    Benchmarks::isRight(state, pixels, [&](unsigned long long i) { return image[i]; });
}

/// Each contender takes fresh memory and frees it.
void createFrame(benchmark::State& state)
{
    const FramePointer source = newFrame(side(state), false);
    const auto image = GetImageT<unsigned short>(*source, 0, false);
    const auto create = [&] { return FramePointer(CreateFrameFromImageT(image, false)); };
    Benchmarks::race(
        state, [&] { create(); },
        {{"memcpy",
          [&] {
              const std::unique_ptr<unsigned short[]> fresh(RTE::newArray<unsigned short>(image.size()));
              std::memcpy(fresh.get(), image.begin(), image.size() * sizeof(fresh[0]));
              benchmark::DoNotOptimize(fresh.get());
          }}},
        4);
    const FramePointer frame = create();
    Benchmarks::isRight(state, GetImageDataT<unsigned short>(*frame, 0),
                        [&](unsigned long long i) { return image[i]; });
}

/// Reads all planes of a file in memory, as a recording or as the store gives them. The second argument tells
/// whether frames have a mask.
void readRecording(benchmark::State& state)
{
    constexpr unsigned int frames = 16;
    const QString path = QStringLiteral("/dev/shm/bridge-benchmark.qfi");
    {
        const std::unique_ptr<I_Buffer> buffer(BufferApi::CreateBuffer());
        for (unsigned int frame = 0; frame < frames; ++frame) {
            buffer->AddFrame(newFrame(side(state), state.range(1) != 0).release());
        }
        BufferApi::ExportBuffer(buffer.get(), path, {});
    }
    const auto import = [&] { return std::unique_ptr<I_Buffer>(BufferApi::ImportBuffer(path, {})); };
    const auto readPlanes = [&](const I_Buffer& file) {
        for (unsigned int frame = 0; frame < frames; ++frame) {
            for (unsigned int part = 0; part < file.GetFrame(frame)->GetComponentCount(); ++part) {
                benchmark::DoNotOptimize(file.GetFrame(frame)->GetPlane(part, 0)->GetData());
            }
        }
    };
    Benchmarks::race(
        state, [&] { benchmark::DoNotOptimize(GetImageBuffer(std::move(*import()), false)); },
        {{"store", [&] { readPlanes(*import()); }}}, 2ULL * frames);
    QFile::remove(path);
}

BENCHMARK(view)->ArgsProduct({{256, 1024, 4096}, {0, 1}});
BENCHMARK(moveThereAndBack)->Arg(256)->Arg(1024)->Arg(4096);
BENCHMARK(copyIntoFrame)->Arg(64)->Arg(256)->Arg(1024)->Arg(4096)->UseManualTime()->Iterations(20);
BENCHMARK(createFrame)->Arg(64)->Arg(256)->Arg(1024)->Arg(4096)->UseManualTime()->Iterations(20);
BENCHMARK(readRecording)->ArgsProduct({{256, 2048}, {0, 1}})->UseManualTime()->Iterations(2);

} // namespace
