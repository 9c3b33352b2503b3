// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/C_FrameAttributes.h"

namespace BufferApi
{

C_FrameAttributes::C_FrameAttributes(I_Frame* frame) : m_frame(frame)
{
    RTE::verify(frame != nullptr, "Frame is NULL");
}

void C_FrameAttributes::Remove(const std::string& name)
{
    m_frame->RemoveAttribute(name);
}

QString C_FrameAttributes::GetString(const std::string& name) const
{
    const auto* attribute = dynamic_cast<I_Attribute<QString>*>(m_frame->FindAttribute(name));
    return attribute ? attribute->GetValue() : QString();
}

} // namespace BufferApi
