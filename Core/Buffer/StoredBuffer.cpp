// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/StoredBuffer.h"

#include "Core/Buffer/StoredFrame.h"

namespace BufferApi
{

namespace
{

void markModified(I_Frame& frame, bool modified)
{
    if (auto* stored = dynamic_cast<StoredFrame*>(&frame)) {
        stored->setModified(modified);
    }
}

} // namespace

FrameSource::~FrameSource() = default;

std::unique_ptr<I_Buffer> createLazyBuffer(unsigned int count, std::shared_ptr<const FrameSource> source)
{
    return std::make_unique<StoredBuffer>(count, std::move(source));
}

StoredBuffer::StoredBuffer(unsigned int count, std::shared_ptr<const FrameSource> source)
    : m_source(std::move(source)), m_frames(count)
{
}

void StoredBuffer::AddFrame(I_Frame* frame)
{
    if (!frame || frame->m_isInBuffer) {
        RTE::raise(RTE::InvalidArgumentError(frame ? QStringLiteral("Frame belongs to a buffer already")
                                                   : QStringLiteral("Frame is NULL")));
    }
    // Room first: the frame must stay with the caller when there is none.
    m_frames.emplace_back();
    m_frames.back().reset(frame);
    frame->m_isInBuffer = true;
    m_modified = true;
}

I_AttributeBase* StoredBuffer::FindAttribute(const std::string& name) const
{
    return m_attributes.find(name);
}

I_Frame* StoredBuffer::GetFrame(unsigned int index) const
{
    if (index >= m_frames.size()) {
        return nullptr;
    }
    if (!m_source) {
        return m_frames[index].get();
    }
    const std::lock_guard lock(m_mutex);
    auto& frame = m_frames[index];
    if (!frame) {
        frame = m_source->frame(index);
        markModified(*frame, false);
    }
    return frame.get();
}

unsigned int StoredBuffer::GetFrameCount() const
{
    return static_cast<unsigned int>(m_frames.size());
}

I_AttributeBase* StoredBuffer::CreateAttribute(const std::string& name, E_AttributeKind kind)
{
    return m_attributes.create(name, kind);
}

void StoredBuffer::SetName(const QString& name)
{
    m_name = name;
    m_modified = true;
}

void StoredBuffer::Clear()
{
    m_modified = m_modified || !m_frames.empty();
    m_frames.clear();
    m_source.reset();
}

bool StoredBuffer::IsModified(unsigned int aspect) const
{
    return aspect == 0 && (m_modified || std::any_of(m_frames.begin(), m_frames.end(), [](const auto& frame) {
                               const auto* stored = dynamic_cast<const StoredFrame*>(frame.get());
                               return stored && stored->isModified();
                           }));
}

void StoredBuffer::SetModified(bool modified)
{
    m_modified = modified;
    for (const auto& frame : m_frames) {
        if (frame) {
            markModified(*frame, false);
        }
    }
}

} // namespace BufferApi
