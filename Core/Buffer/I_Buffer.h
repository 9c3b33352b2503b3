// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/I_Frame.h"

namespace BufferApi
{

/// An ordered list of frames with attributes and a name. Not synchronised.
class DATAOBJECTS_BUFFER_EXPORT I_Buffer
{
public:
    I_Buffer(const I_Buffer&) = delete;
    I_Buffer& operator=(const I_Buffer&) = delete;
    virtual ~I_Buffer();

    /// Appends and takes ownership. \throws RTE::InvalidArgumentError for null and for a frame that a buffer,
    /// this or another, holds already
    virtual void AddFrame(I_Frame* frame) = 0;
    virtual void ClearAttributes() = 0;
    [[nodiscard]] virtual const AttributeMap& GetAttributeList() const = 0;
    /// Null when absent. \throws RTE::InvalidArgumentError "Empty name" for the empty name
    [[nodiscard]] virtual I_AttributeBase* FindAttribute(const std::string& name) const = 0;
    /// Owned by the buffer; null beyond the end.
    [[nodiscard]] virtual I_Frame* GetFrame(unsigned int index) const = 0;
    [[nodiscard]] virtual unsigned int GetFrameCount() const = 0;
    /// The new attribute, empty, owned by the buffer; one of the same name is replaced and destroyed.
    /// \throws RTE::InvalidArgumentError "Empty name" for the empty name
    virtual I_AttributeBase* CreateAttribute(const std::string& name, E_AttributeKind kind) = 0;
    [[nodiscard]] virtual QString GetName() const = 0;

    virtual void SetName(const QString& name) = 0;
    /// As `I_Frame::RemoveAttribute`.
    virtual void RemoveAttribute(const std::string& name) = 0;
    /// Destroys all frames; attributes and name stay.
    virtual void Clear() = 0;
    /// True after a change since creation, import or `SetModified(false)`: of the list of frames, the name,
    /// attributes and their values, components, scales and grids. Writing into planes is the writer's to
    /// tell with `SetModified`.
    /// \param aspect 0, any change; other numbers are reserved and give false
    [[nodiscard]] virtual bool IsModified(unsigned int aspect) const = 0;
    virtual void SetModified(bool modified) = 0;

protected:
    I_Buffer() = default;
};

} // namespace BufferApi
