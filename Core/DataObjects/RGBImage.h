// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/DataType.h"
#include "Core/Common/Array.h"
#include "Core/Common/LinearScale.h"
#include "Core/DataObjects/AttributesContainer.h"
#include "Core/DataObjects/Image.h"
#include "Core/DataObjects/Rgb16.h"
#include "Core/DataObjects/ScalarFields.h"

#include <atomic>
#include <vector>

namespace DataObjects
{

namespace Private
{

/// Memory for pixels in a std::vector: it comes from where all planes come from, and is left as it is until
/// somebody writes pixels.
template <typename T>
struct PixelAllocator
{
    using value_type = T;

    [[nodiscard]] T* allocate(std::size_t count) { return RTE::newArray<T>(count); }
    void deallocate(T* pixels, std::size_t count) noexcept { RTE::deleteArray(pixels, count); }
    void construct(T* pixel) noexcept { ::new (static_cast<void*>(pixel)) T; }

    friend constexpr bool operator==(PixelAllocator, PixelAllocator) noexcept { return true; }
};

} // namespace Private

/// A two-dimensional colour image: pixels, their validity, three scales, attributes, and named scalar fields.
///
/// Pixel (x, y) is element y × width + x. The parts belong to the image alone: nothing is shared, and a copy
/// is deep. X and Y turn pixel columns and rows into physical positions, I a component into an intensity;
/// there is no Z scale. Mask, scalar fields and pixels have the same size.
///
/// The bit depth tells how many bits of a component are significant, 8 to 16. Until it is set it is found out
/// when somebody first needs it, and stays as it is when pixels change later.
///
/// A moved-from image has size 0 × 0 and no attributes and scalar fields. Access to pixels is unchecked. For
/// one thread at a time; reading from several is safe, also when the bit depth is yet to be found out.
///
/// \code
/// RGBImage image(red, green, blue);
/// image.ApplyColorRange(100, 1500);
/// const BufferApi::RgbQuad onScreen = image.GetPixelAsRGBQUAD(x, y);  // if the bit depth is 8
/// const Image<float> gray = image.IntensityImage();
/// \endcode
class DATAOBJECTS_DATAOBJECTS_EXPORT RGBImage
{
public:
    /// \name Construction
    /// A part that is not given is made: all valid, pixel scales of factor 1, no attributes, no scalar
    /// fields.
    /// \{

    /// New pixels, each of them `value`, and valid or not.
    RGBImage(const Math::Size2T<unsigned int>& size, const Rgb16& value, bool valid);
    RGBImage(unsigned int width, unsigned int height, const Rgb16& value, bool valid);
    /// Copies pixels. \throws RTE::VerificationFailed "Invalid sizes" unless there are width × height
    RGBImage(const std::vector<Rgb16>& pixels, const Math::Size2T<unsigned int>& size);
    RGBImage(const std::vector<Rgb16>& pixels, unsigned int width, unsigned int height);
    /// Unpacks width × height pixels as Rgb16(unsigned int) tells.
    /// \throws RTE::VerificationFailed "data-pointer is null"
    RGBImage(const unsigned int* packed, const Math::Size2T<unsigned int>& size);
    RGBImage(const unsigned int* packed, unsigned int width, unsigned int height);
    /// Size, scales and attributes of `r`; valid where all three are. Scalar fields stay behind.
    /// \throws RTE::VerificationFailed "Size of the R/G/B frames aren't equal", then "X scale of the R/G/B
    ///         frames aren't equal", and so for Y and I; before all, "data-pointer is null" for an image that
    ///         was moved from or gave its pixels up
    RGBImage(const Image<unsigned short>& r, const Image<unsigned short>& g, const Image<unsigned short>& b);
    /// New pixels of the mask's size, uninitialised; takes the mask.
    explicit RGBImage(Mask&& mask);
    RGBImage(const RGBImage& other);
    RGBImage(RGBImage&& other) noexcept;
    ~RGBImage();
    [[nodiscard]] std::unique_ptr<RGBImage> CreateCopy() const;
    /// \}

