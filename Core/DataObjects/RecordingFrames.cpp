// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/RecordingFrames.h"

#include "Core/Buffer/BufferApi.h"
#include "Core/DataObjects/BufferAttributes.h"
#include "Core/DataObjects/ImageBuffer.h"
#include "Core/DataObjects/VisitImageType.h"

namespace DataObjects::Private
{

RecordingFrames::RecordingFrames(const ImageBufferVariant& recording, MasksInFrame masks)
    : m_recording(recording), m_masks(masks), m_description(BufferApi::CreateBuffer())
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
        m_frame = viewAsFrame(m_recording.getFrame(index), m_masks);
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
