// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/MemoryBlock.h"
#include "Core/Common/PixelTypes.h"
#include "Core/Common/Point.h"
#include "Core/Common/Raise.h"
#include "Core/DataObjects/ImageDataVariant.h"

#include <memory>
#include <utility>

namespace DataObjects
{

/// A plane of pixels with an explicit notion of who owns them; exists for the six element types.
///
/// Row-major, x fastest, no gap between rows: pixel (x, y) is element y × width + x. The pixels are in one of
/// three places:
/// - an own array (HasOwnerShip() is true), made by the object or adopted from a caller, freed with
///   `delete[]`;
/// - a foreign array that the object views and that has to outlive it;
/// - an RTE::MemoryBlock that the object holds, and releases and destroys at its end.
///
/// Assignment writes into the pixels that are there: a view stays a view of its memory as long as sizes
/// allow. An assignment that raises leaves the object as it was. Access to single pixels is unchecked. After
/// ReleaseRawPointer() the object keeps its size without pixels: what passes over all of them raises
/// RTE::VerificationFailed "data-pointer is null". Not synchronised: reading from several threads is safe,
/// writing needs outside exclusion.
///
/// \code
/// ImageData<unsigned short> words(1280, 1024, 0);
/// words(3, 4) = 512;
/// words *= 1.5;
/// ImageData<float> floats(words.GetSize());
/// floats.Assign(words);
/// \endcode
template <typename T>
class DATAOBJECTS_DATAOBJECTS_EXPORT ImageData : public ImageDataVariant
{
public:
    /// \name Construction
    /// \{

    /// Allocates an own array; the pixels are uninitialised.
    /// \throws std::bad_alloc, also when the size in bytes overflows
    explicit ImageData(const Math::Size2T<unsigned int>& size);
    ImageData(unsigned int width, unsigned int height);
    /// Allocates an own array and fills it with `value`.
    /// \throws std::bad_alloc, also when the size in bytes overflows
    ImageData(const Math::Size2T<unsigned int>& size, T value);
    ImageData(unsigned int width, unsigned int height, T value);
    /// Wraps `data` without a copy; with `hasOwnerShip` the object frees it with `delete[]`.
    /// \throws RTE::VerificationFailed "data-pointer is null"
    ImageData(T* data, const Math::Size2T<unsigned int>& size, bool hasOwnerShip);
    ImageData(T* data, unsigned int width, unsigned int height, bool hasOwnerShip);
    /// Takes a block that holds at least width × height pixels; does not count as ownership.
    /// \throws RTE::VerificationFailed "data-pointer is null"
    ImageData(std::unique_ptr<RTE::MemoryBlock> block, unsigned int width, unsigned int height);
    /// The same, with the pixels filled with `value`.
    ImageData(std::unique_ptr<RTE::MemoryBlock> block, unsigned int width, unsigned int height, T value);
    /// Copies all pixels into a new own array, whoever owns those of `other`.
    /// \throws RTE::VerificationFailed "data-pointer is null" when `other` released its pixels
    ImageData(const ImageData& other);
    /// Takes the pixels; `other` keeps size (0, 0), no pixels, and the ownership flag set.
    ///
    /// A memory block stays with `other`, which then has to live as long as the pixels are used.
    ImageData(ImageData&& other) noexcept;
    ~ImageData() override;
    /// \}

    /// \name Assignment
    /// \{

    /// Copies the pixels; never resizes.
    /// \throws RTE::VerificationFailed "Source and destination have different sizes."
    ImageData& operator=(const ImageData& other);
    /// An owner frees its array and takes over what `other` holds, as the move constructor does; of a view of
    /// its own pixels it takes a copy. From any other view it becomes a view.
    ///
    /// An object that does not own its pixels copies: into them when the sizes are equal, otherwise into a
    /// new own array of the size of `other`, forgetting the pixels it viewed. `other` is then left as it was.
    ImageData& operator=(ImageData&& other);
    /// The same as move assignment.
    void MoveFrom(ImageData&& other) { *this = std::move(other); }
    /// Sets every pixel to `value`.
    ImageData& operator=(T value);
    void Fill(T value);
    /// Copies the pixels of an object of any type, converted with saturation.
    ///
    /// Integers are clamped; `float` and `double` are clamped and truncated toward zero, NaN becomes 0; a
    /// `double` too large for `float` becomes the largest finite one. Only from `unsigned int` to `int` the
    /// bits are kept, except that 0xFFFFFFFF becomes 0x7FFFFFFF.
    /// \throws RTE::Exception "Unsupported image data type" unless the source has one of the six types
    /// \throws RTE::VerificationFailed "Source and destination have different sizes."
    void Assign(const ImageDataVariant& source) override;
    /// \}

