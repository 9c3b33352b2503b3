// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/ImageData.h"
#include "Core/DataObjects/ScalarFieldVariant.h"

namespace DataObjects
{

/// A scalar field whose element type is known; exists for the six element types.
///
/// Pixels (row-major, x fastest) and intensity scale are both shared: a view made by ShareData() writes to
/// this field. Copies share nothing. Access to single pixels is unchecked. Not synchronised.
///
/// \code
/// ScalarField<float> peakRatio(width, height, Zt::LinearScale(1.0, 0.0, "", "Peak ratio"));
/// peakRatio.InitializeWithZeros();
/// peakRatio.SetPixel(3, 4, 1.7F);
/// image.GetScalarFields().Add("Peak ratio", std::move(peakRatio));
/// \endcode
template <typename T>
class DATAOBJECTS_DATAOBJECTS_EXPORT ScalarField : public ScalarFieldVariant
{
public:
    using value_type = T;
    using iterator = T*;
    using const_iterator = const T*;

    /// \name Construction
    /// \{

    /// Takes the pixels; of pixels in a memory block as the move constructor of ImageData tells.
    ScalarField(ImageData<T>&& data, const Zt::LinearScale& scaleI);
    /// Takes the object. \throws RTE::VerificationFailed "data-pointer is null"
    ScalarField(std::unique_ptr<ImageData<T>>&& data, const Zt::LinearScale& scaleI);
    /// Copies the pixels.
    ScalarField(const ImageData<T>& data, const Zt::LinearScale& scaleI);
    /// New pixels, uninitialised. \throws std::bad_alloc, also when the size in bytes overflows
    ScalarField(const Math::Size2T<unsigned int>& size, const Zt::LinearScale& scaleI);
    ScalarField(unsigned int width, unsigned int height, const Zt::LinearScale& scaleI);
    /// Wraps `data` without a copy; with `takeOwnership` the field frees it with `delete[]`.
    /// \throws RTE::VerificationFailed "data-pointer is null"
    ScalarField(unsigned int width, unsigned int height, T* data, bool takeOwnership,
                const Zt::LinearScale& scaleI);
    /// Own pixels and an own scale, also of a view.
    ScalarField(const ScalarField& other);
    /// Takes pixels and scale; `other` is left empty, to be destroyed or assigned.
    ScalarField(ScalarField&& other) noexcept;
    ~ScalarField() override;
    /// \}

    /// \name Assignment
    /// \{

    /// Copies the pixels into those that are there, then sets the scale: all who share them see the change.
    /// \throws RTE::VerificationFailed "Source and destination have different sizes."
    ScalarField& operator=(const ScalarField& other);
    /// A field that owns its pixels, or is empty, takes pixels and scale over and leaves `other` empty.
    ///
    /// A field that views foreign memory copies into it as copy assignment does, and `other` stays as it was.
    /// \throws RTE::VerificationFailed "Source and destination have different sizes." for a view
    ScalarField& operator=(ScalarField&& other);
    /// Copies the pixels into those that are there and leaves the scale.
    /// \throws RTE::VerificationFailed "Image data has different size than scalar field."
    void SetData(const ImageData<T>& data);
    void DeepCopyFrom(const ScalarFieldVariant& source) override;
    void Assign(const ScalarFieldVariant& source) override;
    void InitializeWithZeros() override;
    void SetScaleI(const Zt::LinearScale& scale) override;
    /// \}

    /// \name Copies
    /// \{
    [[nodiscard]] std::unique_ptr<ScalarFieldVariant> CreateCopy() const override;
    [[nodiscard]] std::unique_ptr<ScalarFieldVariant> MoveFrom() override;
    /// \}

    /// \name Queries
    /// \{
    [[nodiscard]] const Math::Size2T<unsigned int>& GetSize() const noexcept override
    {
        return m_data->GetSize();
    }
    [[nodiscard]] unsigned int GetWidth() const noexcept override { return m_data->GetWidth(); }
    [[nodiscard]] unsigned int GetHeight() const noexcept override { return m_data->GetHeight(); }
    [[nodiscard]] const Zt::LinearScale& GetScaleI() const noexcept override { return *m_scaleI; }
    [[nodiscard]] E_DataType GetDataType() const noexcept override;
    [[nodiscard]] bool HasSameType(const ScalarFieldVariant& other) const noexcept override;
    [[nodiscard]] const ImageDataVariant& GetData() const noexcept override { return *m_data; }
    [[nodiscard]] ImageDataVariant& GetData() noexcept override { return *m_data; }
    [[nodiscard]] const ImageData<T>& GetDataT() const noexcept { return *m_data; }
    [[nodiscard]] ImageData<T>& GetDataT() noexcept { return *m_data; }
    [[nodiscard]] std::shared_ptr<ImageDataVariant> ShareData() const override { return m_data; }
    [[nodiscard]] std::shared_ptr<ImageDataVariant> ShareData() override { return m_data; }
    [[nodiscard]] std::shared_ptr<ImageData<T>> GetSharedDataT() const noexcept { return m_data; }
    /// Number of pixels.
    [[nodiscard]] unsigned long long size() const noexcept { return m_data->size(); }
    [[nodiscard]] bool empty() const noexcept { return m_data->empty(); }
    /// \}

