// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/Size.h"
#include "Core/DataObjects/DataType.h"
#include "Core/DataObjects/Export.h"

#include <memory>

namespace DataObjects
{

/// Pixels of a type known only at run time: the base of ImageData<T> for the six element types.
///
/// GetDataType() is the point of dispatch; CastImageDataTo (ImageData.h) is the checked way down.
class DATAOBJECTS_DATAOBJECTS_EXPORT ImageDataVariant
{
public:
    virtual ~ImageDataVariant();

    [[nodiscard]] virtual const Math::Size2T<unsigned int>& GetSize() const noexcept = 0;
    [[nodiscard]] virtual unsigned int GetWidth() const noexcept = 0;
    [[nodiscard]] virtual unsigned int GetHeight() const noexcept = 0;
    /// A new object of the same type and size with its own pixels.
    [[nodiscard]] virtual std::unique_ptr<ImageDataVariant> CreateCopy() const = 0;
    [[nodiscard]] virtual E_DataType GetDataType() const noexcept = 0;
    /// True when the object frees its array itself; false for a view and for pixels in a memory block.
    [[nodiscard]] virtual bool HasOwnerShip() const noexcept = 0;
    /// Copies the pixels of `source`, converted to this object's type as ImageData::Assign tells.
    virtual void Assign(const ImageDataVariant& source) = 0;

protected:
    ImageDataVariant() = default;
    ImageDataVariant(const ImageDataVariant&) = default;
    ImageDataVariant& operator=(const ImageDataVariant&) = default;
};

} // namespace DataObjects
