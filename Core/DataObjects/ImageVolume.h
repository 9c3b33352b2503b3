// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/Image.h"
#include "Core/DataObjects/ImageVolumeVariant.h"

#include <memory>
#include <utility>
#include <vector>

namespace DataObjects
{

template <typename T>
class ImageBuffer;

/// A stack of z planes, each an image of the same size; exists for the six element types.
///
/// All planes share one object for each of the four scales and one for the attributes, so that a change
/// through any plane is a change of the volume. Each plane has its own mask and its own scalar fields. The
/// planes are shared pointers: a plane can be held beyond the volume, and planes can be rearranged without
/// copying pixels.
///
/// A volume of views (of the planes of a frame, say) does not own its memory and cannot change its size. A
/// moved-from volume has no planes and may only be destroyed or assigned to. For one thread at a time.
///
/// \code
/// ImageVolume<float> volume(Math::Size3T<unsigned int>(64, 32, 8), 0.0F, true);
/// volume.SetVoxel(3, 4, 7, 1.5F);
/// volume.SetMaskValid(3, 4, 0, false);
/// volume.SetScaleI(Zt::LinearScale(0.1, 0.0, "K", "Temperature"));
/// for (const std::shared_ptr<Image<float>>& plane : volume) {
///     *plane *= 2.0;
/// }
/// \endcode
template <typename T>
class DATAOBJECTS_DATAOBJECTS_EXPORT ImageVolume : public ImageVolumeVariant
{
public:
    using Planes = std::vector<std::shared_ptr<Image<T>>>;

    /// \name Construction
    /// Without a plane: RTE::VerificationFailed "ImageVolume must have at least one z-plane".
    ///
    /// Planes that are given must agree in scales (Z in its factor only), size and names of scalar fields
    /// with plane 0: "x axis has different scaling.", "y axis has different scaling.", "z axis has different
    /// scaling.", "intensity has different scaling.", "z-planes have different sizes.", "scalar field names
    /// are different.", and before that "Given plane data pointer is null!". They then share the scales and
    /// the attributes of plane 0, and lose their own.
    /// \{

    /// New planes, uninitialised, each pixel valid or not.
    ImageVolume(const Math::Size3T<unsigned int>& size, bool valid);
    ImageVolume(unsigned int width, unsigned int height, unsigned int depth, bool valid);
    /// New planes, each pixel `value`.
    ImageVolume(const Math::Size3T<unsigned int>& size, T value, bool valid);
    /// One plane, moved in or shared.
    explicit ImageVolume(Image<T>&& plane);
    explicit ImageVolume(std::shared_ptr<Image<T>> plane);
    /// The planes are moved in, taken over, or shared.
    explicit ImageVolume(std::vector<Image<T>> planes);
    explicit ImageVolume(std::vector<std::unique_ptr<Image<T>>> planes);
    explicit ImageVolume(std::vector<std::shared_ptr<Image<T>>> planes);
    /// A deep copy, which owns its memory. A moved-from volume has no plane to copy.
    ImageVolume(const ImageVolume& other);
    ImageVolume(ImageVolume&& other) noexcept;
    ~ImageVolume() override;
    /// \}

    /// \name Assignment
    /// \{

    /// Between equal sizes writes pixels, masks, scalar fields, scales and attributes into the planes that
    /// are there; attributes of other names stay. Otherwise an owner gets new planes, which are complete
    /// before the old ones go: `other` may view them, and an assignment that raises changes nothing.
    /// \throws RTE::VerificationFailed "Assigment of non owning image volume with different size not
    ///         possible", "ImageVolume must have at least one z-plane" when `other` is moved-from
    ImageVolume& operator=(const ImageVolume& other);
    /// An owner takes the planes of `other`, with views of its own planes made copies; views are assigned
    /// plane by plane, and `other` stays.
    /// \throws RTE::VerificationFailed "Depth of image volumes has to be identical!", "Source and destination
    ///         have different sizes." from a view
    ImageVolume& operator=(ImageVolume&& other);
    void DeepCopyFrom(const ImageVolume& other) { *this = other; }
    void MoveFrom(ImageVolume&& other) { *this = std::move(other); }
    /// Copy assignment from a volume of any type; pixels are converted as ImageData::Assign does.
    /// \throws RTE::Exception "Unsupported image type" unless the source has one of the six types
    /// \throws RTE::VerificationFailed as copy assignment does
    void Assign(const ImageVolumeVariant& source) override;
    /// Sets every pixel; the masks stay.
    ImageVolume& operator=(T value);
    /// \}

