// SPDX-License-Identifier: Apache-2.0
// Recordings of objects to files in /dev/shm and back, beside the frame store's own export and import of the
// same frames, and one image out of a long file beside one out of a file that has no other.
#include "Core/Buffer/BufferApi.h"
#include "Core/Buffer/FrameStream.h"
#include "Core/Common/Array.h"
#include "Core/DataObjects/DataObjects.h"

#include <benchmark/benchmark.h>

#include <QFile>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstring>
#include <functional>
#include <limits>
#include <random>

#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

using namespace DataObjects;
using Buffer = std::unique_ptr<BufferApi::I_Buffer>;

constexpr unsigned int side = 2048;

QString path(const QString& name)
{
    return QStringLiteral("/dev/shm/object-file-benchmark-%1.qfi").arg(name);
}

/// Deletes its file.
struct File
{
    explicit File(const QString& name) : path(::path(name)) {}
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    ~File() { QFile::remove(path); }

    QString path;
};

/// Camera noise over a bright spot that moves.
ImageBuffer<unsigned short> recording(unsigned int frames)
{
    ImageBuffer<unsigned short> buffer(side, side, 1, frames, true);
    std::mt19937 random(1);
    for (unsigned int frame = 0; frame < frames; ++frame) {
        auto& image = buffer.getFrame(frame).getPlane(0);
        for (unsigned int y = 0; y < side; ++y) {
            for (unsigned int x = 0; x < side; ++x) {
                const bool isSpot = (x + frame) % 32 < 4 && y % 32 < 4;
                image(x, y) = static_cast<unsigned short>((isSpot ? 2000 : 100) + random() % 16);
            }
        }
        image.GetAttributes().set("Time", frame);
    }
    return buffer;
}

