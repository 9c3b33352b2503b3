// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/ImageVolume.h"

#include "Core/DataObjects/AttributesContainer.h"
#include "Core/DataObjects/ImageParts.h"
#include "Core/DataObjects/VisitImageType.h"

#include <algorithm>
#include <cmath>

namespace DataObjects
{

namespace
{

const char* const noPlanes = "ImageVolume must have at least one z-plane";

template <typename T>
std::vector<std::shared_ptr<Image<T>>> sharedPlanes(std::vector<Image<T>>&& planes)
{
    std::vector<std::shared_ptr<Image<T>>> shared;
    shared.reserve(planes.size());
    for (Image<T>& plane : planes) {
        shared.push_back(std::make_shared<Image<T>>(std::move(plane)));
    }
    return shared;
}

template <typename T>
std::vector<std::shared_ptr<Image<T>>> sharedPlanes(std::vector<std::unique_ptr<Image<T>>>&& planes)
{
    return {std::make_move_iterator(planes.begin()), std::make_move_iterator(planes.end())};
}

/// A new plane is made by `make` for each z.
template <typename T, typename Make>
std::vector<std::shared_ptr<Image<T>>> newPlanes(unsigned int depth, Make make)
{
    RTE::verify(depth > 0, noPlanes);
    std::vector<std::shared_ptr<Image<T>>> planes(depth);
    std::generate(planes.begin(), planes.end(), make);
    return planes;
}

/// Collections list their names in different orders: a frame in that of its components.
bool haveSameNames(const ScalarFields& first, const ScalarFields& second)
{
    const QList<QString> firstNames = first.GetNames();
    const QList<QString> secondNames = second.GetNames();
    return std::is_permutation(firstNames.begin(), firstNames.end(), secondNames.begin(), secondNames.end());
}

bool isMovedFrom(const ImageVariant& plane)
{
    return plane.GetImageDataSPtr() == nullptr;
}

/// NaN is the same as NaN: planes of one frame have one scale, whatever it is.
bool isSame(double first, double second)
{
    return first == second || (std::isnan(first) && std::isnan(second));
}

bool isSame(const Zt::LinearScale& first, const Zt::LinearScale& second)
{
    return isSame(first.getFactor(), second.getFactor()) && isSame(first.getOffset(), second.getOffset()) &&
           first.getUnit() == second.getUnit() && first.getDescription() == second.getDescription();
}

/// Offsets of the Z scale may differ from plane to plane, its factor may not.
void verifyConsistent(const ImageVariant* plane, const ImageVariant& first)
{
    RTE::verify(plane != nullptr, "z-plane is NULL");
    RTE::verify(isSame(plane->GetScaleX(), first.GetScaleX()), "x axis has different scaling.");
    RTE::verify(isSame(plane->GetScaleY(), first.GetScaleY()), "y axis has different scaling.");
    RTE::verify(isSame(plane->GetScaleZ().getFactor(), first.GetScaleZ().getFactor()),
                "z axis has different scaling.");
    RTE::verify(isSame(plane->GetScaleI(), first.GetScaleI()), "intensity has different scaling.");
    RTE::verify(plane->GetSize() == first.GetSize(), "z-planes have different sizes.");
    RTE::verify(haveSameNames(plane->GetScalarFields(), first.GetScalarFields()),
                "scalar field names are different.");
}

} // namespace

template <typename T>
ImageVolume<T>::ImageVolume() noexcept = default;

template <typename T>
ImageVolume<T>::ImageVolume(const Math::Size3T<unsigned int>& size, bool valid)
{
    takePlanes(
        newPlanes<T>(size.depth, [&] { return std::make_shared<Image<T>>(size.width, size.height, valid); }));
}

template <typename T>
ImageVolume<T>::ImageVolume(unsigned int width, unsigned int height, unsigned int depth, bool valid)
    : ImageVolume(Math::Size3T<unsigned int>(width, height, depth), valid)
{
}

template <typename T>
ImageVolume<T>::ImageVolume(const Math::Size3T<unsigned int>& size, T value, bool valid)
{
    takePlanes(newPlanes<T>(
        size.depth, [&] { return std::make_shared<Image<T>>(size.width, size.height, value, valid); }));
}

template <typename T>
ImageVolume<T>::ImageVolume(Image<T>&& plane) : m_planes{std::make_shared<Image<T>>(std::move(plane))}
{
}

template <typename T>
ImageVolume<T>::ImageVolume(std::shared_ptr<Image<T>> plane)
{
    RTE::verify(plane != nullptr, noPlanes);
    m_planes.push_back(std::move(plane));
}

template <typename T>
ImageVolume<T>::ImageVolume(std::vector<Image<T>> planes)
{
    takePlanes(sharedPlanes(std::move(planes)));
}

template <typename T>
ImageVolume<T>::ImageVolume(std::vector<std::unique_ptr<Image<T>>> planes)
{
    takePlanes(sharedPlanes(std::move(planes)));
}

template <typename T>
ImageVolume<T>::ImageVolume(std::vector<std::shared_ptr<Image<T>>> planes)
{
    takePlanes(std::move(planes));
}

template <typename T>
ImageVolume<T>::ImageVolume(const ImageVolume& other) : ImageVolumeVariant()
{
    copyPlanes(other);
}

template <typename T>
ImageVolume<T>::ImageVolume(ImageVolume&& other) noexcept = default;

template <typename T>
ImageVolume<T>::~ImageVolume() = default;

template <typename T>
ImageVolume<T>& ImageVolume<T>::operator=(const ImageVolume& other)
{
    if (this != &other) {
        assignPlanes(other);
    }
    return *this;
}

template <typename T>
ImageVolume<T>& ImageVolume<T>::operator=(ImageVolume&& other)
{
    if (this == &other) {
        return *this;
    }
    if (HasOwnerShip()) {
        if (other.hasViews()) {
            Private::OwnedArrays own;
            collectArrays(own);
            other.copyViewsOf(own);
        }
        m_planes = std::exchange(other.m_planes, {});
        return *this;
    }
    RTE::verify(GetDepth() == other.GetDepth(), "Depth of image volumes has to be identical!");
    for (unsigned int z = 0; z < GetDepth(); ++z) {
        *m_planes[z] = std::as_const(*other.m_planes[z]);
    }
    return *this;
}

template <typename T>
void ImageVolume<T>::Assign(const ImageVolumeVariant& source)
{
    Private::verifyImageType(source.GetDataType());
    if (this != &source) {
        assignPlanes(source);
    }
}

template <typename T>
ImageVolume<T>& ImageVolume<T>::operator=(T value)
{
    for (const auto& plane : m_planes) {
        *plane = value;
    }
    return *this;
}

template <typename T>
Math::Size3T<unsigned int> ImageVolume<T>::GetSize() const noexcept
{
    if (m_planes.empty()) {
        return {};
    }
    return {GetWidth(), GetHeight(), GetDepth()};
}

template <typename T>
bool ImageVolume<T>::HasOwnerShip() const noexcept
{
    return std::all_of(m_planes.begin(), m_planes.end(), [](const auto& plane) {
        return isMovedFrom(*plane) || plane->GetImageData().HasOwnerShip();
    });
}

template <typename T>
E_DataType ImageVolume<T>::GetDataType() const noexcept
{
    return static_cast<E_DataType>(PixelTypes::number<T>);
}

template <typename T>
std::unique_ptr<ImageVolumeVariant> ImageVolume<T>::CreateCopy() const
{
    return std::make_unique<ImageVolume>(*this);
}

template <typename T>
const Image<T>& ImageVolume<T>::getPlane(unsigned int z) const
{
    RTE::verify(z < m_planes.size(), "z-plane does not exist");
    return *m_planes[z];
}

template <typename T>
Image<T>& ImageVolume<T>::getPlane(unsigned int z)
{
    return const_cast<Image<T>&>(std::as_const(*this).getPlane(z));
}

template <typename T>
std::shared_ptr<ImageVariant> ImageVolume<T>::getPlaneSPtr(unsigned int z)
{
    return getPlaneSPtrT(z);
}

template <typename T>
std::shared_ptr<Image<T>> ImageVolume<T>::getPlaneSPtrT(unsigned int z)
{
    RTE::verify(z < m_planes.size(), "z-plane does not exist");
    return m_planes[z];
}

template <typename T>
ImageVolume<T>& ImageVolume<T>::operator*=(double operand)
{
    for (const auto& plane : m_planes) {
        *plane *= operand;
    }
    return *this;
}

template <typename T>
ImageVolume<T>& ImageVolume<T>::operator+=(double operand)
{
    for (const auto& plane : m_planes) {
        *plane += operand;
    }
    return *this;
}

template <typename T>
ImageVolume<T>& ImageVolume<T>::operator-=(double operand)
{
    for (const auto& plane : m_planes) {
        *plane -= operand;
    }
    return *this;
}

template <typename T>
ImageVolume<T>& ImageVolume<T>::operator/=(double operand)
{
    for (const auto& plane : m_planes) {
        *plane /= operand;
    }
    return *this;
}

template <typename T>
ImageVolume<T> ImageVolume<T>::operator*(double operand) const
{
    ImageVolume result(*this);
    result *= operand;
    return result;
}

template <typename T>
ImageVolume<T> ImageVolume<T>::operator+(double operand) const
{
    ImageVolume result(*this);
    result += operand;
    return result;
}

template <typename T>
ImageVolume<T> ImageVolume<T>::operator-(double operand) const
{
    ImageVolume result(*this);
    result -= operand;
    return result;
}

template <typename T>
ImageVolume<T> ImageVolume<T>::operator/(double operand) const
{
    ImageVolume result(*this);
    result /= operand;
    return result;
}

template <typename T>
void ImageVolume<T>::takePlanes(Planes planes)
{
    RTE::verify(!planes.empty(), noPlanes);
    for (const auto& plane : planes) {
        RTE::verify(plane != nullptr, "Given plane data pointer is null!");
    }
    // From the second on: a scale that is no number does not even equal itself.
    for (std::size_t z = 1; z < planes.size(); ++z) {
        verifyConsistent(planes[z].get(), *planes.front());
    }
    m_planes = std::move(planes);
    shareParts(first().GetAttributesSPtr());
}

/// All planes then share these attributes and the scales of plane 0.
template <typename T>
void ImageVolume<T>::shareParts(const std::shared_ptr<Attributes>& attributes)
{
    for (const auto& plane : m_planes) {
        auto shared = attributes;
        plane->SwapAttributes(shared);
        plane->SetSharedScales(first().GetScaleXShared(), first().GetScaleYShared(),
                               first().GetScaleZShared(), first().GetScaleIShared());
    }
}

template <typename T>
void ImageVolume<T>::assignPlanes(const ImageVolumeVariant& source)
{
    // A plane that was moved away would be rebuilt with scales and attributes of its own.
    const bool isComplete =
        std::none_of(m_planes.begin(), m_planes.end(), [](const auto& plane) { return isMovedFrom(*plane); });
    if (m_planes.empty() || !isComplete || GetSize() != source.GetSize()) {
        RTE::verify(HasOwnerShip(), "Assigment of non owning image volume with different size not possible");
        copyPlanes(source);
        return;
    }
    for (unsigned int z = 0; z < GetDepth(); ++z) {
        m_planes[z]->assignPixelsAndMask(source.getPlane(z));
        m_planes[z]->GetScalarFields().DeepCopyFrom(source.getPlane(z).GetScalarFields());
    }
    Private::assignScales(source, *this);
    Private::mergeAttributes(source.GetAttributes(), GetAttributes());
}

/// Replaces the planes by copies of the source's, of this type.
template <typename T>
void ImageVolume<T>::copyPlanes(const ImageVolumeVariant& source)
{
    RTE::verify(source.GetDepth() > 0, noPlanes);
    // Complete before the old ones go: the source may view them.
    ImageVolume copy;
    copy.m_planes.reserve(source.GetDepth());
    for (unsigned int z = 0; z < source.GetDepth(); ++z) {
        auto& plane = copy.m_planes.emplace_back(new Image<T>());
        plane->assignPixelsAndMask(source.getPlane(z));
        plane->GetScalarFields().DeepCopyFrom(source.getPlane(z).GetScalarFields());
    }
    Private::assignScales(source, copy);
    copy.shareParts(std::make_shared<AttributesContainer>(source.GetAttributes()));
    m_planes.swap(copy.m_planes);
}

template <typename T>
bool ImageVolume<T>::hasViews() const
{
    return std::any_of(m_planes.begin(), m_planes.end(), [](const auto& plane) { return plane->hasViews(); });
}

template <typename T>
void ImageVolume<T>::collectArrays(Private::OwnedArrays& arrays) const
{
    for (const auto& plane : m_planes) {
        plane->collectArrays(arrays);
    }
}

template <typename T>
void ImageVolume<T>::copyViewsOf(const Private::OwnedArrays& arrays)
{
    for (const auto& plane : m_planes) {
        plane->copyViewsOf(arrays);
    }
}

template <typename T>
std::unique_ptr<ImageVolumeVariant>
MoveImageVariantListToImageVolumeVariantT(std::vector<std::unique_ptr<ImageVariant>> planes)
{
    RTE::verify(!planes.empty(), "MoveImageVariantListToImageVolumeVariantT: planes is empty");
    std::vector<std::unique_ptr<Image<T>>> typed;
    typed.reserve(planes.size());
    for (std::unique_ptr<ImageVariant>& plane : planes) {
        if (plane == nullptr || plane->GetDataType() == E_DataType(PixelTypes::number<T>)) {
            typed.emplace_back(static_cast<Image<T>*>(plane.release()));
        }
    }
    RTE::verify(!typed.empty(), "MoveImageVariantListToImageVolumeVariantT: vector of planes is empty");
    RTE::verify(typed.size() == planes.size(), "bad image data cast");
    return std::make_unique<ImageVolume<T>>(std::move(typed));
}

#define DATAOBJECTS_INSTANTIATE(type, number, name)                                                          \
    template class ImageVolume<type>;                                                                        \
    template std::unique_ptr<ImageVolumeVariant> MoveImageVariantListToImageVolumeVariantT<type>(            \
        std::vector<std::unique_ptr<ImageVariant>>);
DATAOBJECTS_PIXEL_TYPES(DATAOBJECTS_INSTANTIATE)
#undef DATAOBJECTS_INSTANTIATE

} // namespace DataObjects
