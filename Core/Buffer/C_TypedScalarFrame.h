// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/I_Frame.h"

namespace BufferApi
{

/// One typed scalar of a frame by its name, without the prefix that its component bears. Holds the frame's
/// pointer and nothing of the scalar, so it may be there before and after it.
class DATAOBJECTS_BUFFER_EXPORT C_TypedScalarFrame
{
public:
    /// \param frame outlives this object \throws RTE::VerificationFailed "Frame is NULL"
    C_TypedScalarFrame(const I_Frame* frame, const std::string& name);

    [[nodiscard]] bool IsExisting() const;
    /// Index 0 is the component of the planes; null for any other and for a scalar that is not there.
    [[nodiscard]] I_Component* GetComponent(unsigned int index) const;
    /// The scale of the values. \throws RTE::VerificationFailed "Typed scalar does not exist"
    void SetLinearScale(double factor, double offset, const QString& unit, const QString& description);

private:
    const I_Frame* m_frame;
    std::string m_component;
};

} // namespace BufferApi
