// SPDX-License-Identifier: Apache-2.0
// Native files in /dev/shm beside HDF5's own filters and its own contiguous datasets on the same pixels.
// "Peer" is the C library as it comes: shuffle and gzip level 1, or contiguous without checksum.
#include "Core/Buffer/BufferApi.h"
#include "Core/Buffer/FrameStream.h"
#include "Core/Common/Array.h"

#include <benchmark/benchmark.h>

#include <QFile>

#include <hdf5.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <random>
#include <thread>
#include <vector>

namespace
{

using namespace BufferApi;

constexpr unsigned int width = 1280;
constexpr unsigned int height = 1024;
constexpr unsigned int frames = 16;
constexpr unsigned long long imageBytes = 2ULL * width * height;

QString path(int number = 0)
{
    return QStringLiteral("/dev/shm/native-file-benchmark%1.qfi").arg(number);
}

/// Gaussian particles over camera noise, 12 bits.
std::vector<unsigned short> particleImage(unsigned int seed)
{
    std::mt19937 random(seed);
    std::uniform_real_distribution<float> unit(0, 1);
    std::normal_distribution<float> normal(0, 1);
    std::vector<float> light(std::size_t{width} * height, 40.0F);
    for (unsigned int particle = 0; particle < width * height / 50; ++particle) {
        const float x = 4 + unit(random) * (width - 9);
        const float y = 4 + unit(random) * (height - 9);
        const float peak = 200 + 2000 * unit(random);
        for (int j = -4; j <= 4; ++j) {
            for (int i = -4; i <= 4; ++i) {
                const auto column = std::floor(x) + static_cast<float>(i);
                const auto row = std::floor(y) + static_cast<float>(j);
                const float distance = (column - x) * (column - x) + (row - y) * (row - y);
                light[static_cast<std::size_t>(row) * width + static_cast<std::size_t>(column)] +=
                    peak * std::exp(-distance / 1.2F);
            }
        }
    }
    std::vector<unsigned short> pixels(light.size());
    for (std::size_t i = 0; i < light.size(); ++i) {
        const float value = light[i] + normal(random) * (2 + 0.1F * std::sqrt(light[i]));
        pixels[i] = static_cast<unsigned short>(std::clamp(value, 0.0F, 4095.0F));
    }
    return pixels;
}

const I_Buffer& recording()
{
    static const std::unique_ptr<I_Buffer> buffer = [] {
        std::unique_ptr<I_Buffer> result(CreateBuffer());
        for (unsigned int i = 0; i < frames; ++i) {
            auto* frame = CreateImageFrame(DT_WORD, width, height, 1);
            const std::vector<unsigned short> pixels = particleImage(i);
            std::memcpy(frame->GetPlane(0, 0)->GetData(), pixels.data(), imageBytes);
            result->AddFrame(frame);
        }
        return result;
    }();
    return *buffer;
}

const void* pixelsOf(const I_Buffer& buffer, unsigned int frame)
{
    return buffer.GetFrame(frame)->GetPlane(0, 0)->GetData();
}

double fileBytes()
{
    return static_cast<double>(QFile(path()).size());
}

/// The recording as one dataset written through HDF5's own road.
void writePeer(bool isPacked)
{
    const hsize_t extents[] = {frames, height, width};
    const hsize_t block[] = {1, height, width};
    const hsize_t chunk[] = {1, height / 3 + 1, width};
    const hid_t file = H5Fcreate(path().toLatin1().constData(), H5F_ACC_TRUNC, H5P_DEFAULT, H5P_DEFAULT);
    const hid_t space = H5Screate_simple(3, extents, nullptr);
    const hid_t memory = H5Screate_simple(3, block, nullptr);
    const hid_t properties = H5Pcreate(H5P_DATASET_CREATE);
    if (isPacked) {
        H5Pset_chunk(properties, 3, chunk);
        H5Pset_shuffle(properties);
        H5Pset_deflate(properties, 1);
    }
    const hid_t dataset =
        H5Dcreate2(file, "PIXEL", H5T_STD_U16LE, space, H5P_DEFAULT, properties, H5P_DEFAULT);
    for (hsize_t i = 0; i < frames; ++i) {
        const hsize_t offset[] = {i, 0, 0};
        H5Sselect_hyperslab(space, H5S_SELECT_SET, offset, nullptr, block, nullptr);
        H5Dwrite(dataset, H5T_NATIVE_USHORT, memory, space, H5P_DEFAULT,
                 pixelsOf(recording(), static_cast<unsigned int>(i)));
    }
    H5Dclose(dataset);
    H5Pclose(properties);
    H5Sclose(memory);
    H5Sclose(space);
    H5Fclose(file);
}

/// Reads all frames into fresh arrays, as an importer has to.
std::vector<std::unique_ptr<unsigned short[]>> readPeer()
{
    const hsize_t block[] = {1, height, width};
    const hid_t file = H5Fopen(path().toLatin1().constData(), H5F_ACC_RDONLY, H5P_DEFAULT);
    const hid_t dataset = H5Dopen2(file, "PIXEL", H5P_DEFAULT);
    const hid_t space = H5Dget_space(dataset);
    const hid_t memory = H5Screate_simple(3, block, nullptr);
    std::vector<std::unique_ptr<unsigned short[]>> planes;
    for (hsize_t i = 0; i < frames; ++i) {
        const hsize_t offset[] = {i, 0, 0};
        H5Sselect_hyperslab(space, H5S_SELECT_SET, offset, nullptr, block, nullptr);
        planes.emplace_back(RTE::newArray<unsigned short>(std::size_t{width} * height));
        H5Dread(dataset, H5T_NATIVE_USHORT, memory, space, H5P_DEFAULT, planes.back().get());
    }
    H5Sclose(memory);
    H5Sclose(space);
    H5Dclose(dataset);
    H5Fclose(file);
    return planes;
}

void write(bool isPacked)
{
    ExportBuffer(&recording(), path(), {{"PackType", isPacked ? 2 : 0}});
}

std::unique_ptr<I_Buffer> readAll()
{
    std::unique_ptr<I_Buffer> buffer(ImportBuffer(path()));
    for (unsigned int i = 0; i < buffer->GetFrameCount(); ++i) {
        benchmark::DoNotOptimize(pixelsOf(*buffer, i));
    }
    return buffer;
}

void setCounters(benchmark::State& state)
{
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(frames * imageBytes));
    state.counters["file"] = fileBytes() / static_cast<double>(frames * imageBytes);
    QFile::remove(path());
}

