// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/I_Attribute.h"

namespace BufferApi
{

/// The attributes of a frame or a buffer.
class StoredAttributes
{
public:
    /// \param modified set by every change, also of a value; outlives this object
    explicit StoredAttributes(bool& modified) noexcept : m_modified(modified) {}

    [[nodiscard]] const AttributeMap& map() const noexcept { return m_map; }
    [[nodiscard]] I_AttributeBase* find(const std::string& name) const;
    I_AttributeBase* create(const std::string& name, E_AttributeKind kind);
    void remove(const std::string& name);
    void clear();

private:
    bool& m_modified;
    AttributeMap m_map;
};

} // namespace BufferApi
