// SPDX-License-Identifier: Apache-2.0
// Native files in /dev/shm beside HDF5's own filters and its own contiguous datasets on the same pixels.
// Peers are what the C library does as it comes: shuffle and gzip level 1, contiguous without a checksum, or
// chunks with its own Fletcher32. On tmpfs the syncing of an export costs nothing.
#include "Benchmarks/Race.h"
#include "Core/Buffer/BufferApi.h"
#include "Core/Buffer/FrameStream.h"
#include "Core/Common/Array.h"

#include <benchmark/benchmark.h>

#include <QFile>

#include <hdf5.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>
#include <map>
#include <memory>
#include <random>
#include <thread>
#include <vector>

#include <malloc.h>

namespace
{

using namespace BufferApi;

constexpr unsigned int width = 1280;
constexpr unsigned int height = 1024;
constexpr unsigned int images = 16;
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

/// Frames of 16 images in turn.
const I_Buffer& recording(unsigned int frames)
{
    static std::map<unsigned int, std::unique_ptr<I_Buffer>> recordings;
    std::unique_ptr<I_Buffer>& result = recordings[frames];
    if (!result) {
        result.reset(CreateBuffer());
        for (unsigned int i = 0; i < frames; ++i) {
            auto* frame = CreateImageFrame(DT_WORD, width, height, 1);
            const void* image =
                i < images ? nullptr : result->GetFrame(i - images)->GetPlane(0, 0)->GetData();
            const std::vector<unsigned short> pixels =
                image == nullptr ? particleImage(i) : std::vector<unsigned short>();
            std::memcpy(frame->GetPlane(0, 0)->GetData(), image == nullptr ? pixels.data() : image,
                        imageBytes);
            result->AddFrame(frame);
        }
    }
    return *result;
}

const void* pixelsOf(const I_Buffer& buffer, unsigned int frame)
{
    return buffer.GetFrame(frame)->GetPlane(0, 0)->GetData();
}

enum class Peer
{
    Contiguous,
    Packed,
    Checksummed
};

/// The recording as one dataset written through HDF5's own road.
void writePeer(const I_Buffer& buffer, Peer kind, const QString& file)
{
    const unsigned int frames = buffer.GetFrameCount();
    const hsize_t extents[] = {frames, height, width};
    const hsize_t block[] = {1, height, width};
    const hsize_t chunk[] = {1, height / 3 + 1, width};
    const hid_t id = H5Fcreate(file.toLatin1().constData(), H5F_ACC_TRUNC, H5P_DEFAULT, H5P_DEFAULT);
    const hid_t space = H5Screate_simple(3, extents, nullptr);
    const hid_t memory = H5Screate_simple(3, block, nullptr);
    const hid_t properties = H5Pcreate(H5P_DATASET_CREATE);
    if (kind != Peer::Contiguous) {
        H5Pset_chunk(properties, 3, chunk);
    }
    if (kind == Peer::Packed) {
        H5Pset_shuffle(properties);
        H5Pset_deflate(properties, 1);
    } else if (kind == Peer::Checksummed) {
        H5Pset_fletcher32(properties);
    }
    const hid_t dataset = H5Dcreate2(id, "PIXEL", H5T_STD_U16LE, space, H5P_DEFAULT, properties, H5P_DEFAULT);
    for (hsize_t i = 0; i < frames; ++i) {
        const hsize_t offset[] = {i, 0, 0};
        H5Sselect_hyperslab(space, H5S_SELECT_SET, offset, nullptr, block, nullptr);
        H5Dwrite(dataset, H5T_NATIVE_USHORT, memory, space, H5P_DEFAULT,
                 pixelsOf(buffer, static_cast<unsigned int>(i)));
    }
    H5Dclose(dataset);
    H5Pclose(properties);
    H5Sclose(memory);
    H5Sclose(space);
    H5Fclose(id);
}

/// Reads all frames into fresh arrays, as an importer has to.
std::vector<std::unique_ptr<unsigned short[]>> readPeer(unsigned int frames, const QString& file)
{
    const hsize_t block[] = {1, height, width};
    const hid_t id = H5Fopen(file.toLatin1().constData(), H5F_ACC_RDONLY, H5P_DEFAULT);
    const hid_t dataset = H5Dopen2(id, "PIXEL", H5P_DEFAULT);
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
    H5Fclose(id);
    return planes;
}

void write(const I_Buffer& buffer, bool isPacked, const QString& file)
{
    ExportBuffer(&buffer, file, {{"PackType", isPacked ? 2 : 0}});
}

std::unique_ptr<I_Buffer> readAll(const QString& file)
{
    std::unique_ptr<I_Buffer> buffer(ImportBuffer(file));
    for (unsigned int i = 0; i < buffer->GetFrameCount(); ++i) {
        benchmark::DoNotOptimize(pixelsOf(*buffer, i));
    }
    return buffer;
}

std::vector<Peer> peersOf(bool isPacked)
{
    return isPacked ? std::vector{Peer::Packed} : std::vector{Peer::Contiguous, Peer::Checksummed};
}

std::string nameOf(Peer peer)
{
    return peer == Peer::Packed ? "gzip1" : peer == Peer::Contiguous ? "contiguous" : "fletcher32";
}

void Write(benchmark::State& state)
{
    const bool isPacked = state.range(0) != 0;
    const I_Buffer& buffer = recording(static_cast<unsigned int>(state.range(1)));
    std::vector<Benchmarks::Contender> contenders{{"ms", [&] { write(buffer, isPacked, path()); }}};
    for (const Peer peer : peersOf(isPacked)) {
        contenders.push_back({nameOf(peer), [&buffer, peer] { writePeer(buffer, peer, path()); }});
    }
    Benchmarks::raceSingly(
        state, [] { QFile::remove(path()); }, contenders);
    const auto pixelBytes = static_cast<double>(buffer.GetFrameCount() * imageBytes);
    for (const Benchmarks::Contender& contender : contenders) {
        contender.run();
        state.counters[contender.name + "_size"] = static_cast<double>(QFile(path()).size()) / pixelBytes;
    }
    QFile::remove(path());
}

enum Memory
{
    /// As the C library does it, which gives large pieces back to the system when it can.
    AsItComes,
    /// Every array asks the system.
    Fresh,
    /// Freed memory stays with the process.
    Kept
};

/// To be called for one kind in a process: what the C library holds already stays.
void use(Memory memory)
{
    if (memory != AsItComes) {
        mallopt(M_MMAP_THRESHOLD, memory == Kept ? 1 << 30 : 1 << 20);
        mallopt(M_TRIM_THRESHOLD, memory == Kept ? 1 << 30 : 0);
    }
}

/// Writes all files anew after every third round, in another order: where the system puts the pages of a file
/// decides more than a tenth of the time that reading it takes.
class Renewal
{
public:
    explicit Renewal(std::vector<std::function<void()>> writers) : m_writers(std::move(writers)) {}

