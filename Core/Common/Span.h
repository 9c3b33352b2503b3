// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

namespace Zt
{

/// A pointer and an element count; owns nothing.
///
/// Unlike `std::span` it is made from a null pointer with any count, which the frame decoders check for.
template <typename T>
class span
{
public:
    constexpr span() noexcept = default;
    constexpr span(T* data, std::size_t size) noexcept : m_data(data), m_size(size) {}

    [[nodiscard]] constexpr T* data() const noexcept { return m_data; }
    [[nodiscard]] constexpr std::size_t size() const noexcept { return m_size; }
    [[nodiscard]] constexpr bool empty() const noexcept { return m_size == 0; }
    [[nodiscard]] constexpr T* begin() const noexcept { return m_data; }
    [[nodiscard]] constexpr T* end() const noexcept { return m_data + m_size; }
    [[nodiscard]] constexpr T& operator[](std::size_t index) const noexcept { return m_data[index]; }

private:
    T* m_data = nullptr;
    std::size_t m_size = 0;
};

} // namespace Zt
