// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/ImageVariant.h"

#include <memory>
#include <vector>

namespace DataObjects
{

/// A stack of images of a pixel type known only at run time: the base of ImageVolume<T>.
///
/// GetDataType() is the point of dispatch. What an operation does stands with ImageVolume.
class DATAOBJECTS_DATAOBJECTS_EXPORT ImageVolumeVariant
{
public:
    virtual ~ImageVolumeVariant();

    /// \name Scales and attributes, which all planes share
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
    [[nodiscard]] virtual const Attributes& GetAttributes() const noexcept = 0;
    [[nodiscard]] virtual Attributes& GetAttributes() noexcept = 0;
    /// Replaces all attributes.
    virtual void SetAttributes(const Attributes& attributes) = 0;
    /// \}

    [[nodiscard]] virtual Math::Size3T<unsigned int> GetSize() const noexcept = 0;
    [[nodiscard]] virtual unsigned int GetWidth() const noexcept = 0;
    [[nodiscard]] virtual unsigned int GetHeight() const noexcept = 0;
    /// Number of planes.
    [[nodiscard]] virtual unsigned int GetDepth() const noexcept = 0;
    /// The plane of this z. \throws RTE::VerificationFailed "z-plane does not exist"
    [[nodiscard]] virtual const ImageVariant& getPlane(unsigned int z) const = 0;
    [[nodiscard]] virtual ImageVariant& getPlane(unsigned int z) = 0;
    [[nodiscard]] virtual std::shared_ptr<ImageVariant> getPlaneSPtr(unsigned int z) = 0;

    /// A deep copy of the same type.
    [[nodiscard]] virtual std::unique_ptr<ImageVolumeVariant> CreateCopy() const = 0;
    [[nodiscard]] virtual E_DataType GetDataType() const noexcept = 0;
    /// Takes the values of a volume of any type as ImageVolume::Assign tells.
    virtual void Assign(const ImageVolumeVariant& source) = 0;

protected:
    ImageVolumeVariant() noexcept = default;
    ImageVolumeVariant(const ImageVolumeVariant&) noexcept = default;
    ImageVolumeVariant& operator=(const ImageVolumeVariant&) noexcept = default;
};

/// True when no pixel of the mask of any plane is false; makes the masks that it looks at.
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT bool AllValuesValid(const ImageVolumeVariant& volume);

/// Sets the scales X, Y and Z and the attributes of `target` from `source`. The I scale stays, because the
/// values of the target are often of another kind.
DATAOBJECTS_DATAOBJECTS_EXPORT void CopyScalesAndAttributes(const ImageVolumeVariant& source,
                                                            ImageVolumeVariant& target);

} // namespace DataObjects
