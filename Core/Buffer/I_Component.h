// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/I_Plane.h"
#include "Core/Common/LinearScale.h"

#include <string>

namespace BufferApi
{

/// A named part of a frame: one plane per z, and a scale for its values.
class DATAOBJECTS_BUFFER_EXPORT I_Component
{
public:
    I_Component(const I_Component&) = delete;
    I_Component& operator=(const I_Component&) = delete;
    virtual ~I_Component();

    [[nodiscard]] virtual std::string GetName() const = 0;
    /// The scale of the pixel component is the frame's I scale. U, V and W have the frame's I scale until
    /// they are given one of their own. Every other component has its own, at first factor 1, offset 0 and
    /// no texts.
    [[nodiscard]] virtual const Zt::LinearScale& GetScale() const = 0;
    /// The plane of this z, owned by the component; null when z is out of range.
    [[nodiscard]] virtual I_PlaneBase* GetPlane(unsigned int z) const = 0;
    /// Sets the frame's I scale for the pixel component, otherwise the component's own scale.
    virtual void SetScale(const Zt::LinearScale& scale) = 0;
    [[nodiscard]] virtual E_DataType GetDataType() const = 0;
    /// Number of planes.
    [[nodiscard]] virtual unsigned int GetPlaneCount() const = 0;
    /// True once `SetScale` gave the component a scale apart from the frame's; never for the pixels.
    [[nodiscard]] virtual bool HasOwnScale() const = 0;

protected:
    I_Component() = default;
};

} // namespace BufferApi
