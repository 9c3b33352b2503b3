// SPDX-License-Identifier: Apache-2.0
#include "Core/Common/Array.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <thread>
#include <vector>

namespace
{

constexpr unsigned long long mebibyte = 1U << 20U;

#ifdef __SANITIZE_ADDRESS__
constexpr bool keepsArrays = false;
#else
constexpr bool keepsArrays = true;
#endif

/// Frees what other tests left behind, and what this one leaves.
class ArrayReserve : public testing::Test
{
protected:
    ArrayReserve() { RTE::freeReserve(); }
    ~ArrayReserve() override { RTE::freeReserve(); }
};

TEST_F(ArrayReserve, KeepsLargeArraysOfTheirSizeOnly)
{
    for (const auto& [count, isKept] : {std::pair(mebibyte, false), std::pair(8 * mebibyte, true),
                                        std::pair(128 * mebibyte, true), std::pair(129 * mebibyte, false)}) {
        auto* const array = RTE::newArray<unsigned short>(count);
        array[0] = 1;
        array[count - 1] = 1;
        RTE::deleteArray(array, count);
        EXPECT_EQ(RTE::takeReserve(2 * count - 2), nullptr);
        void* const kept = RTE::takeReserve(2 * count);
        EXPECT_EQ(kept, isKept && keepsArrays ? array : nullptr) << count;
        EXPECT_EQ(RTE::takeReserve(2 * count), nullptr);
        delete[] static_cast<unsigned short*>(kept);
    }
    RTE::deleteArray<float>(nullptr, 16 * mebibyte);
    EXPECT_EQ(RTE::takeReserve(64 * mebibyte), nullptr);
}

TEST_F(ArrayReserve, HandsEachArrayOutOnceAndKeepsAFewOfMany)
{
    std::vector<int*> arrays(9);
    for (unsigned long long i = 0; i < arrays.size(); ++i) {
        arrays[i] = RTE::newArray<int>(4 * mebibyte + i / 8);
    }
    for (unsigned long long i = 0; i < arrays.size(); ++i) {
        RTE::deleteArray(arrays[i], 4 * mebibyte + i / 8);
    }
    std::set<void*> taken;
    for (int i = 0; i < 9; ++i) {
        taken.insert(RTE::takeReserve(16 * mebibyte));
    }
    void* const last = RTE::takeReserve(16 * mebibyte + sizeof(int));
    EXPECT_EQ(last, keepsArrays ? arrays.back() : nullptr);
    // Three arrays and the null pointer that tells of no more.
    EXPECT_EQ(taken.size(), keepsArrays ? 4U : 1U);
    delete[] static_cast<int*>(last);
    for (void* array : taken) {
        delete[] static_cast<int*>(array);
    }
}

TEST_F(ArrayReserve, IsFreedOnDemand)
{
    constexpr unsigned long long count = 32 * mebibyte;
    RTE::deleteArray(RTE::newArray<bool>(count), count);
    RTE::freeReserve();
    EXPECT_EQ(RTE::takeReserve(count), nullptr);
}

TEST_F(ArrayReserve, ThreadsNeverShareAnArray)
{
    constexpr unsigned long long count = 4 * mebibyte;
    std::vector<std::thread> threads;
    std::vector<int> collisions(4, 0);
    for (int number = 0; number < 4; ++number) {
        threads.emplace_back([number, &collisions] {
            for (int round = 0; round < 200; ++round) {
                const unsigned long long size = count + static_cast<unsigned long long>(round % 3);
                int* const array = RTE::newArray<int>(size);
                const int mark = 1000 * number + round;
                const auto marked = {0ULL, size / 2, size - 1};
                for (const auto index : marked) {
                    array[index] = mark;
                }
                std::this_thread::yield();
                collisions[static_cast<std::size_t>(number)] += static_cast<int>(std::count_if(
                    marked.begin(), marked.end(), [&](auto index) { return array[index] != mark; }));
                RTE::deleteArray(array, size);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(collisions, std::vector<int>(4, 0));
}

} // namespace
