// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/ImageData.h"
#include "Core/DataObjects/ImageVariant.h"

#include <memory>
#include <utility>

namespace DataObjects
{

template <typename T>
class ImageVolume;

namespace Private
{
class OwnedArrays;
}

/// A two-dimensional image: pixels, their validity, four scales, attributes, and named scalar fields; exists
/// for the six element types.
///
/// Pixel (x, y) is element y × width + x. Data is kept unscaled: the scale I turns a pixel value into an
/// intensity, X and Y turn pixel columns and rows into physical positions, Z the index of the plane. Mask,
/// scalar fields and pixels always have the same size.
///
/// An image owns its pixels, or it is a view: of an array, or of one plane of a frame, whose mask, scales and
/// attributes it then writes too; a view must not outlive what it looks at. The parts but the mask strategy
/// are shared pointers, because the planes of a volume share scales and attributes. Assignment therefore
/// never replaces what others share: it writes values into the parts that are there, and a view keeps writing
/// to its memory. A copy shares nothing with its source and owns its pixels; a mask that nobody asked for is
/// not made by copying.
///
/// Whoever works on the attributes includes Attributes.h, which takes long to compile.
///
/// A moved-from image has no parts and may only be destroyed or assigned to, which makes new parts. Access to
/// pixels is unchecked. For one thread at a time; reading from several is safe, and a mask that is made on
/// demand is then made once.
///
/// \code
/// Image<unsigned short> image(1280, 1024, 0, true);
/// image(3, 4) = 512;
/// image.SetMaskValid(0, 0, false);
/// image.SetScaleX(Zt::LinearScale(0.02, 0.0, "mm", "Position x"));
/// Image<float> half(image.GetSize(), true);
/// half.Assign(image);
/// half *= 0.5;
/// \endcode
template <typename T>
class DATAOBJECTS_DATAOBJECTS_EXPORT Image : public ImageVariant
{
public:
    /// \name Construction
    /// A part that is not given is made: pixel scales of factor 1, no attributes, no scalar fields. A mask
    /// of another size than the pixels raises RTE::VerificationFailed "Mask has invalid size.", a null mask
    /// or strategy "Mask is not valid.", null pixels "data-pointer is null"; pixels of another type than T
    /// raise "bad image data cast" where they are moved or shared.
    /// \{

    /// New pixels, uninitialised, each of them valid or not.
    Image(const Math::Size2T<unsigned int>& size, bool valid);
    Image(unsigned int width, unsigned int height, bool valid);
    /// New pixels, each of them `value`.
    Image(const Math::Size2T<unsigned int>& size, T value, bool valid);
    Image(unsigned int width, unsigned int height, T value, bool valid);
    /// Wraps `pixels` without a copy; with `hasOwnerShip` frees them with `delete[]`.
    Image(T* pixels, const Math::Size2T<unsigned int>& size, bool hasOwnerShip, bool valid);
    Image(T* pixels, unsigned int width, unsigned int height, bool hasOwnerShip, bool valid);
    /// A view of pixels and of their mask, one byte each.
    Image(T* pixels, bool* mask, unsigned int width, unsigned int height);
    /// Takes a block that holds at least width × height pixels, and the strategy of a mask of this size.
    Image(std::unique_ptr<RTE::MemoryBlock> block, std::unique_ptr<MaskStrategy> mask, unsigned int width,
          unsigned int height);
    /// Takes pixels and mask. A memory block stays with `data`, as ImageData tells.
    Image(ImageData<T>&& data, Mask&& mask);
    /// Takes pixels that have to be of type T; all are valid, or as the mask or strategy tells.
    explicit Image(ImageDataVariant&& data);
    Image(ImageDataVariant&& data, Mask&& mask);
    Image(ImageDataVariant&& data, std::unique_ptr<MaskStrategy> mask);
    /// Copies pixels of any type, converted as ImageData::Assign does, and the mask.
    Image(const ImageDataVariant& data, const Mask& mask);
    /// Shares pixels and mask.
    Image(std::shared_ptr<ImageDataVariant> data, std::shared_ptr<Mask> mask);
    /// A view of `pixels` that shares all other parts.
    ///
    /// A part that is null or has another size raises RTE::VerificationFailed, looked for in this order:
    /// "Mask is not valid.", "Mask has invalid size.", "ScaleX is not valid." and so on to "ScaleI is not
    /// valid.", "Attributes are not valid.", "Scalar fields are not valid.", "Sizes of scalar fields is
    /// different to image size."
    Image(T* pixels, const Math::Size2T<unsigned int>& size, std::shared_ptr<Mask> mask,
          std::shared_ptr<Zt::LinearScale> scaleX, std::shared_ptr<Zt::LinearScale> scaleY,
          std::shared_ptr<Zt::LinearScale> scaleZ, std::shared_ptr<Zt::LinearScale> scaleI,
          std::shared_ptr<Attributes> attributes, std::shared_ptr<ScalarFields> scalarFields);
    Image(const Image& other);
    Image(Image&& other) noexcept;
    ~Image() override;
    /// \}

