// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/BufferApi.h"
#include "Tests/Support/EachTarget.h"
#include "Tests/Support/Files.h"
#include "Tests/Support/Frames.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <functional>
#include <random>

namespace
{

using namespace BufferApi;
using Byte = unsigned char;

// The first pixels count up, which nothing else in a file does.
constexpr unsigned int markBytes = 16;

/// Step by step as HDF5's filter does it: big-endian words, sums folded after 360 of them.
unsigned int fletcher32(const Byte* data, std::size_t bytes)
{
    unsigned int plain = 0;
    unsigned int weighted = 0;
    const auto fold = [&] {
        plain = (plain & 0xFFFFU) + (plain >> 16U);
        weighted = (weighted & 0xFFFFU) + (weighted >> 16U);
    };
    for (std::size_t i = 0; i < bytes; i += 2) {
        plain += static_cast<unsigned>(data[i]) << 8U | (i + 1 < bytes ? data[i + 1] : 0U);
        weighted += plain;
        if (i / 2 % 360 == 359) {
            fold();
        }
    }
    fold();
    fold();
    return weighted << 16U | plain;
}

/// The checksum behind the pixels of a plane of one chunk in a file that holds it as it is.
unsigned int storedBehind(const QByteArray& file, const QByteArray& pixels)
{
    const qsizetype found = file.indexOf(pixels.left(markBytes));
    EXPECT_EQ(file.mid(found, pixels.size()), pixels);
    unsigned int sum = 0;
    std::memcpy(&sum, file.constData() + found + pixels.size(), sizeof(sum));
    return sum;
}

struct Content
{
    const char* name;
    std::function<Byte(std::size_t index)> byte;
};

TEST(Checksum, IsThatOfHdf5OnEveryProcessor)
{
    std::mt19937 random(5);
    const Content contents[] = {
        {"largest words", [](std::size_t) { return Byte{255}; }},
        {"zeros", [](std::size_t) { return Byte{0}; }},
        {"words of one high bit", [](std::size_t i) { return i % 2 == 0 ? Byte{0} : Byte{128}; }},
        {"random", [&](std::size_t) { return static_cast<Byte>(random()); }}};
    // Words alone, vectors with and without a rest, an odd last byte, several of the blocks in which sums
    // are taken, several of the pieces in which a chunk is written.
    const unsigned int widths[] = {31, 254, 256, 511, 512, 1027, 65'279, 131'072, 450'003};
    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("plane.qfi"));
    for (const Content& content : contents) {
        for (const unsigned int width : widths) {
            SCOPED_TRACE(std::string(content.name) + ", " + std::to_string(width));
            const std::unique_ptr<I_Buffer> buffer(CreateBuffer());
            buffer->AddFrame(CreateImageFrame(DT_BYTE, width, 1, 1));
            auto* pixels = static_cast<Byte*>(buffer->GetFrame(0)->GetPlane(0, 0)->GetData());
            for (std::size_t i = 0; i < width; ++i) {
                pixels[i] = i < markBytes ? static_cast<Byte>(200 + i) : content.byte(i);
            }
            const QByteArray bytes(reinterpret_cast<const char*>(pixels), width);
            const unsigned int expected = fletcher32(pixels, width);
            TestSupport::onEachTarget([&] {
                ExportBuffer(buffer.get(), path, {{"PackType", 0}});
                EXPECT_EQ(storedBehind(TestSupport::contentOf(path), bytes), expected);
                const std::unique_ptr<I_Buffer> back(ImportBuffer(path));
                EXPECT_TRUE(TestSupport::buffersEqual(*back, *buffer));
            });
        }
    }
}

} // namespace
