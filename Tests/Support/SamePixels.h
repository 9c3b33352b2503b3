// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>

#include <concepts>
#include <cstring>
#include <span>
#include <utility>

namespace TestSupport
{

/// Equal bit for bit, so that 0.0 differs from -0.0; any NaN equals any other.
template <typename T>
[[nodiscard]] bool samePixel(T first, T second)
{
    if constexpr (std::floating_point<T>) {
        return (first != first && second != second) || std::memcmp(&first, &second, sizeof(T)) == 0;
    } else {
        return first == second;
    }
}

/// EXPECT_TRUE(samePixels(actual, expected)): names the first pixel that differs.
template <typename T>
[[nodiscard]] testing::AssertionResult samePixels(std::span<const T> actual, std::span<const T> expected)
{
    if (actual.size() != expected.size()) {
        return testing::AssertionFailure() << actual.size() << " pixels instead of " << expected.size();
    }
    for (std::size_t i = 0; i < actual.size(); ++i) {
        if (!samePixel(actual[i], expected[i])) {
            return testing::AssertionFailure()
                   << "pixel " << i << " of " << actual.size() << " is " << testing::PrintToString(actual[i])
                   << " instead of " << testing::PrintToString(expected[i]);
        }
    }
    return testing::AssertionSuccess();
}

/// The same of whatever has begin() and size(): images, masks, vectors.
template <typename Actual, typename Expected>
[[nodiscard]] testing::AssertionResult samePixels(const Actual& actual, const Expected& expected)
{
    return samePixels(std::span(std::as_const(actual).begin(), static_cast<std::size_t>(actual.size())),
                      std::span(std::as_const(expected).begin(), static_cast<std::size_t>(expected.size())));
}

} // namespace TestSupport
