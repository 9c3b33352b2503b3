// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/ImageVolumeVariant.h"
#include "Core/DataObjects/Variant.h"

#include <memory>

namespace DataObjects
{

/// A recording of a pixel type known only at run time: the base of ImageBuffer<T>.
///
/// GetDataType() is the point of dispatch. What an operation does stands with ImageBuffer. Frame indices are
/// not checked.
class DATAOBJECTS_DATAOBJECTS_EXPORT ImageBufferVariant : public Variant
{
public:
    ~ImageBufferVariant() override;
    /// "ImageBufferVariant", for all pixel types.
    [[nodiscard]] QString getTypeIdentifier() const override;
    [[nodiscard]] GlobalAndFrameAttributes getAllAttributes() const override;
    [[nodiscard]] std::unique_ptr<Variant> createCopy() const override;

    [[nodiscard]] virtual E_DataType GetDataType() const noexcept = 0;
    [[nodiscard]] virtual const Attributes& GetGlobalAttributes() const noexcept = 0;
    [[nodiscard]] virtual Attributes& GetGlobalAttributes() noexcept = 0;
    /// Replaces all global attributes in place.
    virtual void SetGlobalAttributes(const Attributes& attributes);
    /// Replaces the global attributes and those of each frame; the scales stay.
    /// \throws RTE::VerificationFailed "Mismatch between frame count and frame attributes count", with the
    ///         global attributes replaced already
    virtual void setAllAttributes(const GlobalAndFrameAttributes& all);

    [[nodiscard]] virtual const ImageVolumeVariant& getFrame(unsigned int frame) const noexcept = 0;
    [[nodiscard]] virtual ImageVolumeVariant& getFrame(unsigned int frame) noexcept = 0;
    [[nodiscard]] virtual std::shared_ptr<ImageVolumeVariant> getFrameSPtr(unsigned int frame) noexcept = 0;
    [[nodiscard]] virtual std::shared_ptr<const ImageVolumeVariant>
    getFrameConstSPtr(unsigned int frame) const noexcept = 0;
    [[nodiscard]] virtual unsigned int getFrameCount() const noexcept = 0;
    /// \throws RTE::VerificationFailed "Image volume list is empty" without frames
    [[nodiscard]] virtual bool AllVolumesHaveSameSize() const;
    /// True when both have as many frames and each frame has the size of its counterpart.
    [[nodiscard]] virtual bool HasMatchingFrameSizes(const ImageBufferVariant& other) const;
    /// Adds a `float` field of zeros with this intensity scale to each plane of each frame.
    virtual void AddScalarField(const QString& name, const Zt::LinearScale& scale);
    /// A deep copy of the same type.
    [[nodiscard]] virtual std::unique_ptr<ImageBufferVariant> CreateCopy() const = 0;
    /// Takes the values of a buffer of any type as ImageBuffer::Assign tells.
    virtual void Assign(const ImageBufferVariant& source) = 0;

protected:
    ImageBufferVariant() noexcept = default;
    ImageBufferVariant(const ImageBufferVariant&) noexcept = default;
    ImageBufferVariant& operator=(const ImageBufferVariant&) noexcept = default;
};

/// True when no pixel of the mask of any plane of any frame is false, so also without frames; makes the masks
/// that it looks at.
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT bool AllValuesValid(const ImageBufferVariant& buffer);

/// A buffer of the pixel type of `typeGiver` with all that `source` holds, pixels converted as
/// ImageData::Assign does.
/// \throws RTE::Exception "Unsupported image type" unless both have one of the six types
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<ImageBufferVariant>
CreateImageBufferCopyOfOtherType(const ImageBufferVariant& source, const ImageBufferVariant& typeGiver);

/// A new buffer of this size and of the pixel type of `typeGiver`, pixels uninitialised.
/// \throws RTE::Exception "Unsupported image type" unless `typeGiver` has one of the six types
/// \throws RTE::VerificationFailed as the construction of ImageBuffer does
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<ImageBufferVariant>
CreateImageBufferOfOtherType(const ImageBufferVariant& typeGiver, unsigned int width, unsigned int height,
                             unsigned int depth, unsigned int frames, bool valid);

} // namespace DataObjects
