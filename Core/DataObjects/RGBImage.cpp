// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/RGBImage.h"

#include "Core/Common/AttributeNames.h"
#include "Core/DataObjects/ColorRange.h"
#include "Core/DataObjects/ImageParts.h"
#include "Core/DataObjects/RGBImageParts.h"
#include "Core/DataObjects/RgbKernels.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace DataObjects
{

namespace
{

using Size = Math::Size2T<unsigned int>;
using Words = Image<unsigned short>;

constexpr unsigned short leastBitDepth = 8;
constexpr unsigned short greatestBitDepth = 16;

/// Checked before memory of this size is asked for.
const Size& verified(const Size& size, bool isRight, const char* text)
{
    RTE::verify(isRight, text);
    return size;
}

unsigned long long countOf(const Size& size)
{
    return static_cast<unsigned long long>(size.width) * size.height;
}

/// Valid where all three images are, which have the same size.
Mask commonMask(const Words& r, const Words& g, const Words& b)
{
    for (const Words* const image : {&r, &g, &b}) {
        Private::verifyHasPixels(*image);
    }
    RTE::verify(g.GetSize() == r.GetSize() && b.GetSize() == r.GetSize(),
                "Size of the R/G/B frames aren't equal");
    Mask mask = Private::copyOfMask(r);
    for (const Words* const other : {&g, &b}) {
        if (other->IsMaskSpawned()) {
            mask &= other->GetMask();
        }
    }
    return mask;
}

void verifyEqual(const Zt::LinearScale& r, const Zt::LinearScale& g, const Zt::LinearScale& b,
                 const char* text)
{
    RTE::verify(g == r && b == r, text);
}

template <typename T, typename Fill>
Image<T> toImage(const RGBImage& source, Fill&& fill)
{
    ImageData<T> data(source.GetSize());
    fill(source.GetRawPointer(), source.size(), data.GetRawPointer());
    return Private::withPartsOf(source, std::move(data));
}

template <Private::Channel channel>
void takeChannel(const Rgb16* pixels, std::size_t count, unsigned short* taken)
{
    Private::takeChannel(pixels, count, channel, taken);
}

} // namespace

RGBImage::RGBImage(const Size& size, const Rgb16& value, bool valid) : RGBImage(Mask(size, valid))
{
    *this = value;
}

RGBImage::RGBImage(unsigned int width, unsigned int height, const Rgb16& value, bool valid)
    : RGBImage(Size(width, height), value, valid)
{
}

RGBImage::RGBImage(const std::vector<Rgb16>& pixels, const Size& size)
    : RGBImage(Mask(verified(size, pixels.size() == countOf(size), "Invalid sizes"), true))
{
    std::copy(pixels.begin(), pixels.end(), m_pixels.begin());
}

RGBImage::RGBImage(const std::vector<Rgb16>& pixels, unsigned int width, unsigned int height)
    : RGBImage(pixels, Size(width, height))
{
}

RGBImage::RGBImage(const unsigned int* packed, const Size& size)
    : RGBImage(Mask(verified(size, packed != nullptr || countOf(size) == 0, "data-pointer is null"), true))
{
    std::transform(packed, packed + m_pixels.size(), m_pixels.begin(),
                   [](unsigned int pixel) { return Rgb16(pixel); });
}

RGBImage::RGBImage(const unsigned int* packed, unsigned int width, unsigned int height)
    : RGBImage(packed, Size(width, height))
{
}

RGBImage::RGBImage(const Words& r, const Words& g, const Words& b) : RGBImage(commonMask(r, g, b))
{
    verifyEqual(r.GetScaleX(), g.GetScaleX(), b.GetScaleX(), "X scale of the R/G/B frames aren't equal");
    verifyEqual(r.GetScaleY(), g.GetScaleY(), b.GetScaleY(), "Y scale of the R/G/B frames aren't equal");
    verifyEqual(r.GetScaleI(), g.GetScaleI(), b.GetScaleI(), "I scale of the R/G/B frames aren't equal");
    Private::joinChannels(r.GetRawPointer(), g.GetRawPointer(), b.GetRawPointer(), size(), GetRawPointer());
    Private::copyScales(r, *this);
    SetAttributes(r.GetAttributes());
}

RGBImage::RGBImage(Mask&& mask)
    : m_size(mask.GetSize()), m_pixels(mask.size()), m_mask(std::move(mask)), m_scalarFields(m_size)
{
}

RGBImage::RGBImage(const RGBImage& other)
    : m_bitDepth(other.m_bitDepth.load()), m_size(other.m_size), m_pixels(other.m_pixels.size()),
      m_mask(other.m_mask), m_scaleX(other.m_scaleX), m_scaleY(other.m_scaleY), m_scaleI(other.m_scaleI),
      m_attributes(other.m_attributes), m_scalarFields(other.m_scalarFields)
{
    std::copy(other.m_pixels.begin(), other.m_pixels.end(), m_pixels.begin());
}

RGBImage::RGBImage(RGBImage&& other) noexcept
    : m_bitDepth(other.m_bitDepth.exchange(0)), m_size(std::exchange(other.m_size, {})),
      m_pixels(std::move(other.m_pixels)), m_mask(std::move(other.m_mask)),
      m_scaleX(std::move(other.m_scaleX)), m_scaleY(std::move(other.m_scaleY)),
      m_scaleI(std::move(other.m_scaleI)), m_attributes(std::move(other.m_attributes)),
      m_scalarFields(std::move(other.m_scalarFields))
{
}

RGBImage::~RGBImage() = default;

std::unique_ptr<RGBImage> RGBImage::CreateCopy() const
{
    return std::make_unique<RGBImage>(*this);
}

RGBImage& RGBImage::operator=(const RGBImage& other)
{
    if (this != &other) {
        *this = RGBImage(other);
    }
    return *this;
}

RGBImage& RGBImage::operator=(RGBImage&& other)
{
    if (this != &other) {
        // First, as nothing else can raise.
        m_mask = std::move(other.m_mask);
        m_bitDepth = other.m_bitDepth.exchange(0);
        m_size = std::exchange(other.m_size, {});
        m_pixels = std::move(other.m_pixels);
        m_scaleX = std::move(other.m_scaleX);
        m_scaleY = std::move(other.m_scaleY);
        m_scaleI = std::move(other.m_scaleI);
        m_attributes = std::move(other.m_attributes);
        m_scalarFields = std::move(other.m_scalarFields);
    }
    return *this;
}

void RGBImage::DeepCopyFrom(const RGBImage& source)
{
    RTE::verify(source.GetSize() == GetSize(), "Source RGB image has different size");
    if (this != &source) {
        std::copy(source.begin(), source.end(), begin());
        m_mask = source.m_mask;
        Private::copyScales(source, *this);
        SetAttributes(source.m_attributes);
    }
}

RGBImage& RGBImage::operator=(const Rgb16& value)
{
    std::fill(begin(), end(), Rgb16(value));
    return *this;
}

BufferApi::RgbQuad RGBImage::GetPixelAsRGBQUAD(unsigned int x, unsigned int y) const noexcept
{
    const Rgb16& pixel = GetPixel(x, y);
    return {static_cast<unsigned char>(pixel.blue), static_cast<unsigned char>(pixel.green),
            static_cast<unsigned char>(pixel.red), 0};
}

void RGBImage::SetAttributes(const Attributes& attributes)
{
    Private::replaceAttributes(attributes, m_attributes);
}

RGBImage& RGBImage::operator+=(const Rgb16& value)
{
    Private::addValue(GetRawPointer(), size(), value);
    return *this;
}

RGBImage& RGBImage::operator-=(const Rgb16& value)
{
    Private::subtractValue(GetRawPointer(), size(), value);
    return *this;
}

RGBImage& RGBImage::operator+=(const RGBImage& other)
{
    RTE::verify(other.GetSize() == GetSize(), "Invalid sizes");
    Private::addPixels(GetRawPointer(), size(), other.GetRawPointer());
    return *this;
}

RGBImage& RGBImage::operator-=(const RGBImage& other)
{
    RTE::verify(other.GetSize() == GetSize(), "Invalid sizes");
    Private::subtractPixels(GetRawPointer(), size(), other.GetRawPointer());
    return *this;
}

Image<unsigned short> RGBImage::RedImage() const
{
    return toImage<unsigned short>(*this, takeChannel<Private::Channel::Red>);
}

Image<unsigned short> RGBImage::GreenImage() const
{
    return toImage<unsigned short>(*this, takeChannel<Private::Channel::Green>);
}

Image<unsigned short> RGBImage::BlueImage() const
{
    return toImage<unsigned short>(*this, takeChannel<Private::Channel::Blue>);
}

Image<float> RGBImage::IntensityImage() const
{
    return toImage<float>(*this, Private::intensities);
}

unsigned short RGBImage::GetBitDepth() const
{
    InitBitDepth();
    return m_bitDepth;
}

void RGBImage::SetBitDepth(unsigned short bitDepth)
{
    RTE::verify(bitDepth >= leastBitDepth && bitDepth <= greatestBitDepth,
                "Bit depth must be between 8 and 16");
    m_bitDepth = bitDepth;
}

void RGBImage::InitBitDepth() const
{
    if (m_bitDepth != 0) {
        return;
    }
    const bool isKnown = m_attributes.contains(Attr::cameraMaxIntensity);
    const double maximum = isKnown ? m_attributes.attributeValue(Attr::cameraMaxIntensity).value<double>()
                                   : Private::maxComponent(GetRawPointer(), size());
    // Below 8 bits stay 8, and so does what has no logarithm.
    const double bits = std::ceil(std::log2(maximum + 1));
    m_bitDepth = bits > leastBitDepth ? static_cast<unsigned short>(std::min<double>(bits, greatestBitDepth))
                                      : leastBitDepth;
}

void RGBImage::ApplyColorRange(double minimum, double maximum)
{
    const double range = maximum - minimum;
    if (range > 0) {
        const double top = std::exp2(GetBitDepth()) - 1;
        Private::applyColorRange(Private::wordsOf(GetRawPointer()), 3 * size(), {minimum, range, top});
    }
}

bool AllValuesValid(const RGBImage& image)
{
    return AllValuesValid(image.GetMask());
}

} // namespace DataObjects
