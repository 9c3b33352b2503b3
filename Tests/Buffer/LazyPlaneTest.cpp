// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/LazyPlane.h"

#include "Core/Buffer/FrameBuilder.h"
#include "Core/Buffer/I_FrameImage.h"
#include "Tests/Support/Raises.h"

#include <atomic>
#include <numeric>
#include <thread>

namespace
{

using TestSupport::raises;

/// Gives 0, 1, 2 …; fails as often as it is told to.
class Counting final : public BufferApi::PlaneSource
{
public:
    void read(void* destination, unsigned long long bytes) const override
    {
        ++reads;
        if (failures > 0) {
            --failures;
            RTE::raise(RTE::FileReadError(QStringLiteral("no file")));
        }
        auto* pixels = static_cast<unsigned short*>(destination);
        std::iota(pixels, pixels + bytes / sizeof(unsigned short), static_cast<unsigned short>(0));
    }

    mutable std::atomic<int> reads = 0;
    mutable std::atomic<int> failures = 0;
};

TEST(LazyPlane, ReadsOnceAtTheFirstUseAndLetsGoOfTheSource)
{
    auto source = std::make_shared<Counting>();
    auto plane = BufferApi::createLazyPlane(BufferApi::DT_WORD, 5, 3, source);
    EXPECT_EQ(plane->GetWidth(), 5U);
    EXPECT_EQ(source->reads, 0);
    const auto* pixels = static_cast<const unsigned short*>(plane->GetData());
    EXPECT_EQ(pixels[14], 14);
    EXPECT_EQ(plane->GetData(), pixels);
    EXPECT_EQ(source->reads, 1);
    EXPECT_EQ(source.use_count(), 1);
}

TEST(LazyPlane, ReleasesWithoutAnEarlierUseAndStaysEmptyAfterwards)
{
    auto source = std::make_shared<Counting>();
    auto plane = BufferApi::createLazyPlane(BufferApi::DT_WORD, 2, 2, source);
    std::unique_ptr<unsigned short[]> pixels(static_cast<unsigned short*>(plane->ReleaseData()));
    EXPECT_EQ(pixels[3], 3);
    EXPECT_EQ(plane->GetData(), nullptr);
    EXPECT_EQ(plane->ReleaseData(), nullptr);
    EXPECT_EQ(source->reads, 1);
    EXPECT_TRUE(raises<RTE::VerificationFailed>("Plane has no data",
                                                [&] { BufferApi::readPlane(*plane, pixels.get()); }));
}

TEST(LazyPlane, TriesAgainAfterAFailure)
{
    auto source = std::make_shared<Counting>();
    source->failures = 2;
    auto plane = BufferApi::createLazyPlane(BufferApi::DT_WORD, 2, 2, source);
    EXPECT_TRUE(raises<RTE::FileReadError>("no file", [&] { static_cast<void>(plane->GetData()); }));
    EXPECT_TRUE(raises<RTE::FileReadError>("no file", [&] { static_cast<void>(plane->ReleaseData()); }));
    EXPECT_TRUE(BufferApi::isUnread(*plane));
    EXPECT_EQ(static_cast<const unsigned short*>(plane->GetData())[3], 3);
}

TEST(LazyPlane, CopiesOutWithoutKeepingThePixels)
{
    auto source = std::make_shared<Counting>();
    auto plane = BufferApi::createLazyPlane(BufferApi::DT_WORD, 2, 2, source);
    std::vector<unsigned short> copy(4);
    BufferApi::readPlane(*plane, copy.data());
    EXPECT_EQ(copy, (std::vector<unsigned short>{0, 1, 2, 3}));
    EXPECT_TRUE(BufferApi::isUnread(*plane));

    static_cast<unsigned short*>(plane->GetData())[0] = 77;
    EXPECT_FALSE(BufferApi::isUnread(*plane));
    BufferApi::readPlane(*plane, copy.data());
    EXPECT_EQ(copy[0], 77);
    EXPECT_EQ(source->reads, 2);
}

TEST(LazyPlane, RefusesSizesThatOverflow)
{
    const auto create = [](BufferApi::E_DataType type) {
        static_cast<void>(BufferApi::createLazyPlane(type, 0xFFFFFFFF, 0xFFFFFFFF, nullptr));
    };
    EXPECT_TRUE(raises<RTE::InvalidArgumentError>("Plane is too large", [&] { create(BufferApi::DT_WORD); }));
    EXPECT_TRUE(
        raises<RTE::InvalidArgumentError>("Unsupported data type", [&] { create(BufferApi::DT_UNKNOWN); }));
}

TEST(LazyPlane, ThreadsShareOneReadAndItsFailures)
{
    for (int round = 0; round < 50; ++round) {
        auto source = std::make_shared<Counting>();
        source->failures = round % 3;
        auto plane = BufferApi::createLazyPlane(BufferApi::DT_WORD, 64, 64, source);
        std::atomic<long> sum = 0;
        const auto read = [&] {
            for (;;) {
                try {
                    sum += static_cast<const unsigned short*>(plane->GetData())[4095];
                    return;
                } catch (const RTE::FileReadError&) {
                    std::this_thread::yield();
                }
            }
        };
        std::vector<unsigned short> copy(4096);
        {
            std::vector<std::jthread> threads;
            for (int i = 0; i < 4; ++i) {
                threads.emplace_back(read);
            }
        }
        BufferApi::readPlane(*plane, copy.data());
        EXPECT_EQ(sum, 4 * 4095);
        EXPECT_EQ(source->reads, round % 3 + 1);
    }
}

TEST(LazyPlane, ServesAFrameWhosePlanesAreOfAnotherSize)
{
    auto source = std::make_shared<Counting>();
    std::vector<BufferApi::ComponentParts> parts(2);
    parts[0].name = BufferApi::I_FrameImage::COMPONENT_PIXEL;
    parts[1].name = "TS:Thumbnail";
    for (unsigned int i = 0; i < 2; ++i) {
        parts[i].type = BufferApi::DT_WORD;
        parts[i].planes.push_back(
            BufferApi::createLazyPlane(BufferApi::DT_WORD, 8 - 4 * i, 6 - 3 * i, source));
    }
    parts[1].scale.emplace(2.0, 1.0, QStringLiteral("K"), QStringLiteral("Temperature"));
    const auto frame = BufferApi::buildFrame({BufferApi::FrameKind::Image, 8, 6, 1, 1}, std::move(parts));
    EXPECT_EQ(source->reads, 0);
    EXPECT_EQ(frame->GetPlane(1, 0)->GetWidth(), 4U);
    EXPECT_EQ(frame->GetComponent("TS:Thumbnail")->GetScale().getUnit(), QStringLiteral("K"));
    EXPECT_EQ(static_cast<unsigned short*>(frame->GetPlane(0, 0)->GetData())[47], 47);
    EXPECT_EQ(source->reads, 1);
}

} // namespace
