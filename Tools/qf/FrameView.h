// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/I_Buffer.h"

#include <functional>

namespace Qf
{

/// Frames from elsewhere with the name and the attributes of a buffer, for an export; it cannot be changed.
class FrameView : public BufferApi::I_Buffer
{
public:
    using FrameAt = std::function<BufferApi::I_Frame*(unsigned int)>;

    /// \param about gives name and attributes, and must outlive the view
    /// \param frameAt gives the frames, which need to live until the next is asked for
    FrameView(const BufferApi::I_Buffer& about, unsigned int frameCount, FrameAt frameAt)
        : m_about(about), m_frameCount(frameCount), m_frameAt(std::move(frameAt))
    {
    }

    [[nodiscard]] const BufferApi::AttributeMap& GetAttributeList() const override;
    [[nodiscard]] BufferApi::I_AttributeBase* FindAttribute(const std::string& name) const override;
    [[nodiscard]] BufferApi::I_Frame* GetFrame(unsigned int index) const override;
    [[nodiscard]] unsigned int GetFrameCount() const override { return m_frameCount; }
    [[nodiscard]] QString GetName() const override { return m_about.GetName(); }
    [[nodiscard]] bool IsModified(unsigned int /*aspect*/) const override { return false; }

    /// \name Refused with RTE::NotImplemented
    /// @{
    void AddFrame(BufferApi::I_Frame* frame) override;
    void ClearAttributes() override;
    BufferApi::I_AttributeBase* CreateAttribute(const std::string& name,
                                                BufferApi::E_AttributeKind kind) override;
    void SetName(const QString& name) override;
    void RemoveAttribute(const std::string& name) override;
    void Clear() override;
    void SetModified(bool modified) override;
    /// @}

private:
    const BufferApi::I_Buffer& m_about;
    unsigned int m_frameCount;
    FrameAt m_frameAt;
};

} // namespace Qf
