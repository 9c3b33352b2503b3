// SPDX-License-Identifier: Apache-2.0
// Unpacked TIFF files in /dev/shm beside plain files of the same pixels, written frame by frame and read into
// fresh arrays.
#include "Benchmarks/Race.h"
#include "Core/Buffer/BufferApi.h"
#include "Core/Common/Array.h"

#include <benchmark/benchmark.h>

#include <QFile>

#include <cstring>
#include <memory>
#include <vector>

#include <fcntl.h>
#include <malloc.h>
#include <unistd.h>

namespace
{

using namespace BufferApi;

constexpr unsigned int width = 1280;
constexpr unsigned int height = 1024;

const char* const plainFile = "/dev/shm/tiff-benchmark.raw";

QString path()
{
    return QStringLiteral("/dev/shm/tiff-benchmark.tif");
}

std::unique_ptr<I_Buffer> recording(E_DataType type, unsigned int frames)
{
    std::unique_ptr<I_Buffer> result(CreateBuffer());
    for (unsigned int i = 0; i < frames; ++i) {
        auto* frame = CreateImageFrame(type, width, height, 1);
        auto* bytes = static_cast<unsigned char*>(frame->GetPlane(0, 0)->GetData());
        std::vector<unsigned char> noise(GetDataTypeSize(type) * width * height);
        Benchmarks::randomize(noise, i);
        std::memcpy(bytes, noise.data(), noise.size());
        result->AddFrame(frame);
    }
    return result;
}

const void* pixelsOf(const I_Buffer& buffer, unsigned int frame)
{
    return buffer.GetFrame(frame)->GetPlane(0, 0)->GetData();
}

void writeTiff(const I_Buffer& buffer)
{
    ExportBuffer(&buffer, path(), {{"PackType", 0}});
}

std::unique_ptr<I_Buffer> readTiff()
{
    std::unique_ptr<I_Buffer> buffer(ImportBuffer(path()));
    for (unsigned int i = 0; i < buffer->GetFrameCount(); ++i) {
        benchmark::DoNotOptimize(pixelsOf(*buffer, i));
    }
    return buffer;
}

void writePlain(const I_Buffer& buffer, std::size_t imageBytes)
{
    const int file = open(plainFile, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    for (unsigned int i = 0; i < buffer.GetFrameCount(); ++i) {
        benchmark::DoNotOptimize(write(file, pixelsOf(buffer, i), imageBytes));
    }
    close(file);
}

std::vector<std::unique_ptr<unsigned char[]>> readPlain(unsigned int frames, std::size_t imageBytes)
{
    const int file = open(plainFile, O_RDONLY | O_CLOEXEC);
    std::vector<std::unique_ptr<unsigned char[]>> planes;
    for (unsigned int i = 0; i < frames; ++i) {
        planes.emplace_back(RTE::newArray<unsigned char>(imageBytes));
        benchmark::DoNotOptimize(read(file, planes.back().get(), imageBytes));
    }
    close(file);
    return planes;
}

void removeFiles()
{
    QFile::remove(path());
    unlink(plainFile);
}

void Write(benchmark::State& state)
{
    const auto type = static_cast<E_DataType>(state.range(0));
    const auto buffer = recording(type, static_cast<unsigned int>(state.range(1)));
    const std::size_t imageBytes = GetDataTypeSize(type) * width * height;
    Benchmarks::raceSingly(
        state, removeFiles,
        {{"ms", [&] { writeTiff(*buffer); }}, {"plain", [&] { writePlain(*buffer, imageBytes); }}});
    removeFiles();
}

void Read(benchmark::State& state)
{
    const auto type = static_cast<E_DataType>(state.range(0));
    const auto frames = static_cast<unsigned int>(state.range(1));
    const auto buffer = recording(type, frames);
    const std::size_t imageBytes = GetDataTypeSize(type) * width * height;
    // Freed memory stays with the process, so that neither contender waits for fresh pages.
    mallopt(M_MMAP_THRESHOLD, 1 << 30);
    mallopt(M_TRIM_THRESHOLD, 1 << 30);
    writeTiff(*buffer);
    writePlain(*buffer, imageBytes);
    const auto back = readTiff();
    const auto plainBack = readPlain(frames, imageBytes);
    for (unsigned int i = 0; i < frames; ++i) {
        if (std::memcmp(pixelsOf(*back, i), pixelsOf(*buffer, i), imageBytes) != 0 ||
            std::memcmp(plainBack[i].get(), pixelsOf(*buffer, i), imageBytes) != 0) {
            state.SkipWithError("other pixels came back");
        }
    }
    Benchmarks::raceSingly(state, [] {},
                           {{"ms", [] { readTiff(); }}, {"plain", [&] { readPlain(frames, imageBytes); }}});
    removeFiles();
}

void recordings(benchmark::internal::Benchmark* benchmark)
{
    benchmark->ArgNames({"type", "frames"})
        ->Args({DT_WORD, 1})
        ->Args({DT_WORD, 16})
        ->Args({DT_WORD, 64})
        ->Args({DT_BYTE, 16})
        ->Args({DT_FLOAT, 16})
        ->Unit(benchmark::kMillisecond)
        ->UseManualTime();
}

BENCHMARK(Write)->Apply(recordings);
BENCHMARK(Read)->Apply(recordings);

} // namespace
