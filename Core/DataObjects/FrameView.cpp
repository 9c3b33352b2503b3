// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/FrameView.h"

#include "Core/Buffer/FrameBuilder.h"
#include "Core/Buffer/I_FrameImage.h"
#include "Core/Buffer/LazyPlane.h"
#include "Core/DataObjects/FrameWriting.h"
#include "Core/DataObjects/ScalarFieldFromFrame.h"
#include "Core/DataObjects/VisitImageType.h"

#include <algorithm>
#include <cstring>

namespace DataObjects::Private
{

namespace
{

using Images = std::vector<const ImageVariant*>;
using PlanePointer = std::unique_ptr<BufferApi::I_PlaneBase>;
using Size = Math::Size2T<unsigned int>;

/// Looks at memory that somebody else frees.
template <typename T>
class ViewedPlane final : public BufferApi::I_Plane<T>
{
public:
    ViewedPlane(const T* data, const Size& size) : m_data(data), m_size(size)
    {
        RTE::verify(data != nullptr || size.width == 0 || size.height == 0, "data-pointer is null");
    }

    [[nodiscard]] void* GetData() const override { return const_cast<T*>(m_data); }
    /// Null: there is nothing to give.
    [[nodiscard]] void* ReleaseData() override { return nullptr; }
    [[nodiscard]] unsigned int GetWidth() const override { return m_size.width; }
    [[nodiscard]] unsigned int GetHeight() const override { return m_size.height; }

private:
    const T* m_data;
    Size m_size;
};

/// A mask that nobody asked for.
class AllValid final : public BufferApi::PlaneSource
{
public:
    void read(void* destination, unsigned long long bytes) const override
    {
        std::memset(destination, 1, bytes);
    }
};

PlanePointer pixelsOf(const ImageVariant& image)
{
    return visitImageType(image.GetDataType(), [&](auto tag) -> PlanePointer {
        using T = typename decltype(tag)::type;
        const auto& data = CastImageDataTo<T>(image.GetImageData());
        return std::make_unique<ViewedPlane<T>>(data.GetRawPointer(), data.GetSize());
    });
}

PlanePointer maskOf(const ImageVariant& image)
{
    if (!image.IsMaskSpawned()) {
        return BufferApi::createLazyPlane(BufferApi::DT_BYTE, image.GetWidth(), image.GetHeight(),
                                          std::make_shared<AllValid>());
    }
    const Mask& mask = image.GetMask();
    RTE::verify(mask.GetSize() == image.GetSize(), "Source and destination have different sizes.");
    const auto* const bytes = reinterpret_cast<const unsigned char*>(mask.GetRawPointer());
    return std::make_unique<ViewedPlane<unsigned char>>(bytes, mask.GetSize());
}

template <typename MakePlane>
BufferApi::ComponentParts component(const std::string& name, const Images& images, MakePlane makePlane)
{
    BufferApi::ComponentParts parts{.name = name, .type = BufferApi::DT_UNKNOWN, .planes = {}, .scale = {}};
    for (const ImageVariant* const image : images) {
        RTE::verify(image->GetSize() == images.front()->GetSize(),
                    "Source and destination have different sizes.");
        parts.planes.push_back(makePlane(*image));
    }
    parts.type = parts.planes.front()->GetDataType();
    return parts;
}

bool hasInvalidPixels(const ImageVariant* image)
{
    return image->IsMaskSpawned() && !AllValuesValid(*image);
}

std::unique_ptr<BufferApi::I_Frame> viewAsFrame(const Images& images, MasksInFrame masks)
{
    std::for_each(images.begin(), images.end(),
                  [](const ImageVariant* image) { verifyNotMovedFrom(*image); });
    const ImageVariant& first = *images.front();
    std::vector<BufferApi::ComponentParts> components;
    components.push_back(component(BufferApi::I_FrameImage::COMPONENT_PIXEL, images, pixelsOf));
    if (masks == MasksInFrame::All || std::any_of(images.begin(), images.end(), hasInvalidPixels)) {
        components.push_back(component(BufferApi::I_Frame::COMPONENT_MASK, images, maskOf));
    }
    const BufferApi::FrameShape shape{.kind = BufferApi::FrameKind::Image,
                                      .width = first.GetWidth(),
                                      .height = first.GetHeight(),
                                      .depth = static_cast<unsigned int>(images.size()),
                                      .choices = 1};
    auto frame = BufferApi::buildFrame(shape, std::move(components));
    for (unsigned int z = 0; z < images.size(); ++z) {
        GetScalarFields(*frame, z)->DeepCopyFrom(images[z]->GetScalarFields());
    }
    assignScales(first, *frame);
    BufferAttributes(*frame).merge(first.GetAttributes());
    return frame;
}

} // namespace

std::unique_ptr<BufferApi::I_Frame> viewAsFrame(const ImageVariant& image, MasksInFrame masks)
{
    return viewAsFrame(Images{&image}, masks);
}

std::unique_ptr<BufferApi::I_Frame> viewAsFrame(const ImageVolumeVariant& volume, MasksInFrame masks)
{
    Images images;
    for (unsigned int z = 0; z < volume.GetDepth(); ++z) {
        images.push_back(&volume.getPlane(z));
    }
    RTE::verify(!images.empty(), "ImageVolume must have at least one z-plane");
    return viewAsFrame(images, masks);
}

} // namespace DataObjects::Private
