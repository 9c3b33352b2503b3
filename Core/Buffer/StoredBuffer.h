// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/LazyBuffer.h"
#include "Core/Buffer/StoredAttributes.h"

#include <mutex>

namespace BufferApi
{

class StoredBuffer final : public I_Buffer
{
public:
    StoredBuffer() = default;
    /// \param count frames that the source makes when they are asked for
    StoredBuffer(unsigned int count, std::shared_ptr<const FrameSource> source);

    void AddFrame(I_Frame* frame) override;
    void ClearAttributes() override { m_attributes.clear(); }
    [[nodiscard]] const AttributeMap& GetAttributeList() const override { return m_attributes.map(); }
    [[nodiscard]] I_AttributeBase* FindAttribute(const std::string& name) const override;
    [[nodiscard]] I_Frame* GetFrame(unsigned int index) const override;
    [[nodiscard]] unsigned int GetFrameCount() const override;
    I_AttributeBase* CreateAttribute(const std::string& name, E_AttributeKind kind) override;
    [[nodiscard]] QString GetName() const override { return m_name; }
    void SetName(const QString& name) override;
    void RemoveAttribute(const std::string& name) override { m_attributes.remove(name); }
    void Clear() override;
    [[nodiscard]] bool IsModified(unsigned int aspect) const override;
    void SetModified(bool modified) override;

private:
    bool m_modified = false;
    QString m_name;
    StoredAttributes m_attributes{m_modified};
    mutable std::mutex m_mutex;
    std::shared_ptr<const FrameSource> m_source;
    /// Null where the source has not yet made the frame.
    mutable std::vector<std::unique_ptr<I_Frame>> m_frames;
};

} // namespace BufferApi
