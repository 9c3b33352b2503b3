// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/ImageBuffer.h"

#include "Core/DataObjects/ImageParts.h"
#include "Core/DataObjects/VisitImageType.h"

#include <algorithm>

namespace DataObjects
{

namespace
{

const char* const noFrames = "Image volume list is empty";
const char* const noPlanes = "ImageVolume must have at least one z-plane";

/// A frame per image, volume, or pointer to one.
template <typename T, typename Item>
std::vector<std::shared_ptr<ImageVolume<T>>> toFrames(std::vector<Item>&& items)
{
    std::vector<std::shared_ptr<ImageVolume<T>>> frames;
    frames.reserve(items.size());
    for (Item& item : items) {
        if constexpr (std::is_convertible_v<Item, std::shared_ptr<ImageVolume<T>>>) {
            frames.emplace_back(std::move(item));
        } else {
            frames.push_back(std::make_shared<ImageVolume<T>>(std::move(item)));
        }
    }
    return frames;
}

/// A new frame is made by `make` for each index.
template <typename T, typename Make>
std::vector<std::shared_ptr<ImageVolume<T>>> newFrames(unsigned int count, Make make)
{
    RTE::verify(count > 0, noFrames);
    std::vector<std::shared_ptr<ImageVolume<T>>> frames(count);
    std::generate(frames.begin(), frames.end(), make);
    return frames;
}

template <typename T>
std::vector<std::shared_ptr<ImageVolume<T>>> oneFrame(std::shared_ptr<ImageVolume<T>> frame)
{
    return {std::move(frame)};
}

std::unique_ptr<Attributes> copyOf(const AttributesContainer& attributes)
{
    return std::make_unique<AttributesContainer>(attributes);
}

} // namespace

template <typename T>
ImageBuffer<T>::ImageBuffer() : m_globalAttributes(std::make_unique<AttributesContainer>())
{
}

template <typename T>
ImageBuffer<T>::ImageBuffer(const Math::Size3T<unsigned int>& size, unsigned int frames, bool valid)
    : ImageBuffer(newFrames<T>(frames, [&] { return std::make_shared<ImageVolume<T>>(size, valid); }),
                  std::make_unique<AttributesContainer>())
{
}

template <typename T>
ImageBuffer<T>::ImageBuffer(unsigned int width, unsigned int height, unsigned int depth, unsigned int frames,
                            bool valid)
    : ImageBuffer(Math::Size3T<unsigned int>(width, height, depth), frames, valid)
{
}

template <typename T>
ImageBuffer<T>::ImageBuffer(const Math::Size3T<unsigned int>& size, unsigned int frames, T value, bool valid)
    : ImageBuffer(newFrames<T>(frames, [&] { return std::make_shared<ImageVolume<T>>(size, value, valid); }),
                  std::make_unique<AttributesContainer>())
{
}

template <typename T>
ImageBuffer<T>::ImageBuffer(unsigned int width, unsigned int height, unsigned int depth, unsigned int frames,
                            T value, bool valid)
    : ImageBuffer(Math::Size3T<unsigned int>(width, height, depth), frames, value, valid)
{
}

template <typename T>
ImageBuffer<T>::ImageBuffer(Image<T>&& image, const AttributesContainer& globalAttributes)
    : ImageBuffer(ImageVolume<T>(std::move(image)), copyOf(globalAttributes))
{
}

template <typename T>
ImageBuffer<T>::ImageBuffer(const Image<T>& image, const AttributesContainer& globalAttributes)
    : ImageBuffer(Image<T>(image), globalAttributes)
{
}

template <typename T>
ImageBuffer<T>::ImageBuffer(const std::shared_ptr<Image<T>>& image,
                            const AttributesContainer& globalAttributes)
    : ImageBuffer(ImageVolume<T>(image), copyOf(globalAttributes))
{
}

template <typename T>
ImageBuffer<T>::ImageBuffer(ImageVolume<T>&& volume, const AttributesContainer& globalAttributes)
    : ImageBuffer(std::move(volume), copyOf(globalAttributes))
{
}

template <typename T>
ImageBuffer<T>::ImageBuffer(ImageVolume<T>&& volume, std::unique_ptr<Attributes> globalAttributes)
    : ImageBuffer(oneFrame(std::make_shared<ImageVolume<T>>(std::move(volume))), std::move(globalAttributes))
{
}

template <typename T>
ImageBuffer<T>::ImageBuffer(std::vector<Image<T>>&& images, const AttributesContainer& globalAttributes)
    : ImageBuffer(toFrames<T>(std::move(images)), copyOf(globalAttributes))
{
}

template <typename T>
ImageBuffer<T>::ImageBuffer(std::vector<Image<T>>&& images, std::unique_ptr<Attributes> globalAttributes)
    : ImageBuffer(toFrames<T>(std::move(images)), std::move(globalAttributes))
{
}

template <typename T>
ImageBuffer<T>::ImageBuffer(std::vector<std::unique_ptr<Image<T>>>&& images,
                            const AttributesContainer& globalAttributes)
    : ImageBuffer(toFrames<T>(std::move(images)), copyOf(globalAttributes))
{
}

template <typename T>
ImageBuffer<T>::ImageBuffer(std::vector<std::unique_ptr<Image<T>>>&& images,
                            std::unique_ptr<Attributes> globalAttributes)
    : ImageBuffer(toFrames<T>(std::move(images)), std::move(globalAttributes))
{
}

template <typename T>
ImageBuffer<T>::ImageBuffer(std::vector<ImageVolume<T>>&& volumes,
                            const AttributesContainer& globalAttributes)
    : ImageBuffer(toFrames<T>(std::move(volumes)), copyOf(globalAttributes))
{
}

template <typename T>
ImageBuffer<T>::ImageBuffer(std::vector<ImageVolume<T>>&& volumes,
                            std::unique_ptr<Attributes> globalAttributes)
    : ImageBuffer(toFrames<T>(std::move(volumes)), std::move(globalAttributes))
{
}

template <typename T>
ImageBuffer<T>::ImageBuffer(std::vector<std::unique_ptr<ImageVolume<T>>>&& volumes,
                            const AttributesContainer& globalAttributes)
    : ImageBuffer(toFrames<T>(std::move(volumes)), copyOf(globalAttributes))
{
}

template <typename T>
ImageBuffer<T>::ImageBuffer(std::vector<std::unique_ptr<ImageVolume<T>>>&& volumes,
                            std::unique_ptr<Attributes> globalAttributes)
    : ImageBuffer(toFrames<T>(std::move(volumes)), std::move(globalAttributes))
{
}

template <typename T>
ImageBuffer<T>::ImageBuffer(std::vector<std::shared_ptr<ImageVolume<T>>>&& volumes,
                            const AttributesContainer& globalAttributes)
    : ImageBuffer(std::move(volumes), copyOf(globalAttributes))
{
}

template <typename T>
ImageBuffer<T>::ImageBuffer(std::vector<std::shared_ptr<ImageVolume<T>>>&& volumes,
                            std::unique_ptr<Attributes> globalAttributes)
    : m_frames(std::move(volumes)), m_globalAttributes(std::move(globalAttributes))
{
    RTE::verify(!m_frames.empty(), noFrames);
    for (const auto& frame : m_frames) {
        RTE::verify(frame != nullptr, "Image volume is not valid.");
        RTE::verify(frame->GetDepth() > 0, noPlanes);
    }
    RTE::verify(m_globalAttributes != nullptr, "Attributes are not valid.");
}

template <typename T>
ImageBuffer<T>::ImageBuffer(const ImageBuffer& other) : ImageBufferVariant(other)
{
    assignFrom(other, other.m_name);
}

template <typename T>
ImageBuffer<T>::ImageBuffer(ImageBuffer&& other) noexcept = default;

template <typename T>
ImageBuffer<T>::~ImageBuffer() = default;

template <typename T>
std::shared_ptr<ImageBuffer<T>> ImageBuffer<T>::CreateEmptyImageBuffer()
{
    return std::shared_ptr<ImageBuffer>(new ImageBuffer());
}

template <typename T>
ImageBuffer<T>& ImageBuffer<T>::operator=(const ImageBuffer& other)
{
    if (this != &other) {
        assignFrom(other, other.m_name);
    }
    return *this;
}

template <typename T>
ImageBuffer<T>& ImageBuffer<T>::operator=(ImageBuffer&& other)
{
    if (this == &other) {
        return *this;
    }
    other.copyViewsOf(*this);
    if (HasOwnerShip()) {
        m_globalAttributes = other.copiedGlobalAttributes();
        m_frames = std::exchange(other.m_frames, {});
    } else {
        RTE::verify(m_frames.size() == other.m_frames.size(), "Buffers have different number of frames");
        for (std::size_t i = 0; i < m_frames.size(); ++i) {
            m_frames[i]->MoveFrom(std::move(*other.m_frames[i]));
        }
        Private::mergeAttributes(*other.m_globalAttributes, *m_globalAttributes);
    }
    m_name = other.m_name;
    return *this;
}

template <typename T>
void ImageBuffer<T>::Assign(const ImageBufferVariant& source)
{
    const auto assign = [&](auto tag) {
        if (this != &source) {
            using Source = typename decltype(tag)::type;
            assignFrom(source, static_cast<const ImageBuffer<Source>&>(source).GetName());
        }
    };
    Private::visitImageType(source.GetDataType(), assign);
}

template <typename T>
ImageBuffer<T>& ImageBuffer<T>::operator=(T value)
{
    for (const auto& frame : m_frames) {
        *frame = value;
    }
    return *this;
}

template <typename T>
E_DataType ImageBuffer<T>::GetDataType() const noexcept
{
    return static_cast<E_DataType>(PixelTypes::number<T>);
}

template <typename T>
std::unique_ptr<ImageBufferVariant> ImageBuffer<T>::CreateCopy() const
{
    return std::make_unique<ImageBuffer>(*this);
}

template <typename T>
bool ImageBuffer<T>::HasOwnerShip() const noexcept
{
    return std::all_of(m_frames.begin(), m_frames.end(),
                       [](const auto& frame) { return frame->HasOwnerShip(); });
}

template <typename T>
std::shared_ptr<ImageVolumeVariant> ImageBuffer<T>::getFrameSPtr(unsigned int frame) noexcept
{
    return m_frames[frame];
}

template <typename T>
std::shared_ptr<const ImageVolumeVariant> ImageBuffer<T>::getFrameConstSPtr(unsigned int frame) const noexcept
{
    return m_frames[frame];
}

template <typename T>
void ImageBuffer<T>::AppendImageVolume(const ImageVolume<T>& volume)
{
    verifyAppendable(volume);
    _appendImageVolumeDontCheckSize(volume);
}

template <typename T>
void ImageBuffer<T>::AppendImageVolume(ImageVolume<T>&& volume)
{
    verifyAppendable(volume);
    m_frames.push_back(std::make_shared<ImageVolume<T>>(std::move(volume)));
}

template <typename T>
void ImageBuffer<T>::_appendImageVolumeDontCheckSize(const ImageVolume<T>& volume)
{
    m_frames.push_back(std::make_shared<ImageVolume<T>>(volume));
}

template <typename T>
ImageBuffer<T>& ImageBuffer<T>::operator*=(double operand)
{
    for (const auto& frame : m_frames) {
        *frame *= operand;
    }
    return *this;
}

template <typename T>
ImageBuffer<T>& ImageBuffer<T>::operator/=(double operand)
{
    for (const auto& frame : m_frames) {
        *frame /= operand;
    }
    return *this;
}

template <typename T>
ImageBuffer<T> ImageBuffer<T>::operator*(double operand) const
{
    ImageBuffer result(*this);
    result *= operand;
    return result;
}

template <typename T>
ImageBuffer<T> ImageBuffer<T>::operator/(double operand) const
{
    ImageBuffer result(*this);
    result /= operand;
    return result;
}

template <typename T>
void ImageBuffer<T>::verifyAppendable(const ImageVolume<T>& volume) const
{
    RTE::verify(volume.GetDepth() > 0, noPlanes);
    RTE::verify(m_frames.empty() || volume.GetSize() == m_frames.front()->GetSize(),
                "Volumes in the resulting buffer would have different sizes");
}

template <typename T>
void ImageBuffer<T>::assignFrom(const ImageBufferVariant& source, const QString& name)
{
    if (HasOwnerShip()) {
        // Complete before the old ones go: the source may view them.
        Frames frames;
        frames.reserve(source.getFrameCount());
        for (unsigned int i = 0; i < source.getFrameCount(); ++i) {
            frames.emplace_back(new ImageVolume<T>())->Assign(source.getFrame(i));
        }
        m_globalAttributes = std::make_unique<AttributesContainer>(source.GetGlobalAttributes());
        m_frames = std::move(frames);
    } else {
        RTE::verify(getFrameCount() == source.getFrameCount(), "Buffers have different number of frames");
        for (unsigned int i = 0; i < getFrameCount(); ++i) {
            m_frames[i]->Assign(source.getFrame(i));
        }
        Private::mergeAttributes(source.GetGlobalAttributes(), *m_globalAttributes);
    }
    m_name = name;
}

/// Makes own what this buffer views of the frames of `owner`, which are about to be freed.
template <typename T>
void ImageBuffer<T>::copyViewsOf(const ImageBuffer& owner)
{
    if (std::none_of(m_frames.begin(), m_frames.end(), [](const auto& frame) { return frame->hasViews(); })) {
        return;
    }
    Private::OwnedArrays arrays;
    for (const auto& frame : owner.m_frames) {
        frame->collectArrays(arrays);
    }
    for (const auto& frame : m_frames) {
        frame->copyViewsOf(arrays);
    }
}

/// None of a moved-from buffer.
template <typename T>
std::unique_ptr<Attributes> ImageBuffer<T>::copiedGlobalAttributes() const
{
    if (m_globalAttributes == nullptr) {
        return nullptr;
    }
    return std::make_unique<AttributesContainer>(*m_globalAttributes);
}

#define DATAOBJECTS_INSTANTIATE(type, number, name) template class ImageBuffer<type>;
DATAOBJECTS_PIXEL_TYPES(DATAOBJECTS_INSTANTIATE)
#undef DATAOBJECTS_INSTANTIATE

} // namespace DataObjects