void Write(benchmark::State& state)
{
    static_cast<void>(recording());
    for (auto _ : state) {
        QFile::remove(path());
        write(state.range(0) != 0);
    }
    setCounters(state);
}

/// As many threads as the argument tells write the recording to a file each.
void WriteSideBySide(benchmark::State& state)
{
    static_cast<void>(recording());
    const auto count = static_cast<int>(state.range(0));
    const int packType = state.range(1) != 0 ? 2 : 0;
    for (auto _ : state) {
        std::vector<std::thread> threads;
        for (int number = 0; number < count; ++number) {
            QFile::remove(path(number));
            threads.emplace_back([=] { ExportBuffer(&recording(), path(number), {{"PackType", packType}}); });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
    }
    for (int number = 0; number < count; ++number) {
        QFile::remove(path(number));
    }
    state.SetBytesProcessed(state.iterations() * count * static_cast<std::int64_t>(frames * imageBytes));
}

/// The same frames one by one, each acknowledged.
void Stream(benchmark::State& state)
{
    static_cast<void>(recording());
    for (auto _ : state) {
        QFile::remove(path());
        FrameStream stream(path(), {{"PackType", state.range(0) != 0 ? 2 : 0}});
        for (unsigned int i = 0; i < frames; ++i) {
            stream.append(*recording().GetFrame(i));
        }
        stream.finish();
    }
    setCounters(state);
}

void WritePeer(benchmark::State& state)
{
    static_cast<void>(recording());
    for (auto _ : state) {
        QFile::remove(path());
        writePeer(state.range(0) != 0);
    }
    setCounters(state);
}

void Read(benchmark::State& state)
{
    write(state.range(0) != 0);
    const auto back = readAll();
    for (unsigned int i = 0; i < frames; ++i) {
        if (std::memcmp(pixelsOf(*back, i), pixelsOf(recording(), i), imageBytes) != 0) {
            state.SkipWithError("other pixels came back");
        }
    }
    for (auto _ : state) {
        readAll();
    }
    setCounters(state);
}

void ReadPeer(benchmark::State& state)
{
    writePeer(state.range(0) != 0);
    const auto back = readPeer();
    if (std::memcmp(back[frames - 1].get(), pixelsOf(recording(), frames - 1), imageBytes) != 0) {
        state.SkipWithError("other pixels came back");
    }
    for (auto _ : state) {
        readPeer();
    }
    setCounters(state);
}

void CopyPixels(benchmark::State& state)
{
    static_cast<void>(recording());
    for (auto _ : state) {
        for (unsigned int i = 0; i < frames; ++i) {
            const std::unique_ptr<unsigned short[]> copy(
                RTE::newArray<unsigned short>(std::size_t{width} * height));
            std::memcpy(copy.get(), pixelsOf(recording(), i), imageBytes);
            benchmark::DoNotOptimize(copy.get());
        }
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(frames * imageBytes));
}

/// A file of many small frames, each with four attributes.
void writeManyFrames(unsigned int count, unsigned int size)
{
    std::unique_ptr<I_Buffer> buffer(CreateBuffer());
    for (unsigned int i = 0; i < count; ++i) {
        auto* frame = CreateImageFrame(DT_WORD, size, size, 1);
        std::memset(frame->GetPlane(0, 0)->GetData(), static_cast<int>(i % 251), 2ULL * size * size);
        for (const char* name : {"Acq.Time", "Acq.Exposure", "Camera.Name", "Camera.Serial"}) {
            auto* attribute = frame->CreateAttribute(name, AT_STRING);
            dynamic_cast<I_Attribute<QString>&>(*attribute).SetValue(QString::number(0.001 * i));
        }
        buffer->AddFrame(frame);
    }
    ExportBuffer(buffer.get(), path(), {{"PackType", 2}});
}

void OpenManyFrames(benchmark::State& state)
{
    writeManyFrames(static_cast<unsigned int>(state.range(0)), 8);
    for (auto _ : state) {
        const std::unique_ptr<I_Buffer> buffer(ImportBuffer(path()));
        benchmark::DoNotOptimize(buffer->GetFrameCount());
    }
    QFile::remove(path());
}

void OpenManyFramesAndVisitAll(benchmark::State& state)
{
    writeManyFrames(static_cast<unsigned int>(state.range(0)), 8);
    for (auto _ : state) {
        const std::unique_ptr<I_Buffer> buffer(ImportBuffer(path()));
        std::size_t attributes = 0;
        for (unsigned int i = 0; i < buffer->GetFrameCount(); ++i) {
            attributes += buffer->GetFrame(i)->GetAttributeList().size();
        }
        benchmark::DoNotOptimize(attributes);
    }
    QFile::remove(path());
}

void OnePlaneOfMany(benchmark::State& state)
{
    writeManyFrames(static_cast<unsigned int>(state.range(0)), 512);
    for (auto _ : state) {
        const std::unique_ptr<I_Buffer> buffer(ImportBuffer(path()));
        benchmark::DoNotOptimize(pixelsOf(*buffer, buffer->GetFrameCount() / 2));
    }
    QFile::remove(path());
}

void bothForms(benchmark::internal::Benchmark* benchmark)
{
    benchmark->ArgName("packed")->Arg(1)->Arg(0)->Unit(benchmark::kMillisecond);
}

BENCHMARK(CopyPixels)->Unit(benchmark::kMillisecond);
BENCHMARK(Write)->Apply(bothForms);
BENCHMARK(WritePeer)->Apply(bothForms);
BENCHMARK(Stream)->Apply(bothForms);
BENCHMARK(WriteSideBySide)
    ->ArgNames({"threads", "packed"})
    ->ArgsProduct({{1, 2}, {1, 0}})
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK(Read)->Apply(bothForms);
BENCHMARK(ReadPeer)->Apply(bothForms);
BENCHMARK(OpenManyFrames)->Arg(1)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(OpenManyFramesAndVisitAll)->Arg(1)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(OnePlaneOfMany)->Arg(1)->Arg(1000)->Unit(benchmark::kMillisecond);

} // namespace
