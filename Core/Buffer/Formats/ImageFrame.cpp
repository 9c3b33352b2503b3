// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/ImageFrame.h"

#include "Core/Buffer/FrameBuilder.h"
#include "Core/Buffer/I_FrameImage.h"
#include "Core/Common/Raise.h"

namespace BufferApi::Formats
{

std::unique_ptr<I_Frame> lazyImageFrame(E_DataType type, unsigned int width, unsigned int height,
                                        std::vector<std::shared_ptr<const PlaneSource>> planes)
{
    ComponentParts component{.name = I_FrameImage::COMPONENT_PIXEL, .type = type, .planes = {}, .scale = {}};
    const auto depth = static_cast<unsigned int>(planes.size());
    for (std::shared_ptr<const PlaneSource>& plane : planes) {
        component.planes.push_back(createLazyPlane(type, width, height, std::move(plane)));
    }
    std::vector<ComponentParts> components;
    components.push_back(std::move(component));
    return buildFrame({.kind = type == DT_RGB ? FrameKind::Rgb : FrameKind::Image,
                       .width = width,
                       .height = height,
                       .depth = depth,
                       .choices = 1},
                      std::move(components));
}

const I_Component& onlyPixels(const I_Frame& frame, const OutputFile& file, const QString& format)
{
    const auto refuse = [&](bool isRefused, const QString& what) {
        if (isRefused) {
            file.refuse(QStringLiteral("%1 cannot hold %2; a .qfi file can").arg(format, what));
        }
    };
    refuse(isVectorKind(frameShape(frame).kind), QStringLiteral("vectors"));
    for (unsigned int i = 0; i < frame.GetComponentCount(); ++i) {
        const std::string name = frame.GetComponent(i)->GetName();
        refuse(name != I_FrameImage::COMPONENT_PIXEL,
               QStringLiteral("the component '%1'").arg(QString::fromLatin1(name.c_str())));
    }
    const I_Component* pixels = frame.GetComponent(I_FrameImage::COMPONENT_PIXEL);
    refuse(pixels == nullptr || frame.GetWidth() == 0 || frame.GetHeight() == 0 || frame.GetDepth() == 0,
           QStringLiteral("an image without pixels"));
    for (unsigned int z = 0; z < frame.GetDepth(); ++z) {
        const I_PlaneBase& plane = *pixels->GetPlane(z);
        refuse(plane.GetWidth() != frame.GetWidth() || plane.GetHeight() != frame.GetHeight(),
               QStringLiteral("pixels of another size than the frame"));
    }
    return *pixels;
}

void refuseFourthByte(const I_PlaneBase& plane, const unsigned char* pixels, const OutputFile& file,
                      const QString& format)
{
    if (plane.GetDataType() != DT_RGB) {
        return;
    }
    const auto* colours = reinterpret_cast<const RgbQuad*>(pixels);
    const unsigned long long count = 1ULL * plane.GetWidth() * plane.GetHeight();
    unsigned int all = 0;
    for (unsigned long long i = 0; i < count; ++i) {
        all |= colours[i].reserved;
    }
    if (all != 0) {
        file.refuse(QStringLiteral("%1 cannot hold the fourth byte of colours, which is not 0 everywhere; a "
                                   ".qfi file can")
                        .arg(format));
    }
}

PlanePixels::PlanePixels(const I_PlaneBase& plane)
{
    if (isUnread(plane)) {
        m_copy.resize(planeBytes(plane.GetDataType(), plane.GetWidth(), plane.GetHeight()));
        readPlane(plane, m_copy.data());
        m_data = m_copy.data();
    } else {
        m_data = static_cast<const unsigned char*>(plane.GetData());
        RTE::verify(m_data != nullptr, "Plane has no data");
    }
}

} // namespace BufferApi::Formats
