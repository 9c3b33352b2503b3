// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/AttributesContainer.h"
#include "Core/DataObjects/ImageBufferVariant.h"
#include "Core/DataObjects/ImageVolume.h"

#include <QString>

#include <memory>
#include <utility>
#include <vector>

namespace DataObjects
{

/// A whole recording in memory: a list of frames, each a volume at one time step, with global attributes and
/// a name; exists for the six element types.
///
/// Frames are shared pointers and can be held beyond the buffer. They may differ in size, unless they are
/// appended with AppendImageVolume; AllVolumesHaveSameSize() tells. A buffer of which a frame does not own
/// its memory is a view and cannot change its number of frames by assignment.
///
/// A moved-from buffer has no frames and may only be destroyed or assigned to. Frame indices are not checked.
/// For one thread at a time.
///
/// \code
/// const std::shared_ptr<ImageBuffer<float>> mean = ImageBuffer<float>::CreateEmptyImageBuffer();
/// mean->AppendImageVolume(ImageVolume<float>(64, 32, 1, true));
/// mean->SetName("Mean");
/// mean->GetGlobalAttributes().set("Operator", QStringLiteral("Average"));
/// const auto words = CreateImageBufferOfOtherType(recording, 64, 32, 1, 10, true);
/// \endcode
template <typename T>
class DATAOBJECTS_DATAOBJECTS_EXPORT ImageBuffer : public ImageBufferVariant
{
public:
    using Frames = std::vector<std::shared_ptr<ImageVolume<T>>>;

    /// \name Construction
    /// Without a frame: RTE::VerificationFailed "Image volume list is empty". Without a plane, as in a volume
    /// that was moved from, or for planes that do not fit together: as ImageVolume does.
    /// \{

    /// New frames, pixels uninitialised, each valid or not.
    ImageBuffer(const Math::Size3T<unsigned int>& size, unsigned int frames, bool valid);
    ImageBuffer(unsigned int width, unsigned int height, unsigned int depth, unsigned int frames, bool valid);
    /// New frames, each pixel `value`.
    ImageBuffer(const Math::Size3T<unsigned int>& size, unsigned int frames, T value, bool valid);
    ImageBuffer(unsigned int width, unsigned int height, unsigned int depth, unsigned int frames, T value,
                bool valid);
    /// One frame of one plane, moved in, copied, or shared.
    ImageBuffer(Image<T>&& image, const AttributesContainer& globalAttributes);
    ImageBuffer(const Image<T>& image, const AttributesContainer& globalAttributes);
    ImageBuffer(const std::shared_ptr<Image<T>>& image, const AttributesContainer& globalAttributes);
    /// One frame.
    ImageBuffer(ImageVolume<T>&& volume, const AttributesContainer& globalAttributes);
    ImageBuffer(ImageVolume<T>&& volume, std::unique_ptr<Attributes> globalAttributes);
    /// A frame per image or volume; global attributes are copied or taken over.
    /// \throws RTE::VerificationFailed "Image volume is not valid." for a null volume, "Attributes are not
    ///         valid." for null attributes
    ImageBuffer(std::vector<Image<T>>&& images, const AttributesContainer& globalAttributes);
    ImageBuffer(std::vector<Image<T>>&& images, std::unique_ptr<Attributes> globalAttributes);
    ImageBuffer(std::vector<std::unique_ptr<Image<T>>>&& images, const AttributesContainer& globalAttributes);
    ImageBuffer(std::vector<std::unique_ptr<Image<T>>>&& images,
                std::unique_ptr<Attributes> globalAttributes);
    ImageBuffer(std::vector<ImageVolume<T>>&& volumes, const AttributesContainer& globalAttributes);
    ImageBuffer(std::vector<ImageVolume<T>>&& volumes, std::unique_ptr<Attributes> globalAttributes);
    ImageBuffer(std::vector<std::unique_ptr<ImageVolume<T>>>&& volumes,
                const AttributesContainer& globalAttributes);
    ImageBuffer(std::vector<std::unique_ptr<ImageVolume<T>>>&& volumes,
                std::unique_ptr<Attributes> globalAttributes);
    ImageBuffer(std::vector<std::shared_ptr<ImageVolume<T>>>&& volumes,
                const AttributesContainer& globalAttributes);
    ImageBuffer(std::vector<std::shared_ptr<ImageVolume<T>>>&& volumes,
                std::unique_ptr<Attributes> globalAttributes);
    /// A deep copy, which owns its memory and holds its global attributes in memory.
    ImageBuffer(const ImageBuffer& other);
    ImageBuffer(ImageBuffer&& other) noexcept;
    ~ImageBuffer() override;
    /// A buffer without frames, which takes a first frame of any size.
    [[nodiscard]] static std::shared_ptr<ImageBuffer> CreateEmptyImageBuffer();
    /// \}

    /// \name Assignment
    /// All take the name over.
    /// \{