    /// \name Size, type, ownership and copies
    /// \{
    [[nodiscard]] Math::Size3T<unsigned int> GetSize() const noexcept override;
    [[nodiscard]] unsigned int GetWidth() const noexcept final { return m_planes.front()->GetWidth(); }
    [[nodiscard]] unsigned int GetHeight() const noexcept final { return m_planes.front()->GetHeight(); }
    [[nodiscard]] unsigned int GetDepth() const noexcept final
    {
        return static_cast<unsigned int>(m_planes.size());
    }
    [[nodiscard]] bool IsValidPosition(unsigned int x, unsigned int y, unsigned int z) const noexcept
    {
        return z < GetDepth() && x < GetWidth() && y < GetHeight();
    }
    [[nodiscard]] bool IsValidPosition(const Math::Point3T<unsigned int>& point) const noexcept
    {
        return IsValidPosition(point.x, point.y, point.z);
    }
    /// True when every plane owns its pixels.
    [[nodiscard]] bool HasOwnerShip() const noexcept;
    [[nodiscard]] E_DataType GetDataType() const noexcept override;
    [[nodiscard]] std::unique_ptr<ImageVolumeVariant> CreateCopy() const override;
    /// \}

    /// \name Planes
    /// \{
    [[nodiscard]] const Image<T>& getPlane(unsigned int z) const override;
    [[nodiscard]] Image<T>& getPlane(unsigned int z) override;
    [[nodiscard]] std::shared_ptr<ImageVariant> getPlaneSPtr(unsigned int z) override;
    [[nodiscard]] std::shared_ptr<Image<T>> getPlaneSPtrT(unsigned int z);
    /// The shared plane, z not checked. Whoever replaces it keeps to what construction asks of planes.
    [[nodiscard]] std::shared_ptr<Image<T>>& operator[](unsigned long long z) noexcept { return m_planes[z]; }
    [[nodiscard]] const std::shared_ptr<Image<T>>& operator[](unsigned long long z) const noexcept
    {
        return m_planes[z];
    }
    [[nodiscard]] typename Planes::iterator begin() noexcept { return m_planes.begin(); }
    [[nodiscard]] typename Planes::const_iterator begin() const noexcept { return m_planes.begin(); }
    [[nodiscard]] typename Planes::iterator end() noexcept { return m_planes.end(); }
    [[nodiscard]] typename Planes::const_iterator end() const noexcept { return m_planes.end(); }
    /// \}

    /// \name Voxels, unchecked
    /// \{
    [[nodiscard]] T GetVoxel(unsigned int x, unsigned int y, unsigned int z) const noexcept
    {
        return m_planes[z]->GetPixel(x, y);
    }
    [[nodiscard]] T GetVoxel(const Math::Point3T<unsigned int>& point) const noexcept
    {
        return GetVoxel(point.x, point.y, point.z);
    }
    void SetVoxel(unsigned int x, unsigned int y, unsigned int z, T value) noexcept
    {
        m_planes[z]->SetPixel(x, y, value);
    }
    void SetVoxel(const Math::Point3T<unsigned int>& point, T value) noexcept
    {
        SetVoxel(point.x, point.y, point.z, value);
    }
    [[nodiscard]] bool IsMaskValid(unsigned int x, unsigned int y, unsigned int z) const
    {
        return m_planes[z]->IsMaskValid(x, y);
    }
    [[nodiscard]] bool IsMaskValid(const Math::Point3T<unsigned int>& point) const
    {
        return IsMaskValid(point.x, point.y, point.z);
    }
    void SetMaskValid(unsigned int x, unsigned int y, unsigned int z, bool valid)
    {
        m_planes[z]->SetMaskValid(x, y, valid);
    }
    void SetMaskValid(const Math::Point3T<unsigned int>& point, bool valid)
    {
        SetMaskValid(point.x, point.y, point.z, valid);
    }
    /// \}

