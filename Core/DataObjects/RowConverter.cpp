// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/RowConverter.h"

#include "Core/DataObjects/PixelRules.h"

#include <array>

namespace DataObjects::Private
{

namespace
{

constexpr int slots = 8;
using Row = std::array<RowConverter, slots>;

template <typename From, typename To>
void convert(const void* source, void* destination, std::size_t count)
{
    const auto* from = static_cast<const From*>(source);
    auto* to = static_cast<To*>(destination);
    for (std::size_t i = 0; i < count; ++i) {
        to[i] = convertPixel<To>(from[i]);
    }
}

template <typename From>
constexpr Row convertersFrom()
{
    Row row{};
#define DATAOBJECTS_ENTRY(type, number, name) row[number] = convert<From, type>;
    DATAOBJECTS_PIXEL_TYPES(DATAOBJECTS_ENTRY)
#undef DATAOBJECTS_ENTRY
    return row;
}

constexpr std::array<Row, slots> allConverters()
{
    std::array<Row, slots> table{};
#define DATAOBJECTS_ENTRY(type, number, name) table[number] = convertersFrom<type>();
    DATAOBJECTS_PIXEL_TYPES(DATAOBJECTS_ENTRY)
#undef DATAOBJECTS_ENTRY
    return table;
}

} // namespace

RowConverter rowConverter(E_DataType from, E_DataType to) noexcept
{
    static constexpr auto table = allConverters();
    const auto known = [](E_DataType type) { return PixelTypes::contains(static_cast<int>(type)); };
    if (!known(from) || !known(to)) {
        return nullptr;
    }
    return table[static_cast<std::size_t>(from)][static_cast<std::size_t>(to)];
}

} // namespace DataObjects::Private
