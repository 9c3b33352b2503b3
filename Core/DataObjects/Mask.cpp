// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/Mask.h"

#include "Core/Common/Array.h"
#include "Core/Common/Raise.h"
#include "Core/Common/TargetClones.h"
#include "Core/DataObjects/PixelArithmetic.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <utility>

namespace DataObjects
{

static_assert(sizeof(bool) == 1, "a mask and a plane of bytes are the same memory");

namespace
{

using Byte = unsigned char;

// The loops promise nothing about overlap: the compiler takes whole vectors for separate arrays only, and
// overlapping ones keep the order of the loop.

DATAOBJECTS_TARGET_CLONES void combineByAnd(Byte* target, const Byte* other, unsigned long long count)
{
    for (unsigned long long i = 0; i < count; ++i) {
        target[i] = target[i] != 0 && other[i] != 0;
    }
}

DATAOBJECTS_TARGET_CLONES void combineByOr(Byte* target, const Byte* other, unsigned long long count)
{
    for (unsigned long long i = 0; i < count; ++i) {
        target[i] = (target[i] | other[i]) != 0;
    }
}

DATAOBJECTS_TARGET_CLONES void combineByXor(Byte* target, const Byte* other, unsigned long long count)
{
    for (unsigned long long i = 0; i < count; ++i) {
        target[i] = (target[i] != 0) != (other[i] != 0);
    }
}

template <typename Combine>
void combine(Mask& target, const Mask& other, Combine combineBytes,
             RTE::SourceLocation location = RTE::SourceLocation::current())
{
    RTE::verify(target.GetSize() == other.GetSize(), "Other mask has wrong size.", location);
    if (target.GetRawPointer() == nullptr || other.GetRawPointer() == nullptr) {
        return;
    }
    auto* const to = reinterpret_cast<Byte*>(target.GetRawPointer());
    const auto* const from = reinterpret_cast<const Byte*>(other.GetRawPointer());
    // Vectors stored across cache lines cost half of the speed while the masks are in the cache.
    const unsigned long long head =
        std::min<unsigned long long>(-reinterpret_cast<std::uintptr_t>(to) % 64, target.size());
    combineBytes(to, from, head);
    combineBytes(to + head, from + head, target.size() - head);
}

} // namespace

Mask::Mask(const Math::Size2T<unsigned int>& size)
    : m_hasOwnership(true), m_size(size), m_pixels(RTE::newArray<bool>(this->size()))
{
}

Mask::Mask(unsigned int width, unsigned int height) : Mask(Math::Size2T<unsigned int>(width, height)) {}

Mask::Mask(const Math::Size2T<unsigned int>& size, bool value) : Mask(size)
{
    Fill(value);
}

Mask::Mask(unsigned int width, unsigned int height, bool value)
    : Mask(Math::Size2T<unsigned int>(width, height), value)
{
}

Mask::Mask(bool* data, const Math::Size2T<unsigned int>& size, bool takeOwnership)
    : m_hasOwnership(takeOwnership), m_size(size), m_pixels(data)
{
    RTE::verify(data != nullptr, "data-pointer is null");
}

Mask::Mask(bool* data, unsigned int width, unsigned int height, bool takeOwnership)
    : Mask(data, Math::Size2T<unsigned int>(width, height), takeOwnership)
{
}

Mask::Mask(const Mask& other) : m_hasOwnership(true), m_size(other.m_size), m_pixels(nullptr)
{
    if (other.m_pixels != nullptr) {
        m_pixels = RTE::newArray<bool>(size());
        std::copy_n(other.m_pixels, size(), m_pixels);
    }
}

Mask::Mask(Mask&& other) noexcept : m_hasOwnership(true), m_pixels(nullptr)
{
    takeFrom(other);
}

Mask::~Mask()
{
    if (m_hasOwnership) {
        RTE::deleteArray(m_pixels, size());
    }
}

Mask& Mask::operator=(const Mask& other)
{
    if (this == &other) {
        return *this;
    }
    RTE::verify(m_size == other.m_size, "Source and destination have different sizes.");
    if (m_pixels != nullptr) {
        std::copy_n(other.m_pixels, other.storedCount(), m_pixels);
    }
    return *this;
}

Mask& Mask::operator=(Mask&& other)
{
    if (this == &other) {
        return *this;
    }
    if (m_hasOwnership) {
        takeFrom(other);
    } else if (m_size == other.m_size) {
        *this = std::as_const(other);
    } else {
        Mask copy(std::as_const(other));
        takeFrom(copy);
    }
    return *this;
}

bool* Mask::ReleaseRawPointer() noexcept
{
    return m_hasOwnership ? std::exchange(m_pixels, nullptr) : nullptr;
}

Mask& Mask::operator&=(const Mask& other)
{
    combine(*this, other, combineByAnd);
    return *this;
}

Mask& Mask::operator|=(const Mask& other)
{
    combine(*this, other, combineByOr);
    return *this;
}

Mask& Mask::operator^=(const Mask& other)
{
    combine(*this, other, combineByXor);
    return *this;
}

void Mask::Fill(bool value) noexcept
{
    Private::fill(reinterpret_cast<Byte*>(m_pixels), storedCount(), static_cast<Byte>(value));
}

void Mask::takeFrom(Mask& other) noexcept
{
    if (m_hasOwnership) {
        RTE::deleteArray(m_pixels, size());
    }
    m_hasOwnership = std::exchange(other.m_hasOwnership, true);
    m_size = std::exchange(other.m_size, {});
    m_pixels = std::exchange(other.m_pixels, nullptr);
}

bool AllValuesValid(const Mask& mask) noexcept
{
    return mask.begin() == mask.end() || std::memchr(mask.begin(), 0, mask.size()) == nullptr;
}

} // namespace DataObjects
