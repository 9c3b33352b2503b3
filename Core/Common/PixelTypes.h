// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/Raise.h"

#include <utility>

/// The element types of raster data with their number in every enumeration and file: X(type, number, name).
#define DATAOBJECTS_PIXEL_TYPES(X)                                                                           \
    X(unsigned char, 1, Byte)                                                                                \
    X(double, 3, Double)                                                                                     \
    X(float, 4, Float)                                                                                       \
    X(int, 5, Int32)                                                                                         \
    X(unsigned int, 6, UInt32)                                                                               \
    X(unsigned short, 7, Word)

/// Everything that follows from the list of element types; no other place switches over them.
namespace PixelTypes
{

/// Names a type to a generic lambda, which takes it back with `decltype`.
template <typename T>
struct Tag
{
    using type = T;
};

/// The number of an element type; 0 for any other type.
template <typename T>
inline constexpr int number = 0;

#define DATAOBJECTS_NUMBER(type, value, name)                                                                \
    template <>                                                                                              \
    inline constexpr int number<type> = value;
DATAOBJECTS_PIXEL_TYPES(DATAOBJECTS_NUMBER)
#undef DATAOBJECTS_NUMBER

/// True for the number of one of the element types.
[[nodiscard]] constexpr bool contains(int value) noexcept
{
#define DATAOBJECTS_EQUALS(type, typeNumber, name) value == (typeNumber) ||
    return DATAOBJECTS_PIXEL_TYPES(DATAOBJECTS_EQUALS) false;
#undef DATAOBJECTS_EQUALS
}

/// Calls `visitor` with the Tag of the type that has this number; dispatch once per object, never per pixel.
///
/// For any other number raises the exception that `unsupported` returns.
template <typename Visitor, typename Unsupported>
decltype(auto) visit(int value, Visitor&& visitor, Unsupported&& unsupported,
                     RTE::SourceLocation location = RTE::SourceLocation::current())
{
    switch (value) {
#define DATAOBJECTS_CASE(type, typeNumber, name)                                                             \
    case typeNumber:                                                                                         \
        return std::forward<Visitor>(visitor)(Tag<type>{});
        DATAOBJECTS_PIXEL_TYPES(DATAOBJECTS_CASE)
#undef DATAOBJECTS_CASE
    default:
        RTE::raise(std::forward<Unsupported>(unsupported)(), location);
    }
}

} // namespace PixelTypes