    /// \name Queries
    /// \{
    [[nodiscard]] const Math::Size2T<unsigned int>& GetSize() const noexcept final { return m_size; }
    [[nodiscard]] unsigned int GetWidth() const noexcept final
    {
        return static_cast<unsigned int>(m_rowLength);
    }
    [[nodiscard]] unsigned int GetHeight() const noexcept final { return m_size.height; }
    [[nodiscard]] bool HasOwnerShip() const noexcept final { return m_hasOwnerShip; }
    [[nodiscard]] E_DataType GetDataType() const noexcept override;
    [[nodiscard]] std::unique_ptr<ImageDataVariant> CreateCopy() const override;
    /// Number of pixels.
    [[nodiscard]] unsigned long long size() const noexcept { return m_rowLength * m_size.height; }
    /// Number of pixels too, not of bytes.
    [[nodiscard]] unsigned long long GetRawSize() const noexcept { return size(); }
    [[nodiscard]] bool empty() const noexcept { return size() == 0; }
    [[nodiscard]] bool IsValidPosition(unsigned int x, unsigned int y) const noexcept
    {
        return x < m_size.width && y < m_size.height;
    }
    [[nodiscard]] bool IsValidPosition(const Math::Point2T<unsigned int>& point) const noexcept
    {
        return IsValidPosition(point.x, point.y);
    }
    /// \}

    /// \name Pixels, unchecked
    /// \{
    [[nodiscard]] T& operator[](unsigned long long index) noexcept { return m_data[index]; }
    [[nodiscard]] const T& operator[](unsigned long long index) const noexcept { return m_data[index]; }
    [[nodiscard]] T& operator[](const Math::Point2T<unsigned int>& point) noexcept
    {
        return m_data[GetArrayOffset(point)];
    }
    [[nodiscard]] T operator[](const Math::Point2T<unsigned int>& point) const noexcept
    {
        return m_data[GetArrayOffset(point)];
    }
    [[nodiscard]] T& operator()(unsigned int x, unsigned int y) noexcept
    {
        return m_data[GetArrayOffset(x, y)];
    }
    [[nodiscard]] T operator()(unsigned int x, unsigned int y) const noexcept
    {
        return m_data[GetArrayOffset(x, y)];
    }
    [[nodiscard]] T& operator()(const Math::Point2T<unsigned int>& point) noexcept { return (*this)[point]; }
    [[nodiscard]] T operator()(const Math::Point2T<unsigned int>& point) const noexcept
    {
        return (*this)[point];
    }
    [[nodiscard]] T GetPixel(unsigned int x, unsigned int y) const noexcept { return (*this)(x, y); }
    [[nodiscard]] T GetPixel(const Math::Point2T<unsigned int>& point) const noexcept
    {
        return (*this)[point];
    }
    void SetPixel(unsigned int x, unsigned int y, T value) noexcept { (*this)(x, y) = value; }
    void SetPixel(const Math::Point2T<unsigned int>& point, T value) noexcept { (*this)[point] = value; }

    [[nodiscard]] T* begin() noexcept { return m_data; }
    [[nodiscard]] const T* begin() const noexcept { return m_data; }
    [[nodiscard]] T* end() noexcept { return m_data + size(); }
    [[nodiscard]] const T* end() const noexcept { return m_data + size(); }
    [[nodiscard]] T* GetRawPointer() noexcept { return m_data; }
    [[nodiscard]] const T* GetRawPointer() const noexcept { return m_data; }
    /// Hands an own array over to the caller, who frees it with `delete[]`; size and ownership flag stay.
    ///
    /// Null, with no change, when the object does not own its pixels.
    [[nodiscard]] T* ReleaseRawPointer() noexcept;
    /// \}

