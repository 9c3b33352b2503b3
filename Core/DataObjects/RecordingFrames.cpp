// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/RecordingFrames.h"

#include "Core/Buffer/BufferApi.h"
#include "Core/DataObjects/BufferAttributes.h"
#include "Core/DataObjects/ImageBuffer.h"
#include "Core/DataObjects/ImageVolumeToFrame.h"
#include "Core/DataObjects/VisitImageType.h"

namespace DataObjects::Private
{

bool hasInvalidPixels(const ImageVariant& image)
{
    return image.IsMaskSpawned() && !AllValuesValid(image);
}

bool hasInvalidPixels(const ImageVolumeVariant& volume)
{
    for (unsigned int z = 0; z < volume.GetDepth(); ++z) {
        if (hasInvalidPixels(volume.getPlane(z))) {
            return true;
        }
    }
    return false;
}

RecordingFrames::RecordingFrames(const ImageBufferVariant& recording, bool withAllMasks)
    : m_recording(recording), m_withAllMasks(withAllMasks), m_description(BufferApi::CreateBuffer())
{
    visitImageType(recording.GetDataType(), [&](auto tag) {
        using Recording = ImageBuffer<typename decltype(tag)::type>;
        m_description->SetName(static_cast<const Recording&>(recording).GetName());
    });
    BufferAttributes(*m_description).merge(recording.GetGlobalAttributes());
}

RecordingFrames::~RecordingFrames() = default;

BufferApi::I_Frame* RecordingFrames::GetFrame(unsigned int index) const
{
    if (index >= GetFrameCount()) {
        return nullptr;
    }
    if (m_frame == nullptr || m_index != index) {
        // Ends before the next begins, which then gets its memory.
        m_frame.reset();
        const ImageVolumeVariant& volume = m_recording.getFrame(index);
        m_frame.reset(CreateFrameFromImageVolume(volume, m_withAllMasks || hasInvalidPixels(volume)));
        m_index = index;
    }
    return m_frame.get();
}

void RecordingFrames::AddFrame(BufferApi::I_Frame* /*frame*/)
{
    RTE::raise(RTE::LogicError(QStringLiteral("The frames of a recording stay")));
}

void RecordingFrames::Clear()
{
    RTE::raise(RTE::LogicError(QStringLiteral("The frames of a recording stay")));
}

} // namespace DataObjects::Private
