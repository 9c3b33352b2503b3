// SPDX-License-Identifier: Apache-2.0
#include "Tools/qf/PlaneChoice.h"

#include "Tools/qf/Arguments.h"

#include "Core/Buffer/I_FrameImage.h"
#include "Core/Buffer/NameText.h"
#include "Core/Common/Raise.h"

namespace Qf
{

namespace
{

using BufferApi::I_Component;
using BufferApi::I_Frame;
using BufferApi::I_PlaneBase;

QString componentNames(const I_Frame& frame)
{
    QStringList names;
    for (unsigned int i = 0; i < frame.GetComponentCount(); ++i) {
        names << BufferApi::nameToText(frame.GetComponent(i)->GetName());
    }
    names.removeDuplicates();
    return names.join(QStringLiteral(", "));
}

} // namespace

const I_Frame& frameOf(const BufferApi::I_Buffer& buffer, unsigned int index)
{
    if (index >= buffer.GetFrameCount()) {
        RTE::raise(RTE::OutOfRangeError(noFrameText(QString::number(index), buffer.GetFrameCount())));
    }
    return *buffer.GetFrame(index);
}

const I_Component& componentOf(const I_Frame& frame, const QString& name)
{
    const std::string& pixels = BufferApi::I_FrameImage::COMPONENT_PIXEL;
    const I_Component* component =
        frame.GetComponent(name.isEmpty() ? pixels : BufferApi::nameFromText(name));
    if (component == nullptr && name.isEmpty()) {
        RTE::raise(RTE::InvalidArgumentError(
            QStringLiteral("the frame has no pixels; choose one of its components with --component: %1")
                .arg(componentNames(frame))));
    }
    if (component == nullptr) {
        RTE::raise(RTE::InvalidArgumentError(
            QStringLiteral("no component '%1'; the frame has %2").arg(name, componentNames(frame))));
    }
    return *component;
}

const I_PlaneBase& planeOf(const I_Component& component, unsigned int z)
{
    const I_PlaneBase* plane = component.GetPlane(z);
    if (plane == nullptr) {
        RTE::raise(RTE::OutOfRangeError(QStringLiteral("no plane %1; planes count from 0 and there are %2")
                                            .arg(z)
                                            .arg(component.GetPlaneCount())));
    }
    return *plane;
}

QRect regionOf(const I_PlaneBase& plane, const QRect& wanted)
{
    const QRect whole(0, 0, static_cast<int>(plane.GetWidth()), static_cast<int>(plane.GetHeight()));
    if (!wanted.isEmpty() && !whole.contains(wanted)) {
        RTE::raise(RTE::OutOfRangeError(
            QStringLiteral("the region exceeds the plane of %1x%2 pixels; choose a smaller --region")
                .arg(whole.width())
                .arg(whole.height())));
    }
    return wanted.isEmpty() ? whole : wanted;
}

} // namespace Qf
