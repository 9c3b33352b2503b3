// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/BufferLibDataAccess.h"

#include "Core/Buffer/I_FrameImage.h"

namespace DataObjects::Private
{

namespace
{

struct ScaleAccess
{
    const Zt::LinearScale& (BufferApi::I_Frame::*get)() const;
    void (BufferApi::I_Frame::*set)(const Zt::LinearScale&);
};

using BufferApi::I_Frame;

constexpr std::array<ScaleAccess, 4> scaleAccesses{{{&I_Frame::GetScaleX, &I_Frame::SetScaleX},
                                                    {&I_Frame::GetScaleY, &I_Frame::SetScaleY},
                                                    {&I_Frame::GetScaleZ, &I_Frame::SetScaleZ},
                                                    {&I_Frame::GetScaleI, &I_Frame::SetScaleI}}};

} // namespace

void* getCheckedData(const BufferApi::I_PlaneBase* plane, BufferApi::E_DataType type, const char* missing,
                     const char* otherType, RTE::SourceLocation location)
{
    RTE::verify(plane != nullptr, missing, location);
    RTE::verify(plane->GetDataType() == type, otherType, location);
    return plane->GetData();
}

BufferApi::I_PlaneBase* findPixelPlane(const BufferApi::I_Frame& frame, unsigned int z)
{
    const BufferApi::I_Component* pixels = frame.GetComponent(BufferApi::I_FrameImage::COMPONENT_PIXEL);
    return pixels ? pixels->GetPlane(z) : nullptr;
}

std::unique_ptr<Zt::LinearScale> GetScaleOnFrame(BufferApi::I_Frame* frame, unsigned int kind)
{
    if (kind >= scaleAccesses.size()) {
        RTE::raise(RTE::Exception(QStringLiteral("Invalid scale type")));
    }
    RTE::verify(frame != nullptr, "Frame is NULL");
    const ScaleAccess& access = scaleAccesses[kind];
    auto scale = std::make_unique<Zt::LinearScale>((frame->*access.get)());
    scale->setChangedCallback(
        [frame, set = access.set](const Zt::LinearScale& changed) { (frame->*set)(changed); });
    return scale;
}

std::unique_ptr<Zt::LinearScale> GetScaleOnComponent(BufferApi::I_Component* component)
{
    RTE::verify(component != nullptr, "Component is NULL");
    auto scale = std::make_unique<Zt::LinearScale>(component->GetScale());
    scale->setChangedCallback([component](const Zt::LinearScale& changed) { component->SetScale(changed); });
    return scale;
}

} // namespace DataObjects::Private