    /// An owner gets new frames and new global attributes, which are complete before the old ones go: `other`
    /// may view them, and an assignment that raises changes nothing. A view assigns frame by frame and keeps
    /// global attributes of other names; when a frame raises, those before it are assigned.
    ///
    /// A view raises RTE::VerificationFailed "Buffers have different number of frames", and as ImageVolume
    /// does.
    ImageBuffer& operator=(const ImageBuffer& other);
    /// The same, but an owner takes the frames of `other`, with views of its own frames made copies, and a
    /// view moves frame by frame.
    ImageBuffer& operator=(ImageBuffer&& other);
    ImageBuffer& DeepCopyFrom(const ImageBuffer& other) { return *this = other; }
    ImageBuffer& MoveFrom(ImageBuffer&& other) { return *this = std::move(other); }
    /// Copy assignment from a buffer of any type; pixels are converted as ImageData::Assign does.
    /// \throws RTE::Exception "Unsupported image type" unless the source has one of the six types
    /// \throws RTE::VerificationFailed as copy assignment does
    void Assign(const ImageBufferVariant& source) override;
    /// Sets every pixel; the masks stay.
    ImageBuffer& operator=(T value);
    /// \}

    /// \name Name, type, copies and attributes
    /// \{
    /// Empty for a new buffer.
    [[nodiscard]] QString GetName() const { return m_name; }
    void SetName(const QString& name) { m_name = name; }
    [[nodiscard]] E_DataType GetDataType() const noexcept override;
    [[nodiscard]] std::unique_ptr<ImageBufferVariant> CreateCopy() const override;
    /// True when every frame owns its memory, so also without frames.
    [[nodiscard]] bool HasOwnerShip() const noexcept;
    [[nodiscard]] const Attributes& GetGlobalAttributes() const noexcept override
    {
        return *m_globalAttributes;
    }
    [[nodiscard]] Attributes& GetGlobalAttributes() noexcept override { return *m_globalAttributes; }
    /// \}

    /// \name Frames
    /// \{
    [[nodiscard]] unsigned int getFrameCount() const noexcept final
    {
        return static_cast<unsigned int>(m_frames.size());
    }
    [[nodiscard]] unsigned long long size() const noexcept { return m_frames.size(); }
    [[nodiscard]] bool empty() const noexcept { return m_frames.empty(); }
    [[nodiscard]] const ImageVolume<T>& getFrame(unsigned int frame) const noexcept final
    {
        return *m_frames[frame];
    }
    [[nodiscard]] ImageVolume<T>& getFrame(unsigned int frame) noexcept final { return *m_frames[frame]; }
    [[nodiscard]] std::shared_ptr<ImageVolumeVariant> getFrameSPtr(unsigned int frame) noexcept override;
    [[nodiscard]] std::shared_ptr<const ImageVolumeVariant>
    getFrameConstSPtr(unsigned int frame) const noexcept override;
    [[nodiscard]] std::shared_ptr<ImageVolume<T>> getFrameTSPtr(unsigned int frame) noexcept
    {
        return m_frames[frame];
    }
    [[nodiscard]] std::shared_ptr<const ImageVolume<T>> getFrameTConstSPtr(unsigned int frame) const noexcept
    {
        return m_frames[frame];
    }
    [[nodiscard]] typename Frames::iterator begin() noexcept { return m_frames.begin(); }
    [[nodiscard]] typename Frames::const_iterator begin() const noexcept { return m_frames.begin(); }
    [[nodiscard]] typename Frames::iterator end() noexcept { return m_frames.end(); }
    [[nodiscard]] typename Frames::const_iterator end() const noexcept { return m_frames.end(); }

    /// \throws RTE::VerificationFailed "Volumes in the resulting buffer would have different sizes",
    ///         "ImageVolume must have at least one z-plane" for a volume that was moved from
    void AppendImageVolume(const ImageVolume<T>& volume);
    void AppendImageVolume(ImageVolume<T>&& volume);
    /// Appends a copy of any size.
    void _appendImageVolumeDontCheckSize(const ImageVolume<T>& volume);
    /// \}

    /// \name Arithmetic
    /// On the pixels only, by the rules of ImageData; the results of the const forms are deep copies.
    /// \{
    ImageBuffer& operator*=(double operand);
    ImageBuffer& operator/=(double operand);
    [[nodiscard]] ImageBuffer operator*(double operand) const;
    [[nodiscard]] ImageBuffer operator/(double operand) const;
    /// \}

private:
    ImageBuffer();

    void verifyAppendable(const ImageVolume<T>& volume) const;
    void assignFrom(const ImageBufferVariant& source, const QString& name);
    void copyViewsOf(const ImageBuffer& owner);
    [[nodiscard]] std::unique_ptr<Attributes> copiedGlobalAttributes() const;

    QString m_name;
    Frames m_frames;
    std::unique_ptr<Attributes> m_globalAttributes;
};

#define DATAOBJECTS_EXTERN_IMAGE_BUFFER(type, number, name) extern template class ImageBuffer<type>;
DATAOBJECTS_PIXEL_TYPES(DATAOBJECTS_EXTERN_IMAGE_BUFFER)
#undef DATAOBJECTS_EXTERN_IMAGE_BUFFER

} // namespace DataObjects
