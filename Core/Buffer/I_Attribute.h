// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/I_Plane.h"

#include <QString>

#include <map>
#include <memory>
#include <string>

namespace BufferApi
{

/// What an attribute holds. The numbers are those that `I_AttributeBase::GetKind` gives.
enum E_AttributeKind : unsigned int
{
    AT_STRING = 4,
    AT_PLANE = 7
};

/// A value with a name, on a frame or a buffer. Kinds 1 to 9 are known to the store; it makes texts and
/// planes.
class DATAOBJECTS_BUFFER_EXPORT I_AttributeBase
{
public:
    I_AttributeBase(const I_AttributeBase&) = delete;
    I_AttributeBase& operator=(const I_AttributeBase&) = delete;
    virtual ~I_AttributeBase();

    /// 4 for a text attribute, 7 for a plane attribute.
    [[nodiscard]] virtual unsigned int GetKind() const = 0;

protected:
    I_AttributeBase() = default;
};

/// A single value under a name; the store makes those of `QString`.
template <typename T>
class DATAOBJECTS_BUFFER_EXPORT I_Attribute : public I_AttributeBase
{
public:
    [[nodiscard]] virtual T GetValue() const = 0;
    virtual void SetValue(const T& value) = 0;
};

/// Numbers under a name, usually a list: a plane of height 1.
class DATAOBJECTS_BUFFER_EXPORT I_AttributePlane : public I_AttributeBase
{
public:
    /// Owned by the attribute; null when none is set.
    [[nodiscard]] virtual I_PlaneBase* GetPlane() const = 0;
    /// Takes ownership; the earlier plane is destroyed. Setting the plane that is set changes nothing.
    /// \throws RTE::InvalidArgumentError for a plane of a frame or another attribute
    virtual void SetPlane(I_PlaneBase* plane) = 0;
};

/// The attributes of a frame or a buffer, sorted by name.
using AttributeMap = std::map<std::string, std::unique_ptr<I_AttributeBase>>;

} // namespace BufferApi
