// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/Point.h"
#include "Core/Common/Size.h"
#include "Core/DataObjects/Export.h"

namespace DataObjects
{

/// Says for each pixel of a plane whether the value there is valid: one byte per pixel, `true` means valid.
///
/// Row-major, x fastest, no gap between rows: pixel (x, y) is element y × width + x. A mask owns its pixels
/// (an array of RTE::newArray) or is a view of foreign memory, such as the mask plane of a frame, which must
/// then outlive it; HasOwnerShip() tells which. In foreign memory every byte but 0 counts as valid.
///
/// For one thread at a time; reading from several is safe. Sizes are checked, positions are not:
/// IsValidPosition() is the check. All failures are RTE::VerificationFailed and leave the mask as it was.
/// \code
/// Mask mask(width, height, true);
/// mask.SetValid(x, y, false);
/// mask &= otherMask;
/// if (!AllValuesValid(mask)) { … }
/// \endcode
class DATAOBJECTS_DATAOBJECTS_EXPORT Mask
{
public:
    using value_type = bool;
    using iterator = bool*;
    using const_iterator = const bool*;

    /// \name Construction
    /// @{
    /// Owns its pixels, which are uninitialised. \throws std::bad_alloc
    explicit Mask(const Math::Size2T<unsigned int>& size);
    Mask(unsigned int width, unsigned int height);
    /// Owns its pixels, each of them `value`. \throws std::bad_alloc
    Mask(const Math::Size2T<unsigned int>& size, bool value);
    Mask(unsigned int width, unsigned int height, bool value);
    /// Wraps an array of width × height pixels: as a view, or with `takeOwnership` to free it with
    /// `delete[]`. \throws RTE::VerificationFailed "data-pointer is null"
    Mask(bool* data, const Math::Size2T<unsigned int>& size, bool takeOwnership);
    Mask(bool* data, unsigned int width, unsigned int height, bool takeOwnership);
    /// A deep copy that owns its pixels, also of a view; of a mask that gave its pixels up, it has none.
    Mask(const Mask& other);
    /// Takes pixels, size and ownership; `other` keeps size 0 × 0, no pixels, and ownership.
    Mask(Mask&& other) noexcept;
    virtual ~Mask();
    /// @}

    /// \name Assignment
    /// @{
    /// Copies the pixels into the storage that is there, so that a view writes to the foreign memory.
    ///
    /// Nothing happens on itself and where one side has no pixels.
    /// \throws RTE::VerificationFailed "Source and destination have different sizes."
    Mask& operator=(const Mask& other);
    /// An owner takes pixels, size and ownership, and `other` is left as after a move construction.
    ///
    /// A view copies instead, and `other` stays as it was: into the foreign memory when the sizes are equal,
    /// else into new pixels of its own, which leaves the foreign memory alone. \throws std::bad_alloc
    Mask& operator=(Mask&& other);
    /// @}

    /// \name Size and memory
    /// @{
    [[nodiscard]] unsigned int GetWidth() const noexcept { return m_size.width; }
    [[nodiscard]] unsigned int GetHeight() const noexcept { return m_size.height; }
    [[nodiscard]] Math::Size2T<unsigned int> GetSize() const noexcept { return m_size; }
    /// Number of pixels, which is also the number of bytes.
    [[nodiscard]] unsigned long long size() const noexcept
    {
        return static_cast<unsigned long long>(m_size.width) * m_size.height;
    }
    [[nodiscard]] unsigned long long GetRawSize() const noexcept { return size(); }
    /// True when the mask frees its pixels.
    [[nodiscard]] bool HasOwnerShip() const noexcept { return m_hasOwnership; }
    /// Null once the pixels were given up.
    [[nodiscard]] const bool* GetRawPointer() const noexcept { return m_pixels; }
    [[nodiscard]] bool* GetRawPointer() noexcept { return m_pixels; }
    /// Hands the pixels over to the caller, who frees them with `delete[]`; the size stays. A view gives null
    /// and stays as it is.
    [[nodiscard]] bool* ReleaseRawPointer() noexcept;
    /// @}

    /// \name Pixels
    /// Not checked against the size.
    /// @{
    [[nodiscard]] bool operator()(unsigned int x, unsigned int y) const noexcept { return IsValid(x, y); }
    [[nodiscard]] bool& operator()(unsigned int x, unsigned int y) noexcept { return m_pixels[index(x, y)]; }
    [[nodiscard]] bool operator()(const Math::Point2T<unsigned int>& position) const noexcept
    {
        return IsValid(position.x, position.y);
    }
    [[nodiscard]] bool& operator()(const Math::Point2T<unsigned int>& position) noexcept
    {
        return (*this)(position.x, position.y);
    }
    [[nodiscard]] bool IsValid(unsigned int x, unsigned int y) const noexcept
    {
        // As a byte: foreign memory holds other values than the two that a bool may have.
        return reinterpret_cast<const unsigned char*>(m_pixels)[index(x, y)] != 0;
    }
    [[nodiscard]] bool IsValid(const Math::Point2T<unsigned int>& position) const noexcept
    {
        return IsValid(position.x, position.y);
    }
    void SetValid(unsigned int x, unsigned int y, bool valid) noexcept { m_pixels[index(x, y)] = valid; }
    void SetValid(const Math::Point2T<unsigned int>& position, bool valid) noexcept
    {
        SetValid(position.x, position.y, valid);
    }
    /// True when the position lies within the mask.
    [[nodiscard]] bool IsValidPosition(unsigned int x, unsigned int y) const noexcept
    {
        return x < m_size.width && y < m_size.height;
    }
    [[nodiscard]] bool IsValidPosition(const Math::Point2T<unsigned int>& position) const noexcept
    {
        return IsValidPosition(position.x, position.y);
    }
    [[nodiscard]] const_iterator begin() const noexcept { return m_pixels; }
    [[nodiscard]] const_iterator end() const noexcept { return m_pixels + storedCount(); }
    [[nodiscard]] iterator begin() noexcept { return m_pixels; }
    [[nodiscard]] iterator end() noexcept { return m_pixels + storedCount(); }
    /// @}

    /// \name Whole masks
    /// Pixel by pixel into this mask; every byte but 0 counts as `true`, and the result is written as 0 or 1.
    /// Views that overlap are combined byte by byte in ascending order.
    /// \throws RTE::VerificationFailed "Other mask has wrong size."
    /// @{
    Mask& operator&=(const Mask& other);
    Mask& operator|=(const Mask& other);
    Mask& operator^=(const Mask& other);
    /// Sets every pixel.
    void Fill(bool value) noexcept;
    /// @}

private:
    [[nodiscard]] unsigned long long index(unsigned int x, unsigned int y) const noexcept
    {
        return static_cast<unsigned long long>(y) * m_size.width + x;
    }
    [[nodiscard]] unsigned long long storedCount() const noexcept { return m_pixels == nullptr ? 0 : size(); }
    void takeFrom(Mask& other) noexcept;

    bool m_hasOwnership;
    Math::Size2T<unsigned int> m_size;
    bool* m_pixels;
};

/// True when no pixel is false, so also for a mask without pixels; stops at the first false one.
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT bool AllValuesValid(const Mask& mask) noexcept;

} // namespace DataObjects