    /// \name Assignment
    /// Pixels come first, so that a wrong size leaves the image as it was. When memory runs out later, the
    /// steps done before stay done.
    /// \{

    /// Writes pixels, mask, scales, attributes and scalar fields of `other` into the parts of this image.
    /// \throws RTE::VerificationFailed "Source and destination have different sizes."
    Image& operator=(const Image& other);
    /// An owner drops its parts and takes those of `other`, which is then moved-from. From a view it becomes
    /// a view; only what `other` views of this very image is copied first.
    ///
    /// A view copies as copy assignment does, and `other` keeps its parts, except that a mask of this image
    /// that exists and owns its pixels is exchanged with that of `other`.
    /// \throws RTE::VerificationFailed "Source and destination have different sizes." from a view
    Image& operator=(Image&& other);
    /// The same as move assignment.
    void MoveFrom(Image&& other) { *this = std::move(other); }
    /// Copy assignment from an image of any type; pixels are converted as ImageData::Assign does.
    /// \throws RTE::Exception "Unsupported image type" unless the source has one of the six types
    /// \throws RTE::VerificationFailed "Source and destination have different sizes."
    void Assign(const ImageVariant& source) override;
    /// Sets every pixel; the mask stays.
    Image& operator=(T value);
    /// \}

    /// \name Size, type and copies
    /// \{
    [[nodiscard]] const Math::Size2T<unsigned int>& GetSize() const noexcept final
    {
        return m_data->GetSize();
    }
    [[nodiscard]] unsigned int GetWidth() const noexcept final { return m_data->GetWidth(); }
    [[nodiscard]] unsigned int GetHeight() const noexcept final { return m_data->GetHeight(); }
    /// Number of pixels.
    [[nodiscard]] unsigned long long size() const noexcept { return m_data->size(); }
    [[nodiscard]] bool empty() const noexcept { return m_data->empty(); }
    [[nodiscard]] E_DataType GetDataType() const noexcept override;
    [[nodiscard]] std::unique_ptr<ImageVariant> CreateCopy() const override;
    /// \}

    /// \name Pixels, unchecked
    /// As fast as a raw array, but for loops that write bytes: the compiler has to take each byte for a part
    /// of the image that holds the array. Let those take GetRawPointer() first.
    /// \{
    [[nodiscard]] T GetPixel(unsigned int x, unsigned int y) const noexcept { return data()(x, y); }
    [[nodiscard]] T GetPixel(const Math::Point2T<unsigned int>& point) const noexcept
    {
        return data()[point];
    }
    void SetPixel(unsigned int x, unsigned int y, const T& value) noexcept { (*m_data)(x, y) = value; }
    void SetPixel(const Math::Point2T<unsigned int>& point, const T& value) noexcept
    {
        (*m_data)[point] = value;
    }
    [[nodiscard]] T operator()(unsigned int x, unsigned int y) const noexcept { return data()(x, y); }
    [[nodiscard]] T& operator()(unsigned int x, unsigned int y) noexcept { return (*m_data)(x, y); }
    [[nodiscard]] T operator()(const Math::Point2T<unsigned int>& point) const noexcept
    {
        return data()[point];
    }
    [[nodiscard]] T& operator()(const Math::Point2T<unsigned int>& point) noexcept
    {
        return (*m_data)[point];
    }
    [[nodiscard]] T operator[](const Math::Point2T<unsigned int>& point) const noexcept
    {
        return data()[point];
    }
    [[nodiscard]] T& operator[](const Math::Point2T<unsigned int>& point) noexcept
    {
        return (*m_data)[point];
    }
    [[nodiscard]] const T& operator[](unsigned long long index) const noexcept { return data()[index]; }
    [[nodiscard]] T& operator[](unsigned long long index) noexcept { return (*m_data)[index]; }
    [[nodiscard]] const T* GetRawPointer() const noexcept { return data().GetRawPointer(); }
    [[nodiscard]] T* GetRawPointer() noexcept { return m_data->GetRawPointer(); }
    [[nodiscard]] const T* begin() const noexcept { return data().begin(); }
    [[nodiscard]] T* begin() noexcept { return m_data->begin(); }
    [[nodiscard]] const T* end() const noexcept { return data().end(); }
    [[nodiscard]] T* end() noexcept { return m_data->end(); }

