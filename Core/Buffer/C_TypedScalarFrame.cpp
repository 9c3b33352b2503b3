// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/C_TypedScalarFrame.h"

namespace BufferApi
{

C_TypedScalarFrame::C_TypedScalarFrame(const I_Frame* frame, const std::string& name)
    : m_frame(frame), m_component(I_Frame::TYPED_SCALAR_PREFIX + name)
{
    RTE::verify(frame != nullptr, "Frame is NULL");
}

bool C_TypedScalarFrame::IsExisting() const
{
    return GetComponent(0) != nullptr;
}

I_Component* C_TypedScalarFrame::GetComponent(unsigned int index) const
{
    return index == 0 ? m_frame->GetComponent(m_component) : nullptr;
}

void C_TypedScalarFrame::SetLinearScale(double factor, double offset, const QString& unit,
                                        const QString& description)
{
    I_Component* component = GetComponent(0);
    RTE::verify(component != nullptr, "Typed scalar does not exist");
    component->SetScale({factor, offset, unit, description});
}

} // namespace BufferApi
