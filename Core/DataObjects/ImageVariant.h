// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/LinearScale.h"
#include "Core/DataObjects/ImageDataVariant.h"
#include "Core/DataObjects/MaskStrategy.h"
#include "Core/DataObjects/ScalarFields.h"

#include <memory>

namespace DataObjects
{

class Attributes;

/// An image of a pixel type known only at run time: the base of Image<T> for the six element types.
///
/// GetDataType() is the point of dispatch. What an operation does stands with Image.
class DATAOBJECTS_DATAOBJECTS_EXPORT ImageVariant
{
public:
    virtual ~ImageVariant();

    /// The validity of the pixels, which is made now if nobody asked for it before.
    [[nodiscard]] virtual const Mask& GetMask() const = 0;
    [[nodiscard]] virtual Mask& GetMask() = 0;
    [[nodiscard]] virtual E_DataType GetDataType() const noexcept = 0;

    /// \name Scales
    /// X and Y turn pixel columns and rows into physical positions, Z the index of a plane, I a pixel value
    /// into an intensity. Setting one changes it in place, for all objects that share it.
    /// \{
    [[nodiscard]] virtual const Zt::LinearScale& GetScaleX() const noexcept = 0;
    [[nodiscard]] virtual Zt::LinearScale& GetScaleX() noexcept = 0;
    virtual void SetScaleX(const Zt::LinearScale& scale) = 0;
    [[nodiscard]] virtual const Zt::LinearScale& GetScaleY() const noexcept = 0;
    [[nodiscard]] virtual Zt::LinearScale& GetScaleY() noexcept = 0;
    virtual void SetScaleY(const Zt::LinearScale& scale) = 0;
    [[nodiscard]] virtual const Zt::LinearScale& GetScaleZ() const noexcept = 0;
    [[nodiscard]] virtual Zt::LinearScale& GetScaleZ() noexcept = 0;
    virtual void SetScaleZ(const Zt::LinearScale& scale) = 0;
    [[nodiscard]] virtual const Zt::LinearScale& GetScaleI() const noexcept = 0;
    [[nodiscard]] virtual Zt::LinearScale& GetScaleI() noexcept = 0;
    virtual void SetScaleI(const Zt::LinearScale& scale) = 0;
    /// \}

    [[nodiscard]] virtual const Attributes& GetAttributes() const noexcept = 0;
    [[nodiscard]] virtual Attributes& GetAttributes() noexcept = 0;
    /// Replaces all attributes in place, for all objects that share them.
    virtual void SetAttributes(const Attributes& attributes) = 0;
    [[nodiscard]] virtual const ScalarFields& GetScalarFields() const noexcept = 0;
    [[nodiscard]] virtual ScalarFields& GetScalarFields() noexcept = 0;

    [[nodiscard]] virtual const Math::Size2T<unsigned int>& GetSize() const noexcept = 0;
    [[nodiscard]] virtual unsigned int GetWidth() const noexcept = 0;
    [[nodiscard]] virtual unsigned int GetHeight() const noexcept = 0;

    /// A deep copy of the same type.
    [[nodiscard]] virtual std::unique_ptr<ImageVariant> CreateCopy() const = 0;
    [[nodiscard]] virtual std::shared_ptr<const Mask> GetMaskSPtr() const = 0;
    [[nodiscard]] virtual std::shared_ptr<Mask> GetMaskSPtr() = 0;
    [[nodiscard]] virtual std::shared_ptr<const ImageDataVariant> GetImageDataSPtr() const noexcept = 0;
    [[nodiscard]] virtual std::shared_ptr<ImageDataVariant> GetImageDataSPtr() noexcept = 0;
    [[nodiscard]] virtual const ImageDataVariant& GetImageData() const noexcept = 0;
    [[nodiscard]] virtual ImageDataVariant& GetImageData() noexcept = 0;
    /// True when the mask exists, so that asking for it allocates nothing.
    [[nodiscard]] virtual bool IsMaskSpawned() const = 0;
    /// Destroys the old strategy. The mask of the new one has the size of the image.
    /// \throws RTE::VerificationFailed "Mask is not valid." for null
    virtual void ReplaceMaskStrategy(std::unique_ptr<MaskStrategy> strategy) = 0;
    /// Takes the values of an image of any type as Image::Assign tells.
    virtual void Assign(const ImageVariant& source) = 0;

protected:
    ImageVariant() noexcept = default;
    ImageVariant(const ImageVariant&) noexcept = default;
    ImageVariant& operator=(const ImageVariant&) noexcept = default;
};

/// True when no pixel of the mask is false; makes the mask if nobody asked for it before.
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT bool AllValuesValid(const ImageVariant& image);

} // namespace DataObjects