    [[nodiscard]] const ImageData<T>& GetImageData() const noexcept final { return *m_data; }
    [[nodiscard]] ImageData<T>& GetImageData() noexcept final { return *m_data; }
    [[nodiscard]] std::shared_ptr<const ImageDataVariant> GetImageDataSPtr() const noexcept override;
    [[nodiscard]] std::shared_ptr<ImageDataVariant> GetImageDataSPtr() noexcept override;
    /// \}

    /// \name Mask
    /// Asking for the mask or one of its pixels makes it; a mask that is made on demand is all valid.
    /// Positions are not checked. In a loop, take the reference first.
    /// \{
    [[nodiscard]] const Mask& GetMask() const final { return m_mask->ref(); }
    [[nodiscard]] Mask& GetMask() final { return m_mask->ref(); }
    [[nodiscard]] std::shared_ptr<const Mask> GetMaskSPtr() const override;
    [[nodiscard]] std::shared_ptr<Mask> GetMaskSPtr() override;
    [[nodiscard]] bool IsMaskSpawned() const override;
    void ReplaceMaskStrategy(std::unique_ptr<MaskStrategy> strategy) override;
    [[nodiscard]] bool IsMaskValid(unsigned int x, unsigned int y) const { return GetMask().IsValid(x, y); }
    [[nodiscard]] bool IsMaskValid(const Math::Point2T<unsigned int>& point) const
    {
        return GetMask().IsValid(point);
    }
    void SetMaskValid(unsigned int x, unsigned int y, bool valid) { GetMask().SetValid(x, y, valid); }
    void SetMaskValid(const Math::Point2T<unsigned int>& point, bool valid)
    {
        GetMask().SetValid(point, valid);
    }
    /// \}

    /// \name Scales
    /// \{
    [[nodiscard]] const Zt::LinearScale& GetScaleX() const noexcept override { return *m_scaleX; }
    [[nodiscard]] Zt::LinearScale& GetScaleX() noexcept override { return *m_scaleX; }
    void SetScaleX(const Zt::LinearScale& scale) override;
    [[nodiscard]] const Zt::LinearScale& GetScaleY() const noexcept override { return *m_scaleY; }
    [[nodiscard]] Zt::LinearScale& GetScaleY() noexcept override { return *m_scaleY; }
    void SetScaleY(const Zt::LinearScale& scale) override;
    [[nodiscard]] const Zt::LinearScale& GetScaleZ() const noexcept override { return *m_scaleZ; }
    [[nodiscard]] Zt::LinearScale& GetScaleZ() noexcept override { return *m_scaleZ; }
    void SetScaleZ(const Zt::LinearScale& scale) override;
    [[nodiscard]] const Zt::LinearScale& GetScaleI() const noexcept override { return *m_scaleI; }
    [[nodiscard]] Zt::LinearScale& GetScaleI() noexcept override { return *m_scaleI; }
    void SetScaleI(const Zt::LinearScale& scale) override;
    [[nodiscard]] std::shared_ptr<Zt::LinearScale> GetScaleXShared() const noexcept { return m_scaleX; }
    [[nodiscard]] std::shared_ptr<Zt::LinearScale> GetScaleYShared() const noexcept { return m_scaleY; }
    [[nodiscard]] std::shared_ptr<Zt::LinearScale> GetScaleZShared() const noexcept { return m_scaleZ; }
    [[nodiscard]] std::shared_ptr<Zt::LinearScale> GetScaleIShared() const noexcept { return m_scaleI; }
    /// Shares these scales from now on; values are not copied.
    /// \throws RTE::VerificationFailed "ScaleX is not valid." and so on for a null one
    void SetSharedScales(std::shared_ptr<Zt::LinearScale> scaleX, std::shared_ptr<Zt::LinearScale> scaleY,
                         std::shared_ptr<Zt::LinearScale> scaleZ, std::shared_ptr<Zt::LinearScale> scaleI);
    /// \}

