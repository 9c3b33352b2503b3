// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/LinearScale.h"
#include "Core/DataObjects/ImageDataVariant.h"

#include <memory>

namespace DataObjects
{

/// A plane of numbers that rides with an image or a vector field under a name, such as a correlation value
/// per vector or a temperature per pixel; of a type known only at run time: the base of ScalarField<T>.
///
/// It has the width and height of its owner, an element type and an intensity scale of its own. Mask, x and y
/// scale and attributes are the owner's. GetDataType() is the point of dispatch, CastScalarFieldTo
/// (ScalarField.h) the checked way down.
class DATAOBJECTS_DATAOBJECTS_EXPORT ScalarFieldVariant
{
public:
    virtual ~ScalarFieldVariant();

    [[nodiscard]] virtual const Math::Size2T<unsigned int>& GetSize() const noexcept = 0;
    [[nodiscard]] virtual unsigned int GetWidth() const noexcept = 0;
    [[nodiscard]] virtual unsigned int GetHeight() const noexcept = 0;
    /// From stored to physical values.
    [[nodiscard]] virtual const Zt::LinearScale& GetScaleI() const noexcept = 0;
    /// Changes the scale in place: all who share it see the change.
    virtual void SetScaleI(const Zt::LinearScale& scale) = 0;
    /// A new field of the same type with its own pixels and its own scale.
    [[nodiscard]] virtual std::unique_ptr<ScalarFieldVariant> CreateCopy() const = 0;
    /// A new field of the same type that takes over pixels and scale. This one is left empty, fit only to be
    /// destroyed or assigned to by a move.
    [[nodiscard]] virtual std::unique_ptr<ScalarFieldVariant> MoveFrom() = 0;
    /// Copies pixels and scale of a field of the same type and size into what is there.
    /// \throws RTE::VerificationFailed "bad scalar field cast" when the types differ
    /// \throws RTE::VerificationFailed "Source and destination have different sizes."
    virtual void DeepCopyFrom(const ScalarFieldVariant& source) = 0;
    virtual void InitializeWithZeros() = 0;
    [[nodiscard]] virtual const ImageDataVariant& GetData() const noexcept = 0;
    [[nodiscard]] virtual ImageDataVariant& GetData() noexcept = 0;
    /// The pixels themselves, so that a view of them costs no copy; writes are seen by all who share them.
    [[nodiscard]] virtual std::shared_ptr<ImageDataVariant> ShareData() const = 0;
    [[nodiscard]] virtual std::shared_ptr<ImageDataVariant> ShareData() = 0;
    [[nodiscard]] virtual E_DataType GetDataType() const noexcept = 0;
    [[nodiscard]] virtual bool HasSameType(const ScalarFieldVariant& other) const noexcept = 0;
    /// As DeepCopyFrom, it does not convert between types.
    /// \throws RTE::Exception "Unsupported scalar field type" when one of both has none of the six types
    virtual void Assign(const ScalarFieldVariant& source) = 0;

protected:
    ScalarFieldVariant() = default;
    ScalarFieldVariant(const ScalarFieldVariant&) = default;
    ScalarFieldVariant& operator=(const ScalarFieldVariant&) = default;
};

/// `target.Assign(source)`.
DATAOBJECTS_DATAOBJECTS_EXPORT void Assign(const ScalarFieldVariant& source, ScalarFieldVariant& target);

} // namespace DataObjects
