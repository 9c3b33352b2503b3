// SPDX-License-Identifier: Apache-2.0
// Camera bytes to a file in /dev/shm, as `qf decode --uncompressed` does it: Mono12p decoded and streamed to
// a native file; beside it the decoding alone, and a plain file written with the same words.
#include "Core/Buffer/BufferApi.h"
#include "Core/Buffer/FrameStream.h"
#include "Core/DataObjects/FrameDecoders/FrameDecoders.h"

#include <benchmark/benchmark.h>

#include <QFile>

#include <cstring>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

namespace
{

using DataObjects::FrameDecoder::frameDecoders;

constexpr int width = 1280;
constexpr int height = 1024;
constexpr int frames = 16;
constexpr std::size_t imageBytes = 2ULL * width * height;

QString path()
{
    return QStringLiteral("/dev/shm/decode-file-benchmark.qfi");
}

const std::vector<unsigned char>& cameraBytes()
{
    static const std::vector<unsigned char> bytes = [] {
        std::vector<unsigned char> result(imageBytes * 3 / 4);
        unsigned int state = 1;
        for (unsigned char& byte : result) {
            state = state * 1664525U + 1013904223U;
            byte = static_cast<unsigned char>(state >> 24U);
        }
        return result;
    }();
    return bytes;
}

DataObjects::FrameData decodeOne()
{
    static const auto decoder = std::move(*frameDecoders().create(QStringLiteral("mono-12p")));
    return decoder->decode({cameraBytes().data(), cameraBytes().size()}, QSize(width, height));
}

/// The frame takes the words over.
std::unique_ptr<BufferApi::I_Frame> frameOf(DataObjects::FrameData words)
{
    std::unique_ptr<unsigned short[]> pixels(words.release());
    std::unique_ptr<BufferApi::I_Frame> frame(
        BufferApi::CreateImageFrameWithPlaneMemory(BufferApi::DT_WORD, width, height, pixels.get()));
    pixels.release();
    return frame;
}

void decodeToFile()
{
    BufferApi::FrameStream stream(path(), {{"PackType", 0}});
    for (int i = 0; i < frames; ++i) {
        stream.append(*frameOf(decodeOne()));
    }
    stream.finish();
}

void finish(benchmark::State& state)
{
    QFile::remove(path());
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(frames * imageBytes));
}

void DecodeToFile(benchmark::State& state)
{
    decodeToFile();
    const std::unique_ptr<BufferApi::I_Buffer> back(BufferApi::ImportBuffer(path()));
    const std::unique_ptr<unsigned short[]> words(decodeOne().release());
    if (back->GetFrameCount() != frames ||
        std::memcmp(back->GetFrame(frames - 1)->GetPlane(0, 0)->GetData(), words.get(), imageBytes) != 0) {
        state.SkipWithError("other pixels came back");
    }
    for (auto _ : state) {
        QFile::remove(path());
        decodeToFile();
    }
    finish(state);
}

void DecodeAlone(benchmark::State& state)
{
    for (auto _ : state) {
        for (int i = 0; i < frames; ++i) {
            const std::unique_ptr<BufferApi::I_Frame> frame = frameOf(decodeOne());
            benchmark::DoNotOptimize(frame.get());
        }
    }
    finish(state);
}

void WriteAlone(benchmark::State& state)
{
    const std::unique_ptr<unsigned short[]> words(decodeOne().release());
    for (auto _ : state) {
        QFile::remove(path());
        const int file = open(path().toLocal8Bit().constData(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
        for (int i = 0; i < frames; ++i) {
            if (::write(file, words.get(), imageBytes) != static_cast<ssize_t>(imageBytes)) {
                state.SkipWithError("the disk is full");
            }
        }
        close(file);
    }
    finish(state);
}

BENCHMARK(DecodeToFile)->Unit(benchmark::kMillisecond);
BENCHMARK(DecodeAlone)->Unit(benchmark::kMillisecond);
BENCHMARK(WriteAlone)->Unit(benchmark::kMillisecond);

} // namespace
