// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/ImageData.h"

#include "Core/Common/Array.h"
#include "Core/DataObjects/PixelArithmetic.h"
#include "Core/DataObjects/RowConverter.h"
#include "Core/DataObjects/VisitImageType.h"

#include <cstring>
#include <functional>

namespace DataObjects
{

namespace
{

bool sameSize(const Math::Size2T<unsigned int>& first, const Math::Size2T<unsigned int>& second)
{
    return first.width == second.width && first.height == second.height;
}

unsigned long long pixelCount(const Math::Size2T<unsigned int>& size)
{
    return static_cast<unsigned long long>(size.width) * size.height;
}

void verifySameSize(const ImageDataVariant& source, const ImageDataVariant& destination,
                    RTE::SourceLocation location = RTE::SourceLocation::current())
{
    RTE::verify(sameSize(source.GetSize(), destination.GetSize()),
                "Source and destination have different sizes.", location);
}

/// \throws RTE::VerificationFailed "data-pointer is null" when the pixels were released
template <typename Data>
auto* existingPixels(Data& data, RTE::SourceLocation location = RTE::SourceLocation::current())
{
    RTE::verify(data.GetRawPointer() != nullptr || data.empty(), "data-pointer is null", location);
    return data.GetRawPointer();
}

} // namespace

template <typename T>
void ImageData<T>::ReleaseAndDelete::operator()(RTE::MemoryBlock* block) const
{
    block->release();
    delete block;
}

template <typename T>
ImageData<T>::ImageData(const Math::Size2T<unsigned int>& size)
    : m_hasOwnerShip(true), m_size(size), m_rowLength(size.width), m_data(RTE::newArray<T>(pixelCount(size)))
{
}

template <typename T>
ImageData<T>::ImageData(unsigned int width, unsigned int height)
    : ImageData(Math::Size2T<unsigned int>(width, height))
{
}

template <typename T>
ImageData<T>::ImageData(const Math::Size2T<unsigned int>& size, T value) : ImageData(size)
{
    Fill(value);
}

template <typename T>
ImageData<T>::ImageData(unsigned int width, unsigned int height, T value)
    : ImageData(Math::Size2T<unsigned int>(width, height), value)
{
}

template <typename T>
ImageData<T>::ImageData(T* data, const Math::Size2T<unsigned int>& size, bool hasOwnerShip)
    : m_hasOwnerShip(hasOwnerShip), m_size(size), m_rowLength(size.width), m_data(data)
{
    RTE::verify(m_data != nullptr, "data-pointer is null");
}

template <typename T>
ImageData<T>::ImageData(T* data, unsigned int width, unsigned int height, bool hasOwnerShip)
    : ImageData(data, Math::Size2T<unsigned int>(width, height), hasOwnerShip)
{
}

template <typename T>
ImageData<T>::ImageData(std::unique_ptr<RTE::MemoryBlock> block, unsigned int width, unsigned int height)
    : m_hasOwnerShip(false), m_size(width, height), m_rowLength(width),
      m_data(block ? static_cast<T*>(block->data()) : nullptr), m_memoryBlock(block.release())
{
    RTE::verify(m_data != nullptr, "data-pointer is null");
}

template <typename T>
ImageData<T>::ImageData(std::unique_ptr<RTE::MemoryBlock> block, unsigned int width, unsigned int height,
                        T value)
    : ImageData(std::move(block), width, height)
{
    Fill(value);
}

template <typename T>
ImageData<T>::ImageData(const ImageData& other) : ImageData(other.m_size)
{
    copyPixels(existingPixels(other));
}

template <typename T>
ImageData<T>::ImageData(ImageData&& other) noexcept
{
    stealFrom(other);
}

template <typename T>
ImageData<T>::~ImageData()
{
    if (m_hasOwnerShip) {
        RTE::deleteArray(m_data, size());
    }
}

template <typename T>
ImageData<T>& ImageData<T>::operator=(const ImageData& other)
{
    if (this != &other) {
        verifySameSize(other, *this);
        static_cast<void>(existingPixels(*this));
        copyPixels(existingPixels(other));
    }
    return *this;
}

template <typename T>
ImageData<T>& ImageData<T>::operator=(ImageData&& other)
{
    if (this == &other) {
        return *this;
    }
    if (m_hasOwnerShip) {
        if (isSeenBy(other)) {
            ImageData copy(std::as_const(other));
            other.stealFrom(copy);
        }
        RTE::deleteArray(m_data, size());
        stealFrom(other);
        return *this;
    }
    const T* const source = existingPixels(other);
    if (!sameSize(m_size, other.m_size)) {
        m_data = RTE::newArray<T>(other.size());
        m_size = other.m_size;
        m_rowLength = m_size.width;
        m_hasOwnerShip = true;
    }
    copyPixels(source);
    return *this;
}

template <typename T>
ImageData<T>& ImageData<T>::operator=(T value)
{
    Fill(value);
    return *this;
}

template <typename T>
void ImageData<T>::Fill(T value)
{
    Private::fill(existingPixels(*this), size(), value);
}

template <typename T>
void ImageData<T>::Assign(const ImageDataVariant& source)
{
    const auto copyFrom = [&](auto tag) {
        using Source = typename decltype(tag)::type;
        const auto& typed = static_cast<const ImageData<Source>&>(source);
        if constexpr (std::is_same_v<Source, T>) {
            *this = typed;
        } else {
            verifySameSize(source, *this);
            Private::rowConverter(source.GetDataType(), GetDataType())(existingPixels(typed),
                                                                       existingPixels(*this), size());
        }
    };
    Private::visitImageDataType(source.GetDataType(), copyFrom);
}

template <typename T>
E_DataType ImageData<T>::GetDataType() const noexcept
{
    return static_cast<E_DataType>(PixelTypes::number<T>);
}

template <typename T>
std::unique_ptr<ImageDataVariant> ImageData<T>::CreateCopy() const
{
    return std::make_unique<ImageData>(*this);
}

template <typename T>
T* ImageData<T>::ReleaseRawPointer() noexcept
{
    return m_hasOwnerShip ? std::exchange(m_data, nullptr) : nullptr;
}

template <typename T>
ImageData<T>& ImageData<T>::operator*=(double operand)
{
    Private::multiply(existingPixels(*this), size(), operand);
    return *this;
}

template <typename T>
ImageData<T>& ImageData<T>::operator+=(double operand)
{
    Private::add(existingPixels(*this), size(), operand);
    return *this;
}

template <typename T>
ImageData<T>& ImageData<T>::operator-=(double operand)
{
    Private::add(existingPixels(*this), size(), -operand);
    return *this;
}

template <typename T>
ImageData<T>& ImageData<T>::operator/=(double operand)
{
    Private::divide(existingPixels(*this), size(), operand);
    return *this;
}

template <typename T>
ImageData<T> ImageData<T>::operator*(double operand) const
{
    ImageData result(*this);
    result *= operand;
    return result;
}

template <typename T>
ImageData<T> ImageData<T>::operator+(double operand) const
{
    ImageData result(*this);
    result += operand;
    return result;
}

template <typename T>
ImageData<T> ImageData<T>::operator-(double operand) const
{
    ImageData result(*this);
    result -= operand;
    return result;
}

template <typename T>
ImageData<T> ImageData<T>::operator/(double operand) const
{
    ImageData result(*this);
    result /= operand;
    return result;
}

template <typename T>
ImageData<T>& ImageData<T>::operator/=(const ImageData& divisor)
{
    RTE::verify(sameSize(m_size, divisor.m_size), "Mismatching image sizes");
    Private::divideBy(existingPixels(*this), size(), existingPixels(divisor));
    return *this;
}

/// Whether `other` is a view of the array that this object frees.
template <typename T>
bool ImageData<T>::isSeenBy(const ImageData& other) const noexcept
{
    return !other.m_hasOwnerShip && std::less_equal<>()(m_data, other.m_data) &&
           std::less<>()(other.m_data, m_data + size());
}

/// The memory blocks of both stay where they are.
template <typename T>
void ImageData<T>::stealFrom(ImageData& other) noexcept
{
    m_hasOwnerShip = std::exchange(other.m_hasOwnerShip, true);
    m_size = std::exchange(other.m_size, {});
    m_rowLength = std::exchange(other.m_rowLength, 0);
    m_data = std::exchange(other.m_data, nullptr);
}

template <typename T>
void ImageData<T>::copyPixels(const T* source) noexcept
{
    // Two views may overlap.
    if (source != m_data && !empty()) {
        std::memmove(m_data, source, size() * sizeof(T));
    }
}

#define DATAOBJECTS_INSTANTIATE(type, number, name) template class ImageData<type>;
DATAOBJECTS_PIXEL_TYPES(DATAOBJECTS_INSTANTIATE)
#undef DATAOBJECTS_INSTANTIATE

} // namespace DataObjects
