// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/I_Buffer.h"
#include "Core/Buffer/StoredAttributes.h"

namespace BufferApi
{

class StoredBuffer final : public I_Buffer
{
public:
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
    std::vector<std::unique_ptr<I_Frame>> m_frames;
};

} // namespace BufferApi