    /// \name Assignment
    /// \{

    /// All of `other`, of any size; nothing happens on itself.
    RGBImage& operator=(const RGBImage& other);
    RGBImage& operator=(RGBImage&& other);
    /// Takes pixels, mask, scales and attributes; bit depth and scalar fields stay.
    /// \throws RTE::VerificationFailed "Source RGB image has different size"
    void DeepCopyFrom(const RGBImage& source);
    /// Sets every pixel; the mask stays.
    RGBImage& operator=(const Rgb16& value);
    /// \}

    /// \name Size
    /// \{
    [[nodiscard]] const Math::Size2T<unsigned int>& GetSize() const noexcept { return m_size; }
    [[nodiscard]] unsigned int GetWidth() const noexcept { return m_size.width; }
    [[nodiscard]] unsigned int GetHeight() const noexcept { return m_size.height; }
    /// Always 1.
    [[nodiscard]] unsigned int GetDepth() const noexcept { return 1; }
    /// Number of pixels.
    [[nodiscard]] unsigned long long size() const noexcept { return m_pixels.size(); }
    /// Number of pixels too, not of bytes.
    [[nodiscard]] unsigned long long GetRawSize() const noexcept { return size(); }
    [[nodiscard]] bool empty() const noexcept { return m_pixels.empty(); }
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
    [[nodiscard]] const Rgb16& GetPixel(unsigned int x, unsigned int y) const noexcept
    {
        return m_pixels[index(x, y)];
    }
    [[nodiscard]] Rgb16& GetPixel(unsigned int x, unsigned int y) noexcept { return m_pixels[index(x, y)]; }
    [[nodiscard]] const Rgb16& GetPixel(const Math::Point2T<unsigned int>& point) const noexcept
    {
        return GetPixel(point.x, point.y);
    }
    [[nodiscard]] Rgb16& GetPixel(const Math::Point2T<unsigned int>& point) noexcept
    {
        return GetPixel(point.x, point.y);
    }
    [[nodiscard]] const Rgb16& operator()(unsigned int x, unsigned int y) const noexcept
    {
        return GetPixel(x, y);
    }
    [[nodiscard]] Rgb16& operator()(unsigned int x, unsigned int y) noexcept { return GetPixel(x, y); }
    [[nodiscard]] const Rgb16& operator[](const Math::Point2T<unsigned int>& point) const noexcept
    {
        return GetPixel(point);
    }
    [[nodiscard]] Rgb16& operator[](const Math::Point2T<unsigned int>& point) noexcept
    {
        return GetPixel(point);
    }
    [[nodiscard]] const Rgb16& operator[](unsigned long long index) const noexcept { return m_pixels[index]; }
    [[nodiscard]] Rgb16& operator[](unsigned long long index) noexcept { return m_pixels[index]; }
    [[nodiscard]] const Rgb16* GetRawPointer() const noexcept { return m_pixels.data(); }
    [[nodiscard]] Rgb16* GetRawPointer() noexcept { return m_pixels.data(); }
    [[nodiscard]] const Rgb16* begin() const noexcept { return m_pixels.data(); }
    [[nodiscard]] Rgb16* begin() noexcept { return m_pixels.data(); }
    [[nodiscard]] const Rgb16* end() const noexcept { return m_pixels.data() + m_pixels.size(); }
    [[nodiscard]] Rgb16* end() noexcept { return m_pixels.data() + m_pixels.size(); }
    /// The low 8 bits of each component. Nothing is scaled down: values above 255 wrap.
    [[nodiscard]] BufferApi::RgbQuad GetPixelAsRGBQUAD(unsigned int x, unsigned int y) const noexcept;
    /// \}

