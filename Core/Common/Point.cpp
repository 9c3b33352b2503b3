// SPDX-License-Identifier: Apache-2.0
#include "Core/Common/Point.h"

#include <array>
#include <charconv>
#include <ostream>
#include <string_view>

namespace Math
{

namespace
{

void write(std::ostream& stream, float value)
{
    std::array<char, 32> text{};
    const auto result = std::to_chars(text.data(), text.data() + text.size(), value);
    stream << std::string_view(text.data(), static_cast<std::size_t>(result.ptr - text.data()));
}

} // namespace

std::ostream& operator<<(std::ostream& stream, const Point3T<float>& point)
{
    stream << '(';
    write(stream, point.x);
    stream << ", ";
    write(stream, point.y);
    stream << ", ";
    write(stream, point.z);
    return stream << ')';
}

} // namespace Math
