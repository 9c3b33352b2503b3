// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/Hdf5OldMessages.h"

#include "Core/Buffer/Formats/Hdf5GlobalHeap.h"

namespace BufferApi::Hdf5
{

namespace
{

unsigned long long elementBytes(Cursor& type, int depth);

/// The members of a compound: names, places, in the first version also dimensions, and types.
void readMembers(Cursor& type, unsigned int count, unsigned int version, unsigned long long size, int depth)
{
    constexpr unsigned long long dimensionBytes = 28;
    unsigned long long placeBytes = 1;
    while (version >= 3 && placeBytes < 4 && size >> (8 * placeBytes) != 0) {
        ++placeBytes;
    }
    type.require(count > 0);
    for (unsigned int i = 0; i < count; ++i) {
        type.text(version < 3);
        type.skip(version < 3 ? 4 : placeBytes);
        type.skip(version == 1 ? dimensionBytes : 0);
        elementBytes(type, depth);
    }
}

/// The values of an enumeration: their names, then the numbers.
void readValues(Cursor& type, unsigned int count, unsigned int version, int depth)
{
    const unsigned long long bytes = elementBytes(type, depth);
    for (unsigned int i = 0; i < count; ++i) {
        type.text(version < 3);
    }
    type.skip(bytes * count);
}

/// \returns the bytes of an element
unsigned long long elementBytes(Cursor& type, int depth)
{
    constexpr int deepest = 16;
    type.require(depth < deepest);
    const auto bits = type.number<unsigned int>();
    const auto size = type.number<unsigned int>();
    const unsigned int version = bits >> 4U & 0xfU;
    const unsigned int count = bits >> 8U & 0xffffU;
    switch (bits & 0xfU) {
    case H5T_INTEGER:
    case H5T_BITFIELD:
        type.skip(4);
        break;
    case H5T_FLOAT:
        type.skip(12);
        break;
    case H5T_TIME:
        type.skip(2);
        break;
    case H5T_OPAQUE:
        type.skip(count & 0xffU);
        break;
    case H5T_COMPOUND:
        readMembers(type, count, version, size, depth + 1);
        break;
    case H5T_ENUM:
        readValues(type, count, version, depth + 1);
        break;
    case H5T_VLEN:
        elementBytes(type, depth + 1);
        // The library takes it for a reference, whatever the type says.
        return std::max<unsigned long long>(size, variableTextBytes);
    case H5T_ARRAY: {
        const auto rank = type.number<unsigned char>();
        type.skip(version < 3 ? 3 + 8ULL * rank : 4ULL * rank);
        elementBytes(type, depth + 1);
        break;
    }
    default:
        break;
    }
    return size;
}

unsigned long long elementCount(Cursor& space)
{
    constexpr unsigned char null = 2;
    const auto version = space.number<unsigned char>();
    const auto rank = space.number<unsigned char>();
    space.skip(1);
    if (space.number<unsigned char>() == null && version > 1) {
        return 0;
    }
    space.skip(version > 1 ? 0 : 4);
    Extents extents(rank);
    std::generate(extents.begin(), extents.end(), [&] { return space.number<unsigned long long>(); });
    return std::find(extents.begin(), extents.end(), 0) == extents.end() ? saturatingProduct(extents, 1) : 0;
}

} // namespace

unsigned long long checkType(Cursor& type)
{
    return elementBytes(type, 0);
}

void addShared(Cursor& message, SharedMessages& shared)
{
    constexpr unsigned char inHeap = 1;
    const auto version = message.number<unsigned char>();
    const auto kind = message.number<unsigned char>();
    if (version > 1 && kind == inHeap) {
        shared.areInHeap = true;
        return;
    }
    message.skip(version == 1 ? 14 : 0);
    shared.headers.push_back(message.number<unsigned long long>());
}

void checkAttribute(Cursor& attribute, SharedMessages& shared)
{
    const auto version = attribute.number<unsigned char>();
    const auto flags = attribute.number<unsigned char>();
    const auto bytesOfName = attribute.number<unsigned short>();
    const auto bytesOfType = attribute.number<unsigned short>();
    const auto bytesOfSpace = attribute.number<unsigned short>();
    attribute.skip(version > 2 ? 1 : 0);
    const bool isPadded = version == 1;
    attribute.part(bytesOfName, isPadded).text(false);
    Cursor type = attribute.part(bytesOfType, isPadded);
    Cursor space = attribute.part(bytesOfSpace, isPadded);
    // Type and space may stand elsewhere instead.
    const bool isTypeShared = !isPadded && (flags & 1U) != 0;
    const bool isSpaceShared = !isPadded && (flags & 2U) != 0;
    if (isTypeShared) {
        addShared(type, shared);
    }
    if (isSpaceShared) {
        addShared(space, shared);
    }
    const unsigned long long bytes = isTypeShared ? 0 : elementBytes(type, 0);
    const unsigned long long count = isSpaceShared ? 0 : elementCount(space);
    attribute.require(saturatingProduct({bytes}, count) <= attribute.left());
}

unsigned int readRank(Cursor& space)
{
    space.skip(1);
    return space.number<unsigned char>();
}

std::optional<ChunkShape> readChunkShape(Cursor& layout)
{
    constexpr unsigned char chunked = 2;
    const auto version = layout.number<unsigned char>();
    const auto second = layout.number<unsigned char>();
    const auto third = layout.number<unsigned char>();
    if ((version < 3 ? third : second) != chunked) {
        return {};
    }
    // The third number is the rank, or flags before it.
    const unsigned int rank = version < 3 ? second : version == 3 ? third : layout.number<unsigned char>();
    const unsigned int bytes = version < 4 ? 4 : layout.number<unsigned char>();
    layout.skip(version < 3 ? 5 + 8 : version == 3 ? 8 : 0);
    ChunkShape shape{rank, 0};
    for (unsigned int i = 0; i < rank; ++i) {
        const auto extent = layout.bytes(bytes);
        // The library divides by it.
        layout.require(std::any_of(extent.begin(), extent.end(), [](auto byte) { return byte != 0; }));
        shape.elementBytes = 0;
        std::memcpy(&shape.elementBytes, extent.data(), std::min(extent.size(), sizeof(shape.elementBytes)));
    }
    return shape;
}

} // namespace BufferApi::Hdf5