    void operator()()
    {
        if (++m_turns % (3 * m_writers.size()) != 0) {
            return;
        }
        for (int number = 0; number < 4; ++number) {
            QFile::remove(path(number));
        }
        std::rotate(m_writers.begin(), m_writers.begin() + 1, m_writers.end());
        for (const auto& writeFile : m_writers) {
            writeFile();
        }
    }

private:
    std::vector<std::function<void()>> m_writers;
    std::size_t m_turns = 0;
};

void Read(benchmark::State& state)
{
    const bool isPacked = state.range(0) != 0;
    const auto frames = static_cast<unsigned int>(state.range(1));
    use(static_cast<Memory>(state.range(2)));
    const I_Buffer& buffer = recording(frames);
    write(buffer, isPacked, path());
    const auto back = readAll(path());
    const auto isRight = [&](unsigned int i, const void* pixels) {
        if (std::memcmp(pixels, pixelsOf(buffer, i), imageBytes) != 0) {
            state.SkipWithError("other pixels came back");
        }
    };
    for (unsigned int i = 0; i < frames; ++i) {
        isRight(i, pixelsOf(*back, i));
    }
    std::vector<Benchmarks::Contender> contenders{{"ms", [] { readAll(path()); }}};
    std::vector<std::function<void()>> writers{[&] { write(buffer, isPacked, path()); }};
    for (const Peer peer : peersOf(isPacked)) {
        const QString file = path(1 + static_cast<int>(peer));
        writers.push_back([&buffer, peer, file] { writePeer(buffer, peer, file); });
        writers.back()();
        isRight(frames - 1, readPeer(frames, file).back().get());
        contenders.push_back({nameOf(peer), [=] { readPeer(frames, file); }});
    }
    Benchmarks::raceSingly(state, Renewal(std::move(writers)), contenders);
    for (int number = 0; number < 4; ++number) {
        QFile::remove(path(number));
    }
}

void writeSideBySide(int threads, bool isPacked)
{
    std::vector<std::thread> running;
    for (int number = 0; number < threads; ++number) {
        running.emplace_back([=] {
            QFile::remove(path(number));
            write(recording(images), isPacked, path(number));
        });
    }
    for (std::thread& thread : running) {
        thread.join();
    }
}

/// Two threads write the recording to a file each; `gain` tells how many times the work of one thread they
/// do.
void WriteSideBySide(benchmark::State& state)
{
    const bool isPacked = state.range(0) != 0;
    static_cast<void>(recording(images));
    Benchmarks::raceSingly(
        state, [] {},
        {{"ms", [&] { writeSideBySide(2, isPacked); }}, {"one", [&] { writeSideBySide(1, isPacked); }}});
    state.counters["gain"] = 2 * state.counters["one"];
    QFile::remove(path(0));
    QFile::remove(path(1));
}

/// The same frames one by one, each acknowledged.
void Stream(benchmark::State& state)
{
    static_cast<void>(recording(images));
    for (auto _ : state) {
        QFile::remove(path());
        FrameStream stream(path(), {{"PackType", state.range(0) != 0 ? 2 : 0}});
        for (unsigned int i = 0; i < images; ++i) {
            stream.append(*recording(images).GetFrame(i));
        }
        stream.finish();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(images * imageBytes));
    QFile::remove(path());
}

void CopyPixels(benchmark::State& state)
{
    static_cast<void>(recording(images));
    for (auto _ : state) {
        for (unsigned int i = 0; i < images; ++i) {
            const std::unique_ptr<unsigned short[]> copy(
                RTE::newArray<unsigned short>(std::size_t{width} * height));
            std::memcpy(copy.get(), pixelsOf(recording(images), i), imageBytes);
            benchmark::DoNotOptimize(copy.get());
        }
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(images * imageBytes));
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
BENCHMARK(Write)
    ->ArgNames({"packed", "frames"})
    ->Args({1, 16})
    ->Args({0, 16})
    ->Args({0, 64})
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime();
BENCHMARK(Stream)->Apply(bothForms);
BENCHMARK(WriteSideBySide)->Apply(bothForms)->UseManualTime();
BENCHMARK(Read)
    ->ArgNames({"packed", "frames", "memory"})
    ->Args({1, 16, AsItComes})
    ->ArgsProduct({{0}, {16, 64}, {AsItComes, Fresh, Kept}})
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime();
BENCHMARK(OpenManyFrames)->Arg(1)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(OpenManyFramesAndVisitAll)->Arg(1)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(OnePlaneOfMany)->Arg(1)->Arg(1000)->Unit(benchmark::kMillisecond);

} // namespace