    /// \name Companions
    /// \{
    [[nodiscard]] const Mask& GetMask() const noexcept { return m_mask; }
    [[nodiscard]] Mask& GetMask() noexcept { return m_mask; }
    [[nodiscard]] bool IsMaskValid(unsigned int x, unsigned int y) const noexcept
    {
        return m_mask.IsValid(x, y);
    }
    [[nodiscard]] bool IsMaskValid(const Math::Point2T<unsigned int>& point) const noexcept
    {
        return m_mask.IsValid(point);
    }
    [[nodiscard]] const Zt::LinearScale& GetScaleX() const noexcept { return m_scaleX; }
    [[nodiscard]] Zt::LinearScale& GetScaleX() noexcept { return m_scaleX; }
    [[nodiscard]] const Zt::LinearScale& GetScaleY() const noexcept { return m_scaleY; }
    [[nodiscard]] Zt::LinearScale& GetScaleY() noexcept { return m_scaleY; }
    [[nodiscard]] const Zt::LinearScale& GetScaleI() const noexcept { return m_scaleI; }
    [[nodiscard]] Zt::LinearScale& GetScaleI() noexcept { return m_scaleI; }
    [[nodiscard]] const Attributes& GetAttributes() const noexcept { return m_attributes; }
    [[nodiscard]] Attributes& GetAttributes() noexcept { return m_attributes; }
    /// Replaces all attributes.
    void SetAttributes(const Attributes& attributes);
    [[nodiscard]] const ScalarFields& GetScalarFields() const noexcept { return m_scalarFields; }
    [[nodiscard]] ScalarFields& GetScalarFields() noexcept { return m_scalarFields; }
    /// \}

    /// \name Arithmetic
    /// On the pixels only, by the rules of Rgb16.
    /// \{
    RGBImage& operator+=(const Rgb16& value);
    RGBImage& operator-=(const Rgb16& value);
    /// \throws RTE::VerificationFailed "Invalid sizes"
    RGBImage& operator+=(const RGBImage& other);
    RGBImage& operator-=(const RGBImage& other);
    /// \}

    /// \name Single-channel images
    /// With copies of mask, scales, attributes and scalar fields.
    /// \{
    [[nodiscard]] Image<unsigned short> RedImage() const;
    [[nodiscard]] Image<unsigned short> GreenImage() const;
    [[nodiscard]] Image<unsigned short> BlueImage() const;
    /// Rgb16::Intensity() of each pixel.
    [[nodiscard]] Image<float> IntensityImage() const;
    /// \}

    /// \name Bit depth and colour range
    /// \{

    /// Calls InitBitDepth() first.
    [[nodiscard]] unsigned short GetBitDepth() const;
    /// \throws RTE::VerificationFailed "Bit depth must be between 8 and 16"
    void SetBitDepth(unsigned short bitDepth);
    /// Finds out the bit depth unless it is known: the bits that hold the attribute Attr::cameraMaxIntensity
    /// or, where there is none, the largest component; at least 8, at most 16.
    /// \throws what AttributeValue::value does for an attribute that is a list
    void InitBitDepth() const;
    /// Spreads the components from `minimum` to `maximum` over the range of the bit depth, from 0 to
    /// 2^depth - 1, truncated; what lies outside becomes 0 or the largest value. Nothing happens unless
    /// `maximum` is greater than `minimum`.
    void ApplyColorRange(double minimum, double maximum);
    /// \}

private:
    using Pixels = std::vector<Rgb16, Private::PixelAllocator<Rgb16>>;

    [[nodiscard]] std::size_t index(unsigned int x, unsigned int y) const noexcept
    {
        return static_cast<std::size_t>(y) * m_size.width + x;
    }

    // All who find it out find the same.
    mutable std::atomic<unsigned short> m_bitDepth = 0;
    Math::Size2T<unsigned int> m_size;
    Pixels m_pixels;
    Mask m_mask;
    Zt::LinearScale m_scaleX{Zt::ScalePreset::X};
    Zt::LinearScale m_scaleY{Zt::ScalePreset::Y};
    Zt::LinearScale m_scaleI{Zt::ScalePreset::I};
    AttributesContainer m_attributes;
    ScalarFields m_scalarFields;
};

/// True when no pixel of the mask is false.
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT bool AllValuesValid(const RGBImage& image);

} // namespace DataObjects
