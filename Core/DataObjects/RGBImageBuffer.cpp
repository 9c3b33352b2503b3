// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/RGBImageBuffer.h"

#include "Core/DataObjects/ImageParts.h"
#include "Core/DataObjects/RGBImageParts.h"
#include "Core/DataObjects/TypeIdentifier.h"

#include <algorithm>

namespace DataObjects
{

namespace
{

using Words = ImageBuffer<unsigned short>;

const Image<unsigned short>& onlyPlane(const Words& buffer, unsigned int frame)
{
    const ImageVolume<unsigned short>& volume = buffer.getFrame(frame);
    Private::verifyOnePlane(volume.GetDepth());
    return volume.getPlane(0);
}

} // namespace

RGBImageBuffer::RGBImageBuffer() = default;

RGBImageBuffer::RGBImageBuffer(const Math::Size2T<unsigned int>& size, unsigned int frames,
                               const Rgb16& value, bool valid)
    : m_frames(frames)
{
    std::generate(m_frames.begin(), m_frames.end(),
                  [&] { return std::make_shared<RGBImage>(size, value, valid); });
}

RGBImageBuffer::RGBImageBuffer(unsigned int width, unsigned int height, unsigned int frames,
                               const Rgb16& value, bool valid)
    : RGBImageBuffer(Math::Size2T<unsigned int>(width, height), frames, value, valid)
{
}

RGBImageBuffer::RGBImageBuffer(const Words& r, const Words& g, const Words& b)
    : m_name(r.GetName()), m_globalAttributes(r.GetGlobalAttributes())
{
    RTE::verify(g.size() == r.size() && b.size() == r.size(),
                "The frame count of the R/G/B images aren't equal");
    m_frames.reserve(r.size());
    for (unsigned int i = 0; i < r.getFrameCount(); ++i) {
        m_frames.push_back(std::make_shared<RGBImage>(onlyPlane(r, i), onlyPlane(g, i), onlyPlane(b, i)));
    }
}

RGBImageBuffer::RGBImageBuffer(const std::vector<RGBImage>& images, const Attributes& globalAttributes)
    : m_globalAttributes(globalAttributes)
{
    m_frames.reserve(images.size());
    for (const RGBImage& image : images) {
        AppendImage(image);
    }
}

RGBImageBuffer::RGBImageBuffer(const RGBImageBuffer& other)
    : Variant(other), m_name(other.m_name), m_globalAttributes(other.m_globalAttributes)
{
    m_frames.reserve(other.m_frames.size());
    for (const auto& frame : other.m_frames) {
        AppendImage(*frame);
    }
}

RGBImageBuffer::RGBImageBuffer(RGBImageBuffer&& other) noexcept = default;
RGBImageBuffer::~RGBImageBuffer() = default;

RGBImageBuffer& RGBImageBuffer::operator=(const RGBImageBuffer& other)
{
    if (this != &other) {
        *this = RGBImageBuffer(other);
    }
    return *this;
}

RGBImageBuffer& RGBImageBuffer::operator=(RGBImageBuffer&& other) noexcept
{
    if (this != &other) {
        m_name = std::move(other.m_name);
        m_frames = std::move(other.m_frames);
        m_globalAttributes = std::move(other.m_globalAttributes);
    }
    return *this;
}

RGBImageBuffer& RGBImageBuffer::operator=(const Rgb16& value)
{
    // The value may be one of the pixels.
    const Rgb16 copy = value;
    for (const auto& frame : m_frames) {
        *frame = copy;
    }
    return *this;
}

QString RGBImageBuffer::getTypeIdentifier() const
{
    return TypeIdentifier::rgbImageBuffer;
}

std::unique_ptr<Variant> RGBImageBuffer::createCopy() const
{
    return CreateCopy();
}

std::unique_ptr<RGBImageBuffer> RGBImageBuffer::CreateCopy() const
{
    return std::make_unique<RGBImageBuffer>(*this);
}

void RGBImageBuffer::SetGlobalAttributes(const Attributes& attributes)
{
    Private::replaceAttributes(attributes, m_globalAttributes);
}

GlobalAndFrameAttributes RGBImageBuffer::getAllAttributes() const
{
    GlobalAndFrameAttributes all;
    all.merge(m_globalAttributes);
    for (const auto& frame : m_frames) {
        all.frameAttributes.emplace_back(frame->GetAttributes());
        all.scalesX.push_back(frame->GetScaleX());
        all.scalesY.push_back(frame->GetScaleY());
        all.scalesZ.emplace_back(Zt::ScalePreset::Z);
        all.scalesI.push_back(frame->GetScaleI());
    }
    return all;
}

void RGBImageBuffer::setAllAttributes(const GlobalAndFrameAttributes& all)
{
    SetGlobalAttributes(all);
    RTE::verify(m_frames.size() == all.frameAttributes.size(),
                "Mismatch between frame count and frame attributes count");
    for (std::size_t i = 0; i < m_frames.size(); ++i) {
        m_frames[i]->SetAttributes(all.frameAttributes[i]);
    }
}

const RGBImage& RGBImageBuffer::getFrame(unsigned int frame) const
{
    RTE::verify(frame < m_frames.size(), "Invalid frame index");
    return *m_frames[frame];
}

RGBImage& RGBImageBuffer::getFrame(unsigned int frame)
{
    RTE::verify(frame < m_frames.size(), "Invalid frame index");
    return *m_frames[frame];
}

bool RGBImageBuffer::AllFramesHaveSameSize() const noexcept
{
    return std::all_of(m_frames.begin(), m_frames.end(),
                       [&](const auto& frame) { return frame->GetSize() == m_frames.front()->GetSize(); });
}

void RGBImageBuffer::AppendImage(const RGBImage& image)
{
    m_frames.push_back(std::make_shared<RGBImage>(image));
}

void RGBImageBuffer::AppendImage(RGBImage&& image)
{
    m_frames.push_back(std::make_shared<RGBImage>(std::move(image)));
}

void RGBImageBuffer::AddScalarField(const QString& name, const Zt::LinearScale& scale)
{
    for (const auto& frame : m_frames) {
        frame->GetScalarFields().Add(name)->SetScaleI(scale);
    }
}

ImageBuffer<unsigned short> RGBImageBuffer::redImage() const
{
    return Private::convertFrames<unsigned short>(*this,
                                                  [](const RGBImage& image) { return image.RedImage(); });
}

ImageBuffer<unsigned short> RGBImageBuffer::greenImage() const
{
    return Private::convertFrames<unsigned short>(*this,
                                                  [](const RGBImage& image) { return image.GreenImage(); });
}

ImageBuffer<unsigned short> RGBImageBuffer::blueImage() const
{
    return Private::convertFrames<unsigned short>(*this,
                                                  [](const RGBImage& image) { return image.BlueImage(); });
}

ImageBuffer<float> RGBImageBuffer::intensityImage() const
{
    return Private::convertFrames<float>(*this, [](const RGBImage& image) { return image.IntensityImage(); });
}

RGBImageBuffer& RGBImageBuffer::operator+=(const Rgb16& value)
{
    const Rgb16 copy = value;
    for (const auto& frame : m_frames) {
        *frame += copy;
    }
    return *this;
}

RGBImageBuffer& RGBImageBuffer::operator-=(const Rgb16& value)
{
    const Rgb16 copy = value;
    for (const auto& frame : m_frames) {
        *frame -= copy;
    }
    return *this;
}

RGBImageBuffer& RGBImageBuffer::operator+=(const RGBImageBuffer& other)
{
    verifyMatching(other);
    for (std::size_t i = 0; i < m_frames.size(); ++i) {
        *m_frames[i] += *other.m_frames[i];
    }
    return *this;
}

RGBImageBuffer& RGBImageBuffer::operator-=(const RGBImageBuffer& other)
{
    verifyMatching(other);
    for (std::size_t i = 0; i < m_frames.size(); ++i) {
        *m_frames[i] -= *other.m_frames[i];
    }
    return *this;
}

void RGBImageBuffer::verifyMatching(const RGBImageBuffer& other) const
{
    const auto sameSize = [](const auto& a, const auto& b) { return a->GetSize() == b->GetSize(); };
    RTE::verify(std::equal(begin(), end(), other.begin(), other.end(), sameSize), "Invalid volume sizes");
}

RGBImageBuffer operator+(const RGBImageBuffer& buffer, const Rgb16& value)
{
    RGBImageBuffer result(buffer);
    result += value;
    return result;
}

RGBImageBuffer operator-(const RGBImageBuffer& buffer, const Rgb16& value)
{
    RGBImageBuffer result(buffer);
    result -= value;
    return result;
}

RGBImageBuffer operator+(const RGBImageBuffer& buffer, const RGBImageBuffer& other)
{
    RGBImageBuffer result(buffer);
    result += other;
    return result;
}

RGBImageBuffer operator-(const RGBImageBuffer& buffer, const RGBImageBuffer& other)
{
    RGBImageBuffer result(buffer);
    result -= other;
    return result;
}

bool AllValuesValid(const RGBImageBuffer& buffer)
{
    return std::all_of(buffer.begin(), buffer.end(),
                       [](const auto& frame) { return AllValuesValid(*frame); });
}

} // namespace DataObjects