    /// \name Pixels, unchecked
    /// \{
    [[nodiscard]] T GetPixel(unsigned int x, unsigned int y) const noexcept { return m_data->GetPixel(x, y); }
    void SetPixel(unsigned int x, unsigned int y, T value) noexcept { m_data->SetPixel(x, y, value); }
    [[nodiscard]] const T& operator[](unsigned long long index) const noexcept
    {
        return std::as_const(*m_data)[index];
    }
    [[nodiscard]] T& operator[](unsigned long long index) noexcept { return (*m_data)[index]; }
    [[nodiscard]] const T* begin() const noexcept { return std::as_const(*m_data).begin(); }
    [[nodiscard]] T* begin() noexcept { return m_data->begin(); }
    [[nodiscard]] const T* end() const noexcept { return std::as_const(*m_data).end(); }
    [[nodiscard]] T* end() noexcept { return m_data->end(); }
    /// \}

protected:
    /// Empty until adopt() was called: for fields whose pixels and scale lie somewhere else.
    ScalarField() noexcept;
    /// Shares pixels and scale; neither may be null.
    void adopt(std::shared_ptr<ImageData<T>> data, std::shared_ptr<Zt::LinearScale> scaleI) noexcept;
    [[nodiscard]] Zt::LinearScale& scaleI() noexcept { return *m_scaleI; }

private:
    std::shared_ptr<ImageData<T>> m_data;
    std::shared_ptr<Zt::LinearScale> m_scaleI;
};

/// True when the field is a ScalarField<T>.
template <typename T>
[[nodiscard]] bool IsScalarFieldOfType(const ScalarFieldVariant& field) noexcept;

/// \name Checked down-cast
/// \throws RTE::VerificationFailed "bad scalar field cast" when the field has another type
/// \{
template <typename T>
[[nodiscard]] ScalarField<T>& CastScalarFieldTo(ScalarFieldVariant& field);
template <typename T>
[[nodiscard]] const ScalarField<T>& CastScalarFieldTo(const ScalarFieldVariant& field);
template <typename T>
[[nodiscard]] ScalarField<T>&& CastScalarFieldTo(ScalarFieldVariant&& field);
/// \}

/// \name Shared down-cast
/// Null when the field has another type or is null itself.
/// \{
template <typename T>
[[nodiscard]] std::shared_ptr<ScalarField<T>> CastScalarFieldTo(std::shared_ptr<ScalarFieldVariant> field);
template <typename T>
[[nodiscard]] std::shared_ptr<const ScalarField<T>>
CastScalarFieldTo(std::shared_ptr<const ScalarFieldVariant> field);
/// \}

/// \name Conversion
/// Values out of the range of T become its lowest or highest value, those within it are truncated toward
/// zero, and NaN becomes 0 in integers; a `double` too large for `float` becomes the largest finite one. The
/// intensity scale is that of the source.
/// \throws RTE::Exception "Unsupported scalar field type" unless the source has one of the six types
/// \{

/// A new field with the converted pixels.
template <typename T>
[[nodiscard]] ScalarField<T> CreateScalarFieldCopyOfType(const ScalarFieldVariant& source);
/// Takes over pixels and scale of a field of type T, which is left empty; converts any other, which stays.
template <typename T>
[[nodiscard]] ScalarField<T> CastOrCreateScalarFieldCopyOfType(ScalarFieldVariant&& source);
/// The same object when it is of type T, else a new converted one.
/// \throws RTE::VerificationFailed "Scalar field is null"
template <typename T>
[[nodiscard]] std::shared_ptr<const ScalarField<T>>
CastOrCreateScalarFieldCopyOfType(std::shared_ptr<const ScalarFieldVariant> source);
/// \}

/// Declares or defines all of the above for one element type; `KEYWORD` is `extern` or nothing.
#define DATAOBJECTS_SCALAR_FIELD(KEYWORD, T)                                                                 \
    KEYWORD template class ScalarField<T>;                                                                   \
    KEYWORD template DATAOBJECTS_DATAOBJECTS_EXPORT bool IsScalarFieldOfType<T>(                             \
        const ScalarFieldVariant&) noexcept;                                                                 \
    KEYWORD template DATAOBJECTS_DATAOBJECTS_EXPORT ScalarField<T>& CastScalarFieldTo<T>(                    \
        ScalarFieldVariant&);                                                                                \
    KEYWORD template DATAOBJECTS_DATAOBJECTS_EXPORT const ScalarField<T>& CastScalarFieldTo<T>(              \
        const ScalarFieldVariant&);                                                                          \
    KEYWORD template DATAOBJECTS_DATAOBJECTS_EXPORT ScalarField<T>&& CastScalarFieldTo<T>(                   \
        ScalarFieldVariant &&);                                                                              \
    KEYWORD template DATAOBJECTS_DATAOBJECTS_EXPORT std::shared_ptr<ScalarField<T>> CastScalarFieldTo<T>(    \
        std::shared_ptr<ScalarFieldVariant>);                                                                \
    KEYWORD template DATAOBJECTS_DATAOBJECTS_EXPORT std::shared_ptr<const ScalarField<T>>                    \
        CastScalarFieldTo<T>(std::shared_ptr<const ScalarFieldVariant>);                                     \
    KEYWORD template DATAOBJECTS_DATAOBJECTS_EXPORT ScalarField<T> CreateScalarFieldCopyOfType<T>(           \
        const ScalarFieldVariant&);                                                                          \
    KEYWORD template DATAOBJECTS_DATAOBJECTS_EXPORT ScalarField<T> CastOrCreateScalarFieldCopyOfType<T>(     \
        ScalarFieldVariant &&);                                                                              \
    KEYWORD template DATAOBJECTS_DATAOBJECTS_EXPORT std::shared_ptr<const ScalarField<T>>                    \
        CastOrCreateScalarFieldCopyOfType<T>(std::shared_ptr<const ScalarFieldVariant>);

#define DATAOBJECTS_EXTERN_SCALAR_FIELD(type, number, name) DATAOBJECTS_SCALAR_FIELD(extern, type)
DATAOBJECTS_PIXEL_TYPES(DATAOBJECTS_EXTERN_SCALAR_FIELD)
#undef DATAOBJECTS_EXTERN_SCALAR_FIELD

} // namespace DataObjects
