// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/I_Attribute.h"
#include "Core/Buffer/I_Component.h"

#include <vector>

namespace BufferApi
{

/// One frame of a buffer: a size, four scales, attributes, and named components with one plane per z.
///
/// Pointers that it hands out belong to the frame. Arrays that it takes over must come from `RTE::newArray`
/// of the element type. Scales of a new frame are those of `Zt::ScalePreset`; the I scale of a vector frame
/// has factor 1, offset 0 and the unit "pixel". Not synchronised, except that planes load from any thread.
class DATAOBJECTS_BUFFER_EXPORT I_Frame
{
public:
    /// Validity mask: bytes, not zero means valid.
    static const std::string COMPONENT_MASK;
    /// "TS:", which begins the name of a component that is a typed scalar.
    static const std::string TYPED_SCALAR_PREFIX;

    I_Frame(const I_Frame&) = delete;
    I_Frame& operator=(const I_Frame&) = delete;
    virtual ~I_Frame();

    /// Adds a component with one plane per z, of the frame's size, and gives its index. An empty vector makes
    /// the frame allocate the planes, uninitialised; otherwise it takes over one array per z.
    /// \throws RTE::InvalidArgumentError for an empty or taken name, an unsupported type, a wrong number of
    ///         arrays, an array that is null, given twice or the frame's already; all then stay with the
    ///         caller
    virtual unsigned int AddComponent(const std::string& name, E_DataType type,
                                      const std::vector<void*>& planes) = 0;
    /// Makes the mask component: allocated and all valid when the vector is empty, else over the given
    /// arrays. A mask that exists stays when the vector is empty, and is replaced otherwise; pointers to the
    /// old one then dangle. \throws RTE::InvalidArgumentError as `AddComponent`
    virtual void AddMask(const std::vector<void*>& planes) = 0;
    virtual void ClearAttributes() = 0;
    /// Removes a component with its planes. \throws RTE::OutOfRangeError "index"
    virtual void RemoveComponent(unsigned int index) = 0;
    [[nodiscard]] virtual const AttributeMap& GetAttributeList() const = 0;
    /// Null when absent. \throws RTE::InvalidArgumentError "Empty name" for the empty name
    [[nodiscard]] virtual I_AttributeBase* FindAttribute(const std::string& name) const = 0;
    [[nodiscard]] virtual unsigned int GetComponentCount() const = 0;
    /// `0xFFFFFFFF` when there is no such component.
    [[nodiscard]] virtual unsigned int GetComponentIndex(const std::string& name) const = 0;
    /// Null when absent.
    [[nodiscard]] virtual I_Component* GetComponent(const std::string& name) const = 0;
    /// Null when out of range.
    [[nodiscard]] virtual I_Component* GetComponent(unsigned int index) const = 0;
    /// Null when there is no such component or plane.
    [[nodiscard]] virtual I_PlaneBase* GetPlane(unsigned int component, unsigned int z) const = 0;
    /// Type of the main component: the pixels, or U of a vector frame; `DT_RGB` for a colour frame,
    /// `DT_UNKNOWN` once the main component was removed.
    [[nodiscard]] virtual E_DataType GetDataType() const = 0;
    [[nodiscard]] virtual const Zt::LinearScale& GetScaleI() const = 0;
    [[nodiscard]] virtual const Zt::LinearScale& GetScaleX() const = 0;
    [[nodiscard]] virtual const Zt::LinearScale& GetScaleY() const = 0;
    [[nodiscard]] virtual const Zt::LinearScale& GetScaleZ() const = 0;
    [[nodiscard]] virtual unsigned int GetWidth() const = 0;
    [[nodiscard]] virtual unsigned int GetHeight() const = 0;
    /// Number of planes per component.
    [[nodiscard]] virtual unsigned int GetDepth() const = 0;
    [[nodiscard]] virtual bool HasMask() const = 0;
    /// The new attribute, empty, owned by the frame; one of the same name is replaced and destroyed.
    /// \throws RTE::InvalidArgumentError "Empty name" for the empty name
    virtual I_AttributeBase* CreateAttribute(const std::string& name, E_AttributeKind kind) = 0;
    /// The I scale of a frame with pixels is the scale of its pixel component. That of a vector frame is the
    /// scale of U, V and W of all choices, except those that were given their own.
    virtual void SetScaleI(const Zt::LinearScale& scale) = 0;
    virtual void SetScaleX(const Zt::LinearScale& scale) = 0;
    virtual void SetScaleY(const Zt::LinearScale& scale) = 0;
    virtual void SetScaleZ(const Zt::LinearScale& scale) = 0;

    /// Removes exactly this attribute, or with a name that ends in "*" all that begin with the text before
    /// the star, so "Acq.*" removes the group. \throws RTE::InvalidArgumentError "Empty name"
    virtual void RemoveAttribute(const std::string& name) = 0;
    /// Removes all typed scalars: the components whose name begins with `TYPED_SCALAR_PREFIX`.
    virtual void ClearTypedScalars() = 0;

protected:
    I_Frame() = default;

private:
    friend class StoredBuffer;

    bool m_isInBuffer = false;
};

} // namespace BufferApi