    /// \name Arithmetic
    ///
    /// Integers are computed in `double`, clamped to the range of T and truncated; `unsigned short` alone is
    /// rounded half up by `*=` and `/=`, and only by those. `float` is computed in `float` with the operand
    /// rounded first, except for `/=`, which divides in `double`.
    /// Division by 0 of either sign gives the largest finite value of T for every pixel but 0, which stays.
    /// A result that is NaN becomes 0 in unsigned types and the lowest `int`.
    /// \{
    ImageData& operator*=(double operand);
    ImageData& operator+=(double operand);
    ImageData& operator-=(double operand);
    ImageData& operator/=(double operand);
    [[nodiscard]] ImageData operator*(double operand) const;
    [[nodiscard]] ImageData operator+(double operand) const;
    [[nodiscard]] ImageData operator-(double operand) const;
    [[nodiscard]] ImageData operator/(double operand) const;
    /// Divides pixel by pixel; integers are truncated and clamped, `unsigned short` too is not rounded.
    ///
    /// Where the divisor is 0, a pixel above 0 becomes the largest value of T and any other becomes 0; in
    /// `float` and `double` every pixel but 0 becomes the largest finite value, NaN included.
    /// \throws RTE::VerificationFailed "Mismatching image sizes"
    ImageData& operator/=(const ImageData& divisor);
    /// \}

private:
    struct ReleaseAndDelete
    {
        void operator()(RTE::MemoryBlock* block) const;
    };

    [[nodiscard]] unsigned long long GetArrayOffset(unsigned int x, unsigned int y) const noexcept
    {
        return y * m_rowLength + x;
    }
    [[nodiscard]] unsigned long long GetArrayOffset(const Math::Point2T<unsigned int>& point) const noexcept
    {
        return GetArrayOffset(point.x, point.y);
    }
    [[nodiscard]] bool isSeenBy(const ImageData& other) const noexcept;
    void stealFrom(ImageData& other) noexcept;
    void copyPixels(const T* source) noexcept;

    bool m_hasOwnerShip;
    Math::Size2T<unsigned int> m_size;
    // The width as a type that no pixel has: a loop that writes `int` pixels would otherwise have to read it
    // again after each of them.
    unsigned long long m_rowLength;
    T* m_data;
    std::unique_ptr<RTE::MemoryBlock, ReleaseAndDelete> m_memoryBlock;
};

/// \name Checked down-cast
/// \throws RTE::VerificationFailed "bad image data cast" when the object holds another type
/// \{
template <typename T>
[[nodiscard]] const ImageData<T>& CastImageDataTo(const ImageDataVariant& data)
{
    RTE::verify(data.GetDataType() == E_DataType(PixelTypes::number<T>), "bad image data cast");
    return static_cast<const ImageData<T>&>(data);
}

template <typename T>
[[nodiscard]] ImageData<T>& CastImageDataTo(ImageDataVariant& data)
{
    return const_cast<ImageData<T>&>(CastImageDataTo<T>(std::as_const(data)));
}

template <typename T>
[[nodiscard]] ImageData<T>&& CastImageDataTo(ImageDataVariant&& data)
{
    return std::move(CastImageDataTo<T>(data));
}
/// \}

/// An own ImageData<T> of the size of `source`: with its pixels, converted as ImageData::Assign does, or with
/// uninitialised ones.
template <typename T>
[[nodiscard]] ImageData<T> CreateImageDataOfType(const ImageDataVariant& source, bool copyPixels)
{
    ImageData<T> data(source.GetSize());
    if (copyPixels) {
        data.Assign(source);
    }
    return data;
}

#define DATAOBJECTS_EXTERN_IMAGE_DATA(type, number, name) extern template class ImageData<type>;
DATAOBJECTS_PIXEL_TYPES(DATAOBJECTS_EXTERN_IMAGE_DATA)
#undef DATAOBJECTS_EXTERN_IMAGE_DATA

} // namespace DataObjects
