// SPDX-License-Identifier: Apache-2.0
#include "Tools/qf/Losses.h"

#include "Tools/qf/Arguments.h"
#include "Tools/qf/PlaneValues.h"

#include "Core/Buffer/I_FrameImage.h"
#include "Core/Buffer/NameText.h"
#include "Core/Common/Array.h"
#include "Core/Common/Raise.h"
#include "Core/DataObjects/ImageDataFromBuffer.h"

#include <algorithm>
#include <span>

namespace Qf
{

namespace
{

using BufferApi::I_Frame;
using BufferApi::I_FrameImage;
using BufferApi::RgbQuad;

/// The colours of a plane, whose fourth byte belongs to no channel.
std::span<RgbQuad> colours(BufferApi::I_PlaneBase& plane)
{
    return {static_cast<RgbQuad*>(plane.GetData()), pixelCount(plane)};
}

std::vector<std::unique_ptr<unsigned short[]>> asWords(I_FrameImage& frame)
{
    std::vector<std::unique_ptr<unsigned short[]>> planes;
    for (unsigned int z = 0; z < frame.GetDepth(); ++z) {
        auto words =
            DataObjects::CreateImageDataOfType<unsigned short>(*DataObjects::GetImageData(frame, z), true);
        planes.emplace_back(words.ReleaseRawPointer());
    }
    return planes;
}

} // namespace

void Losses::fit(I_Frame& frame, const QString& path)
{
    if (!m_format.holdsOnlyPixels || dynamic_cast<I_FrameImage*>(&frame) == nullptr) {
        return;
    }
    fitComponents(frame, path);
    if (frame.GetDataType() == BufferApi::DT_RGB) {
        fitColours(frame, path);
    } else if (std::ranges::find(m_format.pixelTypes, frame.GetDataType()) == m_format.pixelTypes.end()) {
        fitPixels(frame, path);
    }
}

QString Losses::report() const
{
    const std::lock_guard lock(m_mutex);
    QStringList parts;
    for (const auto& [what, frames] : m_frames) {
        parts.append(QStringLiteral("%1 (%2)").arg(what, counted(frames, QStringLiteral("frame"))));
    }
    return parts.isEmpty() ? QString() : QStringLiteral("lost: ") + parts.join(QStringLiteral(", "));
}

void Losses::note(const QString& what, const QString& path)
{
    if (!m_areAccepted) {
        RTE::raise(RTE::FileWriteError(
            QStringLiteral("%1: a %2 file cannot hold %3; write a .qfi file, or go without it by --lossy")
                .arg(path, m_format.name, what)));
    }
    const std::lock_guard lock(m_mutex);
    ++m_frames[what];
}

void Losses::fitComponents(I_Frame& frame, const QString& path)
{
    for (unsigned int i = frame.GetComponentCount(); i-- > 0;) {
        const std::string name = frame.GetComponent(i)->GetName();
        if (name != I_FrameImage::COMPONENT_PIXEL) {
            note(QStringLiteral("the component '%1'").arg(BufferApi::nameToText(name)), path);
            frame.RemoveComponent(i);
        }
    }
}

void Losses::fitColours(I_Frame& frame, const QString& path)
{
    bool isFit = true;
    forEachPlane(frame, [&](const BufferApi::I_Component& /*component*/, unsigned int /*z*/,
                            BufferApi::I_PlaneBase& plane) {
        isFit = isFit && std::ranges::all_of(colours(plane), [](RgbQuad c) { return c.reserved == 0; });
    });
    if (isFit) {
        return;
    }
    note(QStringLiteral("the fourth byte of colours"), path);
    forEachPlane(frame, [](const BufferApi::I_Component& /*component*/, unsigned int /*z*/,
                           BufferApi::I_PlaneBase& plane) {
        std::ranges::for_each(colours(plane), [](RgbQuad& c) { c.reserved = 0; });
    });
}

void Losses::fitPixels(I_Frame& frame, const QString& path)
{
    note(QStringLiteral("pixels other than bytes and words"), path);
    auto planes = asWords(dynamic_cast<I_FrameImage&>(frame));
    const Zt::LinearScale scale = frame.GetScaleI();
    frame.RemoveComponent(frame.GetComponentIndex(I_FrameImage::COMPONENT_PIXEL));
    std::vector<void*> arrays;
    std::ranges::transform(planes, std::back_inserter(arrays), [](const auto& plane) { return plane.get(); });
    frame.AddComponent(I_FrameImage::COMPONENT_PIXEL, BufferApi::DT_WORD, arrays);
    std::ranges::for_each(planes, [](auto& plane) { static_cast<void>(plane.release()); });
    frame.SetScaleI(scale);
}

} // namespace Qf
