// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/FrameView.h"
#include "Core/DataObjects/ImageBufferVariant.h"

namespace DataObjects::Private
{

/// A recording as a buffer for the writer of a file, which asks for one frame after the other: each is a view
/// of the recording that is made when it is asked for and ends when another is.
class RecordingFrames final : public BufferApi::I_Buffer
{
public:
    RecordingFrames(const ImageBufferVariant& recording, MasksInFrame masks);
    ~RecordingFrames() override;

    /// Owned by the buffer until another frame is asked for.
    [[nodiscard]] BufferApi::I_Frame* GetFrame(unsigned int index) const override;
    [[nodiscard]] unsigned int GetFrameCount() const override { return m_recording.getFrameCount(); }

    void ClearAttributes() override { m_description->ClearAttributes(); }
    [[nodiscard]] const BufferApi::AttributeMap& GetAttributeList() const override
    {
        return m_description->GetAttributeList();
    }
    [[nodiscard]] BufferApi::I_AttributeBase* FindAttribute(const std::string& name) const override
    {
        return m_description->FindAttribute(name);
    }
    BufferApi::I_AttributeBase* CreateAttribute(const std::string& name,
                                                BufferApi::E_AttributeKind kind) override
    {
        return m_description->CreateAttribute(name, kind);
    }
    void RemoveAttribute(const std::string& name) override { m_description->RemoveAttribute(name); }
    [[nodiscard]] QString GetName() const override { return m_description->GetName(); }
    void SetName(const QString& name) override { m_description->SetName(name); }
    [[nodiscard]] bool IsModified(unsigned int aspect) const override
    {
        return m_description->IsModified(aspect);
    }
    void SetModified(bool modified) override { m_description->SetModified(modified); }

    /// \name The frames are those of the recording: RTE::LogicError
    /// \{
    void AddFrame(BufferApi::I_Frame* frame) override;
    void Clear() override;
    /// \}

private:
    const ImageBufferVariant& m_recording;
    MasksInFrame m_masks;
    /// Name and attributes, without frames.
    std::unique_ptr<BufferApi::I_Buffer> m_description;
    mutable std::unique_ptr<BufferApi::I_Frame> m_frame;
    mutable unsigned int m_index = 0;
};

} // namespace DataObjects::Private
