// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/Image.h"

#include "Core/DataObjects/AttributesContainer.h"
#include "Core/DataObjects/ImageParts.h"
#include "Core/DataObjects/InstantMask.h"
#include "Core/DataObjects/LazyMask.h"
#include "Core/DataObjects/VisitImageType.h"

namespace DataObjects
{

namespace
{

using Size = Math::Size2T<unsigned int>;
using Scale = std::shared_ptr<Zt::LinearScale>;

/// An InstantMask would leave the pixels of an invalid mask uninitialised.
std::unique_ptr<MaskStrategy> uniformMask(const Size& size, bool valid)
{
    return std::make_unique<InstantMask>(Mask(size, valid));
}

void verifyMaskSize(const Mask& mask, const Size& size)
{
    RTE::verify(mask.GetSize() == size, "Mask has invalid size.");
}

void verifyScales(const Scale& x, const Scale& y, const Scale& z, const Scale& i)
{
    RTE::verify(x != nullptr, "ScaleX is not valid.");
    RTE::verify(y != nullptr, "ScaleY is not valid.");
    RTE::verify(z != nullptr, "ScaleZ is not valid.");
    RTE::verify(i != nullptr, "ScaleI is not valid.");
}

} // namespace

template <typename T>
Image<T>::Image() noexcept = default;

template <typename T>
Image<T>::Image(const Size& size, bool valid)
{
    build(std::make_shared<ImageData<T>>(size), uniformMask(size, valid));
}

template <typename T>
Image<T>::Image(unsigned int width, unsigned int height, bool valid) : Image(Size(width, height), valid)
{
}

template <typename T>
Image<T>::Image(const Size& size, T value, bool valid)
{
    build(std::make_shared<ImageData<T>>(size, value), uniformMask(size, valid));
}

template <typename T>
Image<T>::Image(unsigned int width, unsigned int height, T value, bool valid)
    : Image(Size(width, height), value, valid)
{
}

template <typename T>
Image<T>::Image(T* pixels, const Size& size, bool hasOwnerShip, bool valid)
{
    // The pixels first: if there is no memory for the mask, they are freed.
    auto data = std::make_shared<ImageData<T>>(pixels, size, hasOwnerShip);
    build(std::move(data), uniformMask(size, valid));
}

template <typename T>
Image<T>::Image(T* pixels, unsigned int width, unsigned int height, bool hasOwnerShip, bool valid)
    : Image(pixels, Size(width, height), hasOwnerShip, valid)
{
}

template <typename T>
Image<T>::Image(T* pixels, bool* mask, unsigned int width, unsigned int height)
{
    build(std::make_shared<ImageData<T>>(pixels, width, height, false),
          std::make_unique<InstantMask>(Mask(mask, width, height, false)));
}

template <typename T>
Image<T>::Image(std::unique_ptr<RTE::MemoryBlock> block, std::unique_ptr<MaskStrategy> mask,
                unsigned int width, unsigned int height)
{
    build(std::make_shared<ImageData<T>>(std::move(block), width, height), std::move(mask));
}

template <typename T>
Image<T>::Image(ImageData<T>&& data, Mask&& mask)
{
    verifyMaskSize(mask, data.GetSize());
    build(std::make_shared<ImageData<T>>(std::move(data)), std::make_unique<InstantMask>(std::move(mask)));
}

template <typename T>
Image<T>::Image(ImageDataVariant&& data)
{
    auto& typed = CastImageDataTo<T>(data);
    auto mask = uniformMask(data.GetSize(), true);
    build(std::make_shared<ImageData<T>>(std::move(typed)), std::move(mask));
}

template <typename T>
Image<T>::Image(ImageDataVariant&& data, Mask&& mask)
    : Image(CastImageDataTo<T>(std::move(data)), std::move(mask))
{
}

template <typename T>
Image<T>::Image(ImageDataVariant&& data, std::unique_ptr<MaskStrategy> mask)
{
    auto& typed = CastImageDataTo<T>(data);
    RTE::verify(mask != nullptr, "Mask is not valid.");
    build(std::make_shared<ImageData<T>>(std::move(typed)), std::move(mask));
}

template <typename T>
Image<T>::Image(const ImageDataVariant& data, const Mask& mask)
{
    verifyMaskSize(mask, data.GetSize());
    auto converted = std::make_shared<ImageData<T>>(data.GetSize());
    converted->Assign(data);
    build(std::move(converted), std::make_unique<InstantMask>(Mask(mask)));
}

template <typename T>
Image<T>::Image(std::shared_ptr<ImageDataVariant> data, std::shared_ptr<Mask> mask)
{
    RTE::verify(data != nullptr, "data-pointer is null");
    const std::shared_ptr<ImageData<T>> typed(data, &CastImageDataTo<T>(*data));
    RTE::verify(mask != nullptr, "Mask is not valid.");
    verifyMaskSize(*mask, typed->GetSize());
    build(typed, std::make_unique<InstantMask>(std::move(mask)));
}

template <typename T>
Image<T>::Image(T* pixels, const Size& size, std::shared_ptr<Mask> mask, Scale scaleX, Scale scaleY,
                Scale scaleZ, Scale scaleI, std::shared_ptr<Attributes> attributes,
                std::shared_ptr<ScalarFields> scalarFields)
    : m_data(std::make_shared<ImageData<T>>(pixels, size, false)), m_scaleX(std::move(scaleX)),
      m_scaleY(std::move(scaleY)), m_scaleZ(std::move(scaleZ)), m_scaleI(std::move(scaleI)),
      m_attributes(std::move(attributes)), m_scalarFields(std::move(scalarFields))
{
    RTE::verify(mask != nullptr, "Mask is not valid.");
    verifyMaskSize(*mask, size);
    verifyScales(m_scaleX, m_scaleY, m_scaleZ, m_scaleI);
    RTE::verify(m_attributes != nullptr, "Attributes are not valid.");
    RTE::verify(m_scalarFields != nullptr, "Scalar fields are not valid.");
    RTE::verify(m_scalarFields->GetSizeOfScalarFields() == size,
                "Sizes of scalar fields is different to image size.");
    m_mask = std::make_unique<InstantMask>(std::move(mask));
}

template <typename T>
Image<T>::Image(const Image& other) : ImageVariant()
{
    assignParts(other);
}

template <typename T>
Image<T>::Image(Image&& other) noexcept
{
    swap(other);
}

template <typename T>
Image<T>::~Image() = default;

template <typename T>
Image<T>& Image<T>::operator=(const Image& other)
{
    if (this != &other) {
        assignParts(other);
    }
    return *this;
}

template <typename T>
Image<T>& Image<T>::operator=(Image&& other)
{
    if (this == &other) {
        return *this;
    }
    if (m_data == nullptr || other.m_data == nullptr) {
        Image taken(std::move(other));
        swap(taken);
        return *this;
    }
    if (other.hasViews()) {
        Private::OwnedArrays own;
        collectArrays(own);
        other.copyViewsOf(own);
    }
    // Taken before the pixels move, which leaves no size behind.
    const Size size = GetSize();
    const Size otherSize = other.GetSize();
    if (m_data->HasOwnerShip()) {
        m_data = std::move(other.m_data);
        m_scaleX = std::move(other.m_scaleX);
        m_scaleY = std::move(other.m_scaleY);
        m_scaleZ = std::move(other.m_scaleZ);
        m_scaleI = std::move(other.m_scaleI);
        m_attributes = std::move(other.m_attributes);
        m_scalarFields = std::move(other.m_scalarFields);
    } else {
        *m_data = *other.m_data;
        Private::assignScales(other, *this);
        Private::replaceAttributes(*other.m_attributes, *m_attributes);
        m_scalarFields->DeepCopyFrom(*other.m_scalarFields);
    }
    takeMaskFrom(other, size, otherSize);
    return *this;
}

template <typename T>
bool Image<T>::hasViews() const
{
    return m_data != nullptr &&
           (!m_data->HasOwnerShip() || (m_mask->IsMaskSpawned() && !GetMask().HasOwnerShip()));
}

template <typename T>
void Image<T>::collectArrays(Private::OwnedArrays& arrays) const
{
    if (m_data != nullptr) {
        arrays.add(*m_data);
        if (m_mask->IsMaskSpawned()) {
            arrays.add(GetMask());
        }
    }
}

/// Makes own what lies in arrays that are about to be freed.
template <typename T>
void Image<T>::copyViewsOf(const Private::OwnedArrays& arrays)
{
    if (m_data == nullptr) {
        return;
    }
    if (arrays.areSeenBy(*m_data)) {
        m_data = std::make_shared<ImageData<T>>(data());
    }
    if (m_mask->IsMaskSpawned() && arrays.areSeenBy(GetMask())) {
        m_mask = std::make_unique<InstantMask>(Mask(std::as_const(*this).GetMask()));
    }
}

template <typename T>
void Image<T>::takeMaskFrom(Image& source, const Size& size, const Size& sourceSize)
{
    if (m_mask->IsMaskSpawned() && m_mask->ref().HasOwnerShip()) {
        m_mask.swap(source.m_mask);
    } else if (size == sourceSize) {
        Private::assignMask(source, *m_mask);
    } else {
        m_mask = std::make_unique<InstantMask>(Mask(source.GetMask()));
    }
}

template <typename T>
void Image<T>::Assign(const ImageVariant& source)
{
    Private::verifyImageType(source.GetDataType());
    if (this != &source) {
        assignParts(source);
    }
}

template <typename T>
Image<T>& Image<T>::operator=(T value)
{
    *m_data = value;
    return *this;
}

template <typename T>
E_DataType Image<T>::GetDataType() const noexcept
{
    return static_cast<E_DataType>(PixelTypes::number<T>);
}

template <typename T>
std::unique_ptr<ImageVariant> Image<T>::CreateCopy() const
{
    return std::make_unique<Image>(*this);
}

template <typename T>
std::shared_ptr<const ImageDataVariant> Image<T>::GetImageDataSPtr() const noexcept
{
    return m_data;
}

template <typename T>
std::shared_ptr<ImageDataVariant> Image<T>::GetImageDataSPtr() noexcept
{
    return m_data;
}

template <typename T>
std::shared_ptr<const Mask> Image<T>::GetMaskSPtr() const
{
    return m_mask->sptr();
}

template <typename T>
std::shared_ptr<Mask> Image<T>::GetMaskSPtr()
{
    return m_mask->sptr();
}

template <typename T>
bool Image<T>::IsMaskSpawned() const
{
    return m_mask->IsMaskSpawned();
}

template <typename T>
void Image<T>::ReplaceMaskStrategy(std::unique_ptr<MaskStrategy> strategy)
{
    RTE::verify(strategy != nullptr, "Mask is not valid.");
    m_mask = std::move(strategy);
}

template <typename T>
void Image<T>::SetScaleX(const Zt::LinearScale& scale)
{
    m_scaleX->set(scale);
}

template <typename T>
void Image<T>::SetScaleY(const Zt::LinearScale& scale)
{
    m_scaleY->set(scale);
}

template <typename T>
void Image<T>::SetScaleZ(const Zt::LinearScale& scale)
{
    m_scaleZ->set(scale);
}

template <typename T>
void Image<T>::SetScaleI(const Zt::LinearScale& scale)
{
    m_scaleI->set(scale);
}

template <typename T>
void Image<T>::SetSharedScales(Scale scaleX, Scale scaleY, Scale scaleZ, Scale scaleI)
{
    verifyScales(scaleX, scaleY, scaleZ, scaleI);
    m_scaleX = std::move(scaleX);
    m_scaleY = std::move(scaleY);
    m_scaleZ = std::move(scaleZ);
    m_scaleI = std::move(scaleI);
}

template <typename T>
void Image<T>::SetAttributes(const Attributes& attributes)
{
    Private::replaceAttributes(attributes, *m_attributes);
}

template <typename T>
void Image<T>::SwapAttributes(std::shared_ptr<Attributes>& attributes)
{
    RTE::verify(attributes != nullptr, "Attributes are not valid.");
    m_attributes.swap(attributes);
}

template <typename T>
Image<T>& Image<T>::operator*=(double operand)
{
    *m_data *= operand;
    return *this;
}

template <typename T>
Image<T>& Image<T>::operator+=(double operand)
{
    *m_data += operand;
    return *this;
}

template <typename T>
Image<T>& Image<T>::operator-=(double operand)
{
    *m_data -= operand;
    return *this;
}

template <typename T>
Image<T>& Image<T>::operator/=(double operand)
{
    *m_data /= operand;
    return *this;
}

template <typename T>
Image<T> Image<T>::operator*(double operand) const
{
    Image result(*this);
    result *= operand;
    return result;
}

template <typename T>
Image<T> Image<T>::operator+(double operand) const
{
    Image result(*this);
    result += operand;
    return result;
}

template <typename T>
Image<T> Image<T>::operator-(double operand) const
{
    Image result(*this);
    result -= operand;
    return result;
}

template <typename T>
Image<T> Image<T>::operator/(double operand) const
{
    Image result(*this);
    result /= operand;
    return result;
}

template <typename T>
Image<T> Image<T>::operator/(const Image& divisor) const
{
    Image result(*this);
    *result.m_data /= *divisor.m_data;
    // A mask that nobody asked for is all valid.
    if (divisor.IsMaskSpawned()) {
        result.GetMask() &= divisor.GetMask();
    }
    return result;
}

template <typename T>
void Image<T>::build(std::shared_ptr<ImageData<T>> data, std::unique_ptr<MaskStrategy> mask)
{
    RTE::verify(mask != nullptr, "Mask is not valid.");
    m_data = std::move(data);
    m_mask = std::move(mask);
    m_scaleX = std::make_shared<Zt::LinearScale>(Zt::ScalePreset::X);
    m_scaleY = std::make_shared<Zt::LinearScale>(Zt::ScalePreset::Y);
    m_scaleZ = std::make_shared<Zt::LinearScale>(Zt::ScalePreset::Z);
    m_scaleI = std::make_shared<Zt::LinearScale>(Zt::ScalePreset::I);
    m_attributes = std::make_shared<AttributesContainer>();
    m_scalarFields = std::make_shared<ScalarFields>(GetSize());
}

/// The pixels and the mask are uninitialised: for an assignment, which writes both.
template <typename T>
void Image<T>::buildIfMovedFrom(const Size& size)
{
    if (m_data == nullptr) {
        build(std::make_shared<ImageData<T>>(size),
              std::make_unique<LazyMask>(size.width, size.height, false));
    }
}

template <typename T>
void Image<T>::assignPixelsAndMask(const ImageVariant& source)
{
    buildIfMovedFrom(source.GetSize());
    m_data->Assign(source.GetImageData());
    Private::assignMask(source, *m_mask);
}

template <typename T>
void Image<T>::assignParts(const ImageVariant& source)
{
    assignPixelsAndMask(source);
    Private::assignScales(source, *this);
    Private::replaceAttributes(source.GetAttributes(), *m_attributes);
    m_scalarFields->DeepCopyFrom(source.GetScalarFields());
}

template <typename T>
void Image<T>::swap(Image& other) noexcept
{
    m_data.swap(other.m_data);
    m_mask.swap(other.m_mask);
    m_scaleX.swap(other.m_scaleX);
    m_scaleY.swap(other.m_scaleY);
    m_scaleZ.swap(other.m_scaleZ);
    m_scaleI.swap(other.m_scaleI);
    m_attributes.swap(other.m_attributes);
    m_scalarFields.swap(other.m_scalarFields);
}

#define DATAOBJECTS_INSTANTIATE(type, number, name) template class Image<type>;
DATAOBJECTS_PIXEL_TYPES(DATAOBJECTS_INSTANTIATE)
#undef DATAOBJECTS_INSTANTIATE

} // namespace DataObjects
