// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/InstantMask.h"
#include "Core/DataObjects/LazyMask.h"

#include "Tests/Support/Raises.h"

#include <array>
#include <barrier>
#include <new>
#include <thread>

namespace
{

using namespace DataObjects;
using namespace TestSupport;

TEST(InstantMask, IsThereFromTheStart)
{
    InstantMask instant(2, 2, true);
    EXPECT_TRUE(instant.IsMaskSpawned());
    EXPECT_TRUE(AllValuesValid(instant.ref()));
    EXPECT_EQ(instant.sptr().get(), &instant.ref());
}

TEST(InstantMask, CopiesShareTheMask)
{
    const auto mask = std::make_shared<Mask>(2, 2, false);
    InstantMask instant(mask);
    InstantMask copy(instant);
    InstantMask assigned(1, 1, true);
    assigned = copy;
    EXPECT_EQ(copy.sptr(), mask);
    EXPECT_EQ(&std::as_const(assigned).ref(), mask.get());

    InstantMask moved(std::move(instant));
    EXPECT_EQ(moved.sptr(), mask);
    assigned = InstantMask(Mask(3, 1, true));
    EXPECT_EQ(assigned.ref().GetWidth(), 3U);
}

TEST(InstantMask, WithoutAMaskSaysSo)
{
    InstantMask instant(2, 2, true);
    const InstantMask moved(std::move(instant));
    InstantMask assigned(nullptr);
    for (InstantMask* const without : {&instant, &assigned}) {
        EXPECT_TRUE(raises("Mask is not valid.", [&] { without->ref(); }));
        EXPECT_EQ(without->sptr(), nullptr);
    }
}

TEST(LazyMask, ComesIntoBeingWhenAskedFor)
{
    LazyMask byReference(2, 3, true);
    EXPECT_FALSE(byReference.IsMaskSpawned());
    const Mask& mask = std::as_const(byReference).ref();
    EXPECT_TRUE(byReference.IsMaskSpawned());
    EXPECT_EQ(mask.GetSize(), Math::Size2T<unsigned int>(2, 3));
    EXPECT_TRUE(AllValuesValid(mask));
    EXPECT_EQ(byReference.sptr().get(), &mask);
    LazyMask byPointer(2, 3, true);
    EXPECT_EQ(byPointer.sptr().get(), &byPointer.ref());
}

TEST(LazyMask, InitializesLaterOnlyWhatIsNotThereYet)
{
    LazyMask lazy(40, 40, false);
    lazy.initializeLater();
    EXPECT_FALSE(lazy.IsMaskSpawned());
    EXPECT_TRUE(AllValuesValid(lazy.ref()));

    lazy.ref().Fill(false);
    lazy.initializeLater();
    EXPECT_FALSE(lazy.ref().IsValid(0, 0));
}

TEST(LazyMask, StaysUnspawnedWhereMemoryDoesNotSuffice)
{
    LazyMask tooLarge(0xFFFFFFFFU, 0xFFFFFFFFU, true);
    for (int attempt = 0; attempt < 2; ++attempt) {
        EXPECT_THROW(tooLarge.ref(), std::bad_alloc);
        EXPECT_THROW(tooLarge.sptr(), std::bad_alloc);
        EXPECT_FALSE(tooLarge.IsMaskSpawned());
    }
}

/// What one thread sees of a mask that another one may be making at the same moment.
const Mask* askFor(MaskStrategy& strategy, unsigned int way)
{
    switch (way % 3) {
    case 0:
        return strategy.sptr().get();
    case 1:
        return &std::as_const(strategy).ref();
    default:
        return strategy.IsMaskSpawned() ? &strategy.ref() : strategy.sptr().get();
    }
}

TEST(LazyMask, ManyThreadsGetOneMask)
{
    constexpr unsigned int threadCount = 4;
    constexpr unsigned int rounds = 300;
    std::vector<std::unique_ptr<LazyMask>> masks(rounds);
    for (auto& mask : masks) {
        mask = std::make_unique<LazyMask>(16, 16, true);
    }
    std::array<std::vector<const Mask*>, threadCount> seen;
    std::array<unsigned int, threadCount> allValid{};
    std::barrier start(threadCount);
    std::vector<std::jthread> threads;
    for (unsigned int t = 0; t < threadCount; ++t) {
        threads.emplace_back([&, t] {
            for (unsigned int round = 0; round < rounds; ++round) {
                start.arrive_and_wait();
                const Mask* const mask = askFor(*masks[round], t + round);
                seen[t].push_back(mask);
                allValid[t] += AllValuesValid(*mask) ? 1U : 0U;
            }
        });
    }
    threads.clear();
    EXPECT_THAT(seen, testing::Each(seen[0]));
    EXPECT_THAT(allValid, testing::Each(rounds));
}

} // namespace