    /// \name Scales and attributes
    /// \{
    [[nodiscard]] const Zt::LinearScale& GetScaleX() const noexcept override { return first().GetScaleX(); }
    [[nodiscard]] Zt::LinearScale& GetScaleX() noexcept override { return first().GetScaleX(); }
    void SetScaleX(const Zt::LinearScale& scale) override { first().SetScaleX(scale); }
    [[nodiscard]] const Zt::LinearScale& GetScaleY() const noexcept override { return first().GetScaleY(); }
    [[nodiscard]] Zt::LinearScale& GetScaleY() noexcept override { return first().GetScaleY(); }
    void SetScaleY(const Zt::LinearScale& scale) override { first().SetScaleY(scale); }
    [[nodiscard]] const Zt::LinearScale& GetScaleZ() const noexcept override { return first().GetScaleZ(); }
    [[nodiscard]] Zt::LinearScale& GetScaleZ() noexcept override { return first().GetScaleZ(); }
    void SetScaleZ(const Zt::LinearScale& scale) override { first().SetScaleZ(scale); }
    [[nodiscard]] const Zt::LinearScale& GetScaleI() const noexcept override { return first().GetScaleI(); }
    [[nodiscard]] Zt::LinearScale& GetScaleI() noexcept override { return first().GetScaleI(); }
    void SetScaleI(const Zt::LinearScale& scale) override { first().SetScaleI(scale); }
    [[nodiscard]] const Attributes& GetAttributes() const noexcept override
    {
        return first().GetAttributes();
    }
    [[nodiscard]] Attributes& GetAttributes() noexcept override { return first().GetAttributes(); }
    void SetAttributes(const Attributes& attributes) override { first().SetAttributes(attributes); }
    /// \}

    /// \name Arithmetic
    /// On the pixels only, by the rules of ImageData; the results of the const forms are deep copies.
    /// \{
    ImageVolume& operator*=(double operand);
    ImageVolume& operator+=(double operand);
    ImageVolume& operator-=(double operand);
    ImageVolume& operator/=(double operand);
    [[nodiscard]] ImageVolume operator*(double operand) const;
    [[nodiscard]] ImageVolume operator+(double operand) const;
    [[nodiscard]] ImageVolume operator-(double operand) const;
    [[nodiscard]] ImageVolume operator/(double operand) const;
    /// \}

private:
    friend class ImageBuffer<T>;

    /// Moved-from.
    ImageVolume() noexcept;

    [[nodiscard]] const Image<T>& first() const noexcept { return *m_planes.front(); }
    [[nodiscard]] Image<T>& first() noexcept { return *m_planes.front(); }
    void takePlanes(Planes planes);
    void shareParts(const std::shared_ptr<Attributes>& attributes);
    void assignPlanes(const ImageVolumeVariant& source);
    void copyPlanes(const ImageVolumeVariant& source);
    [[nodiscard]] bool hasViews() const;
    void collectArrays(Private::OwnedArrays& arrays) const;
    void copyViewsOf(const Private::OwnedArrays& arrays);

    Planes m_planes;
};

/// Moves images, all of pixel type T, into a volume.
/// \throws RTE::VerificationFailed "MoveImageVariantListToImageVolumeVariantT: planes is empty",
///         "MoveImageVariantListToImageVolumeVariantT: vector of planes is empty" when no image has this
///         type, "bad image data cast" when only some have it, and as the construction of ImageVolume does
template <typename T>
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<ImageVolumeVariant>
MoveImageVariantListToImageVolumeVariantT(std::vector<std::unique_ptr<ImageVariant>> planes);

#define DATAOBJECTS_EXTERN_IMAGE_VOLUME(type, number, name)                                                  \
    extern template class ImageVolume<type>;                                                                 \
    extern template DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<ImageVolumeVariant>                       \
        MoveImageVariantListToImageVolumeVariantT<type>(std::vector<std::unique_ptr<ImageVariant>>);
DATAOBJECTS_PIXEL_TYPES(DATAOBJECTS_EXTERN_IMAGE_VOLUME)
#undef DATAOBJECTS_EXTERN_IMAGE_VOLUME

} // namespace DataObjects
