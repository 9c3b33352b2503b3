// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/ImageBuffer.h"
#include "Core/DataObjects/RGBImage.h"

namespace DataObjects
{

/// A sequence of colour images with global attributes and a name.
///
/// Frames are shared pointers and can be held beyond the buffer; copies of the buffer are deep. Frames may
/// differ in size, and there may be none. For one thread at a time.
///
/// \code
/// RGBImageBuffer buffer(red, green, blue);
/// buffer.getFrame(0).ApplyColorRange(100, 1500);
/// buffer -= Rgb16(16, 16, 16);
/// const ImageBuffer<float> gray = buffer.intensityImage();
/// \endcode
class DATAOBJECTS_DATAOBJECTS_EXPORT RGBImageBuffer final : public Variant
{
public:
    using Frames = std::vector<std::shared_ptr<RGBImage>>;

    /// \name Construction
    /// \{
    RGBImageBuffer();
    /// New frames, each pixel `value`, and valid or not.
    RGBImageBuffer(const Math::Size2T<unsigned int>& size, unsigned int frames, const Rgb16& value,
                   bool valid);
    RGBImageBuffer(unsigned int width, unsigned int height, unsigned int frames, const Rgb16& value,
                   bool valid);
    /// Joins frame by frame as RGBImage does; name and global attributes are those of `r`.
    /// \throws RTE::VerificationFailed "The frame count of the R/G/B images aren't equal", "RGB image buffer
    ///         doesn't support multiply z planes." for a frame that has not one plane, and as RGBImage does
    RGBImageBuffer(const ImageBuffer<unsigned short>& r, const ImageBuffer<unsigned short>& g,
                   const ImageBuffer<unsigned short>& b);
    /// Copies of frames and global attributes.
    RGBImageBuffer(const std::vector<RGBImage>& images, const Attributes& globalAttributes);
    RGBImageBuffer(const RGBImageBuffer& other);
    RGBImageBuffer(RGBImageBuffer&& other) noexcept;
    ~RGBImageBuffer() override;
    /// \}

    /// \name Assignment
    /// \{

    /// Drops the frames and takes copies of those of `other`, name and global attributes.
    RGBImageBuffer& operator=(const RGBImageBuffer& other);
    RGBImageBuffer& operator=(RGBImageBuffer&& other) noexcept;
    /// Sets every pixel; the masks stay.
    RGBImageBuffer& operator=(const Rgb16& value);
    /// \}

    /// \name Name, type, copies and attributes
    /// \{
    /// Empty for a new buffer.
    [[nodiscard]] QString GetName() const { return m_name; }
    void SetName(const QString& name) { m_name = name; }
    /// "RGBImageBuffer".
    [[nodiscard]] QString getTypeIdentifier() const override;
    [[nodiscard]] std::unique_ptr<Variant> createCopy() const override;
    [[nodiscard]] std::unique_ptr<RGBImageBuffer> CreateCopy() const;
    [[nodiscard]] const Attributes& GetGlobalAttributes() const noexcept { return m_globalAttributes; }
    [[nodiscard]] Attributes& GetGlobalAttributes() noexcept { return m_globalAttributes; }
    /// Replaces all global attributes.
    void SetGlobalAttributes(const Attributes& attributes);
    /// As there is no Z scale, the default one stands for that of each frame.
    [[nodiscard]] GlobalAndFrameAttributes getAllAttributes() const override;
    /// Replaces the global attributes and those of each frame; the scales stay.
    /// \throws RTE::VerificationFailed "Mismatch between frame count and frame attributes count", with the
    ///         global attributes replaced already
    void setAllAttributes(const GlobalAndFrameAttributes& all);
    /// \}

    /// \name Frames
    /// All that take the index of a frame raise RTE::VerificationFailed "Invalid frame index" where there is
    /// none, but for operator[], which is unchecked.
    /// \{
    [[nodiscard]] unsigned int getFrameCount() const noexcept
    {
        return static_cast<unsigned int>(m_frames.size());
    }
    [[nodiscard]] unsigned long long size() const noexcept { return m_frames.size(); }
    [[nodiscard]] bool empty() const noexcept { return m_frames.empty(); }
    [[nodiscard]] const RGBImage& getFrame(unsigned int frame) const;
    [[nodiscard]] RGBImage& getFrame(unsigned int frame);
    [[nodiscard]] const std::shared_ptr<RGBImage>& operator[](unsigned long long frame) const noexcept
    {
        return m_frames[frame];
    }
    [[nodiscard]] std::shared_ptr<RGBImage>& operator[](unsigned long long frame) noexcept
    {
        return m_frames[frame];
    }
    [[nodiscard]] Frames::const_iterator begin() const noexcept { return m_frames.begin(); }
    [[nodiscard]] Frames::iterator begin() noexcept { return m_frames.begin(); }
    [[nodiscard]] Frames::const_iterator end() const noexcept { return m_frames.end(); }
    [[nodiscard]] Frames::iterator end() noexcept { return m_frames.end(); }
    [[nodiscard]] unsigned int GetWidth(unsigned int frame) const { return getFrame(frame).GetWidth(); }
    [[nodiscard]] unsigned int GetHeight(unsigned int frame) const { return getFrame(frame).GetHeight(); }
    [[nodiscard]] const Math::Size2T<unsigned int>& GetSize(unsigned int frame) const
    {
        return getFrame(frame).GetSize();
    }
    /// Also true without frames.
    [[nodiscard]] bool AllFramesHaveSameSize() const noexcept;
    /// Appends an image of any size.
    void AppendImage(const RGBImage& image);
    void AppendImage(RGBImage&& image);
    /// Adds a `float` field of zeros with this intensity scale to each frame.
    void AddScalarField(const QString& name, const Zt::LinearScale& scale);
    /// \}

    /// \name Single-channel buffers
    /// With name and global attributes; of each frame what RGBImage::RedImage() and its kin make.
    /// \{
    [[nodiscard]] ImageBuffer<unsigned short> redImage() const;
    [[nodiscard]] ImageBuffer<unsigned short> greenImage() const;
    [[nodiscard]] ImageBuffer<unsigned short> blueImage() const;
    [[nodiscard]] ImageBuffer<float> intensityImage() const;
    /// \}

    /// \name Arithmetic
    /// On the pixels only, by the rules of Rgb16; a binary operator returns a deep copy of its left side.
    /// \{
    RGBImageBuffer& operator+=(const Rgb16& value);
    RGBImageBuffer& operator-=(const Rgb16& value);
    /// Frame by frame. \throws RTE::VerificationFailed "Invalid volume sizes" unless both have as many frames
    ///         and each has the size of its counterpart
    RGBImageBuffer& operator+=(const RGBImageBuffer& other);
    RGBImageBuffer& operator-=(const RGBImageBuffer& other);
    /// \}

private:
    void verifyMatching(const RGBImageBuffer& other) const;

    QString m_name;
    Frames m_frames;
    AttributesContainer m_globalAttributes;
};

[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT RGBImageBuffer operator+(const RGBImageBuffer& buffer,
                                                                      const Rgb16& value);
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT RGBImageBuffer operator-(const RGBImageBuffer& buffer,
                                                                      const Rgb16& value);
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT RGBImageBuffer operator+(const RGBImageBuffer& buffer,
                                                                      const RGBImageBuffer& other);
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT RGBImageBuffer operator-(const RGBImageBuffer& buffer,
                                                                      const RGBImageBuffer& other);

/// True when no pixel of the mask of any frame is false, so also without frames.
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT bool AllValuesValid(const RGBImageBuffer& buffer);

} // namespace DataObjects
