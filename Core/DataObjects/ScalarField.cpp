// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/ScalarField.h"

#include "Core/DataObjects/RowConverter.h"

namespace DataObjects
{

namespace
{

RTE::Exception unsupportedType()
{
    return RTE::Exception(QStringLiteral("Unsupported scalar field type"));
}

void verifySupported(const ScalarFieldVariant& field)
{
    if (!PixelTypes::contains(static_cast<int>(field.GetDataType()))) {
        RTE::raise(unsupportedType());
    }
}

template <typename T>
void verifyType(const ScalarFieldVariant& field)
{
    RTE::verify(IsScalarFieldOfType<T>(field), "bad scalar field cast");
}

} // namespace

template <typename T>
ScalarField<T>::ScalarField(ImageData<T>&& data, const Zt::LinearScale& scaleI)
    : m_data(std::make_shared<ImageData<T>>(std::move(data))),
      m_scaleI(std::make_shared<Zt::LinearScale>(scaleI))
{
}

template <typename T>
ScalarField<T>::ScalarField(std::unique_ptr<ImageData<T>>&& data, const Zt::LinearScale& scaleI)
    : m_data(std::move(data)), m_scaleI(std::make_shared<Zt::LinearScale>(scaleI))
{
    RTE::verify(m_data != nullptr, "data-pointer is null");
}

template <typename T>
ScalarField<T>::ScalarField(const ImageData<T>& data, const Zt::LinearScale& scaleI)
    : ScalarField(ImageData<T>(data), scaleI)
{
}

template <typename T>
ScalarField<T>::ScalarField(const Math::Size2T<unsigned int>& size, const Zt::LinearScale& scaleI)
    : ScalarField(ImageData<T>(size), scaleI)
{
}

template <typename T>
ScalarField<T>::ScalarField(unsigned int width, unsigned int height, const Zt::LinearScale& scaleI)
    : ScalarField(Math::Size2T<unsigned int>(width, height), scaleI)
{
}

template <typename T>
ScalarField<T>::ScalarField(unsigned int width, unsigned int height, T* data, bool takeOwnership,
                            const Zt::LinearScale& scaleI)
    : ScalarField(ImageData<T>(data, width, height, takeOwnership), scaleI)
{
}

template <typename T>
ScalarField<T>::ScalarField(const ScalarField& other) : ScalarField(*other.m_data, *other.m_scaleI)
{
}

template <typename T>
ScalarField<T>::ScalarField(ScalarField&& other) noexcept = default;

template <typename T>
ScalarField<T>::ScalarField() noexcept = default;

template <typename T>
ScalarField<T>::~ScalarField() = default;

template <typename T>
ScalarField<T>& ScalarField<T>::operator=(const ScalarField& other)
{
    if (this != &other) {
        *m_data = *other.m_data;
        m_scaleI->set(*other.m_scaleI);
    }
    return *this;
}

template <typename T>
ScalarField<T>& ScalarField<T>::operator=(ScalarField&& other)
{
    if (this == &other) {
        return *this;
    }
    if (m_data != nullptr && !m_data->HasOwnerShip()) {
        return *this = std::as_const(other);
    }
    adopt(std::move(other.m_data), std::move(other.m_scaleI));
    return *this;
}

template <typename T>
void ScalarField<T>::SetData(const ImageData<T>& data)
{
    RTE::verify(data.GetSize() == GetSize(), "Image data has different size than scalar field.");
    *m_data = data;
}

template <typename T>
void ScalarField<T>::DeepCopyFrom(const ScalarFieldVariant& source)
{
    *this = CastScalarFieldTo<T>(source);
}

template <typename T>
void ScalarField<T>::Assign(const ScalarFieldVariant& source)
{
    verifySupported(source);
    verifySupported(*this);
    DeepCopyFrom(source);
}

template <typename T>
void ScalarField<T>::InitializeWithZeros()
{
    m_data->Fill(0);
}

template <typename T>
void ScalarField<T>::SetScaleI(const Zt::LinearScale& scale)
{
    m_scaleI->set(scale);
}

template <typename T>
std::unique_ptr<ScalarFieldVariant> ScalarField<T>::CreateCopy() const
{
    return std::make_unique<ScalarField>(*this);
}

template <typename T>
std::unique_ptr<ScalarFieldVariant> ScalarField<T>::MoveFrom()
{
    return std::make_unique<ScalarField>(std::move(*this));
}

template <typename T>
E_DataType ScalarField<T>::GetDataType() const noexcept
{
    return static_cast<E_DataType>(PixelTypes::number<T>);
}

template <typename T>
bool ScalarField<T>::HasSameType(const ScalarFieldVariant& other) const noexcept
{
    return GetDataType() == other.GetDataType();
}

template <typename T>
void ScalarField<T>::adopt(std::shared_ptr<ImageData<T>> data,
                           std::shared_ptr<Zt::LinearScale> scaleI) noexcept
{
    m_data = std::move(data);
    m_scaleI = std::move(scaleI);
}

template <typename T>
bool IsScalarFieldOfType(const ScalarFieldVariant& field) noexcept
{
    return field.GetDataType() == static_cast<E_DataType>(PixelTypes::number<T>);
}

template <typename T>
ScalarField<T>& CastScalarFieldTo(ScalarFieldVariant& field)
{
    verifyType<T>(field);
    return static_cast<ScalarField<T>&>(field);
}

template <typename T>
const ScalarField<T>& CastScalarFieldTo(const ScalarFieldVariant& field)
{
    verifyType<T>(field);
    return static_cast<const ScalarField<T>&>(field);
}

template <typename T>
ScalarField<T>&& CastScalarFieldTo(ScalarFieldVariant&& field)
{
    return std::move(CastScalarFieldTo<T>(field));
}

template <typename T>
std::shared_ptr<ScalarField<T>> CastScalarFieldTo(std::shared_ptr<ScalarFieldVariant> field)
{
    const bool fits = field != nullptr && IsScalarFieldOfType<T>(*field);
    return fits ? std::static_pointer_cast<ScalarField<T>>(std::move(field)) : nullptr;
}

template <typename T>
std::shared_ptr<const ScalarField<T>> CastScalarFieldTo(std::shared_ptr<const ScalarFieldVariant> field)
{
    const bool fits = field != nullptr && IsScalarFieldOfType<T>(*field);
    return fits ? std::static_pointer_cast<const ScalarField<T>>(std::move(field)) : nullptr;
}

template <typename T>
ScalarField<T> CreateScalarFieldCopyOfType(const ScalarFieldVariant& source)
{
    const auto convert = [&](auto tag) {
        using Source = typename decltype(tag)::type;
        const auto& typed = static_cast<const ScalarField<Source>&>(source);
        if constexpr (std::is_same_v<Source, T>) {
            return ScalarField<T>(typed);
        } else {
            ScalarField<T> copy(typed.GetSize(), typed.GetScaleI());
            const auto convertRow = Private::saturatingRowConverter(typed.GetDataType(), copy.GetDataType());
            convertRow(typed.begin(), copy.begin(), copy.size());
            return copy;
        }
    };
    return PixelTypes::visit(static_cast<int>(source.GetDataType()), convert, unsupportedType);
}

template <typename T>
ScalarField<T> CastOrCreateScalarFieldCopyOfType(ScalarFieldVariant&& source)
{
    return IsScalarFieldOfType<T>(source) ? ScalarField<T>(CastScalarFieldTo<T>(std::move(source)))
                                          : CreateScalarFieldCopyOfType<T>(source);
}

template <typename T>
std::shared_ptr<const ScalarField<T>>
CastOrCreateScalarFieldCopyOfType(std::shared_ptr<const ScalarFieldVariant> source)
{
    RTE::verify(source != nullptr, "Scalar field is null");
    if (auto same = CastScalarFieldTo<T>(source)) {
        return same;
    }
    return std::make_shared<const ScalarField<T>>(CreateScalarFieldCopyOfType<T>(*source));
}

#define DATAOBJECTS_INSTANTIATE(type, number, name) DATAOBJECTS_SCALAR_FIELD(, type)
DATAOBJECTS_PIXEL_TYPES(DATAOBJECTS_INSTANTIATE)
#undef DATAOBJECTS_INSTANTIATE

} // namespace DataObjects
