// SPDX-License-Identifier: Apache-2.0
#include "Tools/qf/FrameView.h"

#include "Core/Common/Raise.h"

namespace Qf
{

namespace
{

[[noreturn]] void refuse(RTE::SourceLocation location = RTE::SourceLocation::current())
{
    RTE::raise(RTE::NotImplemented(QStringLiteral("A view of frames cannot be changed")), location);
}

} // namespace

const BufferApi::AttributeMap& FrameView::GetAttributeList() const
{
    return m_about.GetAttributeList();
}

BufferApi::I_AttributeBase* FrameView::FindAttribute(const std::string& name) const
{
    return m_about.FindAttribute(name);
}

BufferApi::I_Frame* FrameView::GetFrame(unsigned int index) const
{
    return index < m_frameCount ? m_frameAt(index) : nullptr;
}

void FrameView::AddFrame(BufferApi::I_Frame* /*frame*/)
{
    refuse();
}

void FrameView::ClearAttributes()
{
    refuse();
}

BufferApi::I_AttributeBase* FrameView::CreateAttribute(const std::string& /*name*/,
                                                       BufferApi::E_AttributeKind /*kind*/)
{
    refuse();
}

void FrameView::SetName(const QString& /*name*/)
{
    refuse();
}

void FrameView::RemoveAttribute(const std::string& /*name*/)
{
    refuse();
}

void FrameView::Clear()
{
    refuse();
}

void FrameView::SetModified(bool /*modified*/)
{
    refuse();
}

} // namespace Qf
