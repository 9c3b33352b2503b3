// SPDX-License-Identifier: Apache-2.0
#include "Tools/qf/AttributeTexts.h"

#include "Tools/qf/BufferSummary.h"
#include "Tools/qf/NumberText.h"
#include "Tools/qf/PlaneValues.h"

namespace Qf
{

namespace
{

QString textOf(const BufferApi::I_PlaneBase& plane)
{
    QString text = QStringLiteral("%1 %2x%3:")
                       .arg(typeName(plane.GetDataType()))
                       .arg(plane.GetWidth())
                       .arg(plane.GetHeight());
    visitPlane(plane, [&](auto tag) {
        using T = typename decltype(tag)::type;
        const T* elements = static_cast<const T*>(plane.GetData());
        for (std::size_t i = 0; i < pixelCount(plane); ++i) {
            text += QLatin1Char(' ') + QString::fromLatin1(exactText(elements[i]).c_str());
        }
    });
    return text;
}

QString textOf(const BufferApi::I_AttributeBase& attribute)
{
    if (const auto* text = dynamic_cast<const BufferApi::I_Attribute<QString>*>(&attribute)) {
        return QLatin1Char('\'') + text->GetValue() + QLatin1Char('\'');
    }
    const auto* list = dynamic_cast<const BufferApi::I_AttributePlane*>(&attribute);
    const BufferApi::I_PlaneBase* plane = list != nullptr ? list->GetPlane() : nullptr;
    return plane != nullptr ? textOf(*plane) : QStringLiteral("empty");
}

} // namespace

AttributeTexts attributeTexts(const BufferApi::AttributeMap& attributes)
{
    AttributeTexts texts;
    for (const auto& [name, attribute] : attributes) {
        texts.emplace(name, textOf(*attribute));
    }
    return texts;
}

} // namespace Qf