    /// \name Attributes and scalar fields
    /// \{
    [[nodiscard]] const Attributes& GetAttributes() const noexcept override { return *m_attributes; }
    [[nodiscard]] Attributes& GetAttributes() noexcept override { return *m_attributes; }
    void SetAttributes(const Attributes& attributes) override;
    [[nodiscard]] std::shared_ptr<Attributes> GetAttributesSPtr() const noexcept { return m_attributes; }
    /// Exchanges the shared attributes. \throws RTE::VerificationFailed "Attributes are not valid." for null
    void SwapAttributes(std::shared_ptr<Attributes>& attributes);
    [[nodiscard]] const ScalarFields& GetScalarFields() const noexcept override { return *m_scalarFields; }
    [[nodiscard]] ScalarFields& GetScalarFields() noexcept override { return *m_scalarFields; }
    /// \}

    /// \name Arithmetic
    /// On the pixels only, by the rules of ImageData; the results of the const forms are deep copies.
    /// \{
    Image& operator*=(double operand);
    Image& operator+=(double operand);
    Image& operator-=(double operand);
    Image& operator/=(double operand);
    [[nodiscard]] Image operator*(double operand) const;
    [[nodiscard]] Image operator+(double operand) const;
    [[nodiscard]] Image operator-(double operand) const;
    [[nodiscard]] Image operator/(double operand) const;
    /// This image divided pixel by pixel; valid where both are.
    /// \throws RTE::VerificationFailed "Mismatching image sizes"
    [[nodiscard]] Image operator/(const Image& divisor) const;
    /// \}

private:
    friend class ImageVolume<T>;

    /// Moved-from.
    Image() noexcept;

    void build(std::shared_ptr<ImageData<T>> data, std::unique_ptr<MaskStrategy> mask);
    void buildIfMovedFrom(const Math::Size2T<unsigned int>& size);
    void assignPixelsAndMask(const ImageVariant& source);
    void assignParts(const ImageVariant& source);
    [[nodiscard]] bool hasViews() const;
    void collectArrays(Private::OwnedArrays& arrays) const;
    void copyViewsOf(const Private::OwnedArrays& arrays);
    void takeMaskFrom(Image& source, const Math::Size2T<unsigned int>& size,
                      const Math::Size2T<unsigned int>& sourceSize);
    void swap(Image& other) noexcept;
    [[nodiscard]] const ImageData<T>& data() const noexcept { return *m_data; }

    std::shared_ptr<ImageData<T>> m_data;
    std::unique_ptr<MaskStrategy> m_mask;
    std::shared_ptr<Zt::LinearScale> m_scaleX;
    std::shared_ptr<Zt::LinearScale> m_scaleY;
    std::shared_ptr<Zt::LinearScale> m_scaleZ;
    std::shared_ptr<Zt::LinearScale> m_scaleI;
    std::shared_ptr<Attributes> m_attributes;
    std::shared_ptr<ScalarFields> m_scalarFields;
};

#define DATAOBJECTS_EXTERN_IMAGE(type, number, name) extern template class Image<type>;
DATAOBJECTS_PIXEL_TYPES(DATAOBJECTS_EXTERN_IMAGE)
#undef DATAOBJECTS_EXTERN_IMAGE

} // namespace DataObjects
