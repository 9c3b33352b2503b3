// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/I_Frame.h"

namespace BufferApi
{

/// A frame of vectors on a grid: U, V and for three components W as `float`, one set per choice; the number
/// of the choice in force (`COMPONENT_ACTIVE_CHOICE`, `int`) and whether a vector is enabled
/// (`COMPONENT_ENABLED`, bytes). Width and height count vectors.
///
/// A new frame has zero vectors, all enabled, with choice 0 in force. The components of choice 0 bear the
/// plain names; those of choice n > 0 have the number behind the name, "U1".
class DATAOBJECTS_BUFFER_EXPORT I_FrameVector : public virtual I_Frame
{
public:
    static const std::string COMPONENT_U;
    static const std::string COMPONENT_V;
    static const std::string COMPONENT_W;
    static const std::string COMPONENT_ENABLED;
    static const std::string COMPONENT_ACTIVE_CHOICE;

    ~I_FrameVector() override;

    using I_Frame::GetComponent;

    /// How many sets of components the frame holds.
    [[nodiscard]] virtual unsigned int GetChoiceCount() const = 0;
    /// A component of one choice; null when there is no such name or choice.
    [[nodiscard]] virtual I_Component* GetComponent(const std::string& name, unsigned int choice) const = 0;
    /// The vector grid in pixels, 1 in a new frame; any value is kept.
    [[nodiscard]] virtual unsigned int GetGridX() const = 0;
    [[nodiscard]] virtual unsigned int GetGridY() const = 0;
    [[nodiscard]] virtual unsigned int GetGridZ() const = 0;
    virtual void SetGridX(unsigned int grid) = 0;
    virtual void SetGridY(unsigned int grid) = 0;
    virtual void SetGridZ(unsigned int grid) = 0;
};

class DATAOBJECTS_BUFFER_EXPORT I_FrameVector2C : public virtual I_FrameVector
{
public:
    ~I_FrameVector2C() override;
};

class DATAOBJECTS_BUFFER_EXPORT I_FrameVector3C : public virtual I_FrameVector
{
public:
    ~I_FrameVector3C() override;
};

} // namespace BufferApi