double secondsOf(const std::function<void()>& call)
{
    const auto start = std::chrono::steady_clock::now();
    call();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// What the call returns in a process of its own; NaN if that ends otherwise.
double inChild(const std::function<double()>& call)
{
    double result = std::numeric_limits<double>::quiet_NaN();
    int ends[2] = {};
    if (pipe(ends) != 0) {
        return result;
    }
    const pid_t child = fork();
    if (child == 0) {
        result = call();
        _exit(write(ends[1], &result, sizeof(result)) == sizeof(result) ? 0 : 1);
    }
    close(ends[1]);
    if (read(ends[0], &result, sizeof(result)) != sizeof(result)) {
        result = std::numeric_limits<double>::quiet_NaN();
    }
    close(ends[0]);
    waitpid(child, nullptr, 0);
    return result;
}

double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

void storeExport(const BufferApi::I_Buffer& buffer, const QString& file)
{
    BufferApi::ExportBuffer(&buffer, file, {{"PackType", 2}});
}

/// All planes too, pixels and masks.
Buffer storeImport(const QString& file)
{
    Buffer buffer(BufferApi::ImportBuffer(file, {}));
    for (unsigned int frame = 0; frame < buffer->GetFrameCount(); ++frame) {
        const BufferApi::I_Frame& read = *buffer->GetFrame(frame);
        for (unsigned int component = 0; component < read.GetComponentCount(); ++component) {
            benchmark::DoNotOptimize(read.GetPlane(component, 0)->GetData());
        }
    }
    return buffer;
}

bool isSame(const ImageBufferVariant& read, const ImageBuffer<unsigned short>& original)
{
    const auto& last = original.getFrame(original.getFrameCount() - 1).getPlane(0);
    const auto& other =
        static_cast<const Image<unsigned short>&>(read.getFrame(read.getFrameCount() - 1).getPlane(0));
    return read.getFrameCount() == original.getFrameCount() &&
           std::equal(last.begin(), last.end(), other.begin(), other.end());
}

/// All pixels, plane by plane.
void copyPixels(const ImageBuffer<unsigned short>& original)
{
    std::vector<unsigned short> copy(std::size_t{side} * side);
    for (const auto& frame : original) {
        std::memcpy(copy.data(), frame->getPlane(0).GetRawPointer(), copy.size() * 2);
        benchmark::ClobberMemory();
    }
}

/// Objects and store take turns, each first every second time; each counter is the time of the store over
/// that of the objects, so that 1 means that objects cost nothing.
void recordings(benchmark::State& state)
{
    const File objects(QStringLiteral("objects"));
    const File store(QStringLiteral("store"));
    const auto original = recording(static_cast<unsigned int>(state.range(0)));
    const Buffer buffer = CreateBufferFromImageBuffer(original, true);
    std::vector<double> exported, imported, storeExported, storeImported;
    // Each in a process of its own: what the heap was used for before makes half of the time of an import.
    std::vector<std::function<void()>> turns = {
        [&] {
            exported.push_back(
                inChild([&] { return secondsOf([&] { ExportImageBuffer(original, objects.path); }); }));
        },
        [&] {
            storeExported.push_back(
                inChild([&] { return secondsOf([&] { storeExport(*buffer, store.path); }); }));
        },
        [&] {
            imported.push_back(inChild([&] {
                std::unique_ptr<ImageBufferVariant> read;
                const double seconds = secondsOf([&] { read = ImportImageBuffer(objects.path); });
                return isSame(*read, original) ? seconds : std::numeric_limits<double>::quiet_NaN();
            }));
        },
        [&] {
            storeImported.push_back(inChild([&] {
                Buffer read;
                return secondsOf([&] { read = storeImport(store.path); });
            }));
        }};
    for (auto _ : state) {
        for (const auto& turn : turns) {
            turn();
        }
        std::swap(turns[0], turns[1]);
        std::swap(turns[2], turns[3]);
        state.SetIterationTime(exported.back() + imported.back());
    }
    if (std::any_of(imported.begin(), imported.end(), [](double seconds) { return std::isnan(seconds); })) {
        state.SkipWithError("wrong result");
        return;
    }
    const double own = median(exported) + median(imported);
    state.counters["export ms"] = 1000 * median(exported);
    state.counters["import ms"] = 1000 * median(imported);
    state.counters["export"] = median(storeExported) / median(exported);
    state.counters["import"] = median(storeImported) / median(imported);
    state.counters["both"] = (median(storeExported) + median(storeImported)) / own;
    state.counters["memcpy"] = secondsOf([&] { copyPixels(original); }) / own;
}

/// Peak memory in bytes of a process that makes the call, beyond that of one that does nothing.
double peakBytes(const std::function<void()>& call)
{
    return inChild([&] {
        const auto peak = [] {
            QFile status(QStringLiteral("/proc/self/status"));
            status.open(QIODevice::ReadOnly);
            const QByteArray text = status.readAll();
            const auto begin = text.indexOf("VmHWM:") + 6;
            return text.mid(begin, text.indexOf("kB", begin) - begin).trimmed().toDouble() * 1024;
        };
        malloc_trim(0);
        RTE::freeReserve();
        QFile clear(QStringLiteral("/proc/self/clear_refs"));
        clear.open(QIODevice::WriteOnly);
        clear.write("5");
        clear.close();
        const double before = peak();
        call();
        return peak() - before;
    });
}

/// Image 500 of 1,000, each of its own pixels, beside the only one of a file.
void oneImageOfMany(benchmark::State& state)
{
    const File many(QStringLiteral("many"));
    const File single(QStringLiteral("single"));
    const auto frames = static_cast<unsigned int>(state.range(0));
    {
        const auto original = recording(1);
        ExportImageBuffer(original, single.path);
        BufferApi::FrameStream stream(many.path, {{"PackType", 2}});
        const Buffer buffer = CreateBufferFromImageBuffer(original, true);
        auto* const pixels = static_cast<unsigned short*>(buffer->GetFrame(0)->GetPlane(0, 0)->GetData());
        for (unsigned int frame = 0; frame < frames; ++frame) {
            pixels[0] = static_cast<unsigned short>(frame);
            stream.append(*buffer->GetFrame(0));
        }
        stream.finish();
    }
    const unsigned int wanted = frames / 2;
    std::vector<double> ofMany, ofSingle;
    for (auto _ : state) {
        std::unique_ptr<ImageVariant> image;
        ofMany.push_back(secondsOf([&] { image = ImportImage(many.path, wanted, 0); }));
        if (static_cast<const Image<unsigned short>&>(*image)(0, 0) != wanted) {
            state.SkipWithError("wrong result");
            return;
        }
        state.SetIterationTime(ofMany.back());
        image.reset();
        ofSingle.push_back(secondsOf([&] { image = ImportImage(single.path, 0, 0); }));
    }
    state.counters["time to a file of one"] = median(ofMany) / median(ofSingle);
    constexpr double planeBytes = 2.0 * side * side;
    state.counters["peak in planes"] =
        peakBytes([&] { (void)ImportImage(many.path, wanted, 0); }) / planeBytes;
    state.counters["peak of one in planes"] =
        peakBytes([&] { (void)ImportImage(single.path, 0, 0); }) / planeBytes;
}

BENCHMARK(recordings)->Arg(4)->UseManualTime()->Iterations(21)->Unit(benchmark::kMillisecond);
BENCHMARK(recordings)->Arg(64)->UseManualTime()->Iterations(7)->Unit(benchmark::kMillisecond);
BENCHMARK(oneImageOfMany)->Arg(10)->UseManualTime()->Iterations(21)->Unit(benchmark::kMillisecond);
BENCHMARK(oneImageOfMany)->Arg(1000)->UseManualTime()->Iterations(21)->Unit(benchmark::kMillisecond);

} // namespace
