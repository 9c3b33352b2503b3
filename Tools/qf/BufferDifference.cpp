// SPDX-License-Identifier: Apache-2.0
#include "Tools/qf/BufferDifference.h"

#include "Tools/qf/AttributeTexts.h"
#include "Tools/qf/BufferSummary.h"
#include "Tools/qf/NumberText.h"
#include "Tools/qf/PixelComparison.h"

#include "Core/Buffer/I_FrameVector.h"
#include "Core/Buffer/NameText.h"

namespace Qf
{

namespace
{

using BufferApi::I_Component;
using BufferApi::I_Frame;
using BufferApi::I_FrameVector;
using BufferApi::I_PlaneBase;

/// Where a comparison is, and who hears what differs there.
struct Place
{
    const DiffRules& rules;
    const DifferenceSink& sink;
    std::optional<unsigned int> frame;
    QString component;
    std::optional<unsigned int> z;

    void tell(const QString& what, const QString& a, const QString& b) const
    {
        sink({frame, component, z, what, a, b, {}});
    }
    void compare(const QString& what, const QString& a, const QString& b) const
    {
        if (a != b) {
            tell(what, a, b);
        }
    }
    void compare(const QString& what, unsigned int a, unsigned int b) const
    {
        compare(what, QString::number(a), QString::number(b));
    }
};

QString kindText(const I_Frame& frame)
{
    if (dynamic_cast<const BufferApi::I_FrameVector3C*>(&frame) != nullptr) {
        return QStringLiteral("vectors of 3 components");
    }
    return dynamic_cast<const I_FrameVector*>(&frame) != nullptr ? QStringLiteral("vectors of 2 components")
                                                                 : QStringLiteral("image");
}

QString quoted(const QString& text)
{
    return QLatin1Char('\'') + text + QLatin1Char('\'');
}

/// A list may be as long as a recording.
QString shortened(const QString& text)
{
    const qsizetype limit = 60;
    if (text.isNull()) {
        return QStringLiteral("none");
    }
    return text.size() > limit ? text.left(limit) + QStringLiteral("...") : text;
}

void compareAttributes(const Place& place, const BufferApi::AttributeMap& a, const BufferApi::AttributeMap& b)
{
    if (place.rules.compares("attributes")) {
        forEachDifference(attributeTexts(a), attributeTexts(b),
                          [&](const QString& name, const QString& left, const QString& right) {
                              place.tell(QStringLiteral("attribute ") + name, shortened(left),
                                         shortened(right));
                          });
    }
}

/// Each field bit for bit, so that not even what is no number passes as another. \returns true when they
/// agree
bool compareScales(const Place& place, const QString& what, const Zt::LinearScale& a,
                   const Zt::LinearScale& b)
{
    const bool isSame = exactText(a.getFactor()) == exactText(b.getFactor()) &&
                        exactText(a.getOffset()) == exactText(b.getOffset()) && a.getUnit() == b.getUnit() &&
                        a.getDescription() == b.getDescription();
    if (place.rules.compares("scales") && !isSame) {
        place.tell(what, quoted(scaleText(a)), quoted(scaleText(b)));
    }
    return isSame;
}

void compareStructure(const Place& place, const I_Frame& a, const I_Frame& b)
{
    place.compare(QStringLiteral("kind"), kindText(a), kindText(b));
    place.compare(QStringLiteral("width"), a.GetWidth(), b.GetWidth());
    place.compare(QStringLiteral("height"), a.GetHeight(), b.GetHeight());
    place.compare(QStringLiteral("depth"), a.GetDepth(), b.GetDepth());
    const auto* vectorsA = dynamic_cast<const I_FrameVector*>(&a);
    const auto* vectorsB = dynamic_cast<const I_FrameVector*>(&b);
    if (vectorsA != nullptr && vectorsB != nullptr) {
        place.compare(QStringLiteral("choices"), vectorsA->GetChoiceCount(), vectorsB->GetChoiceCount());
        place.compare(QStringLiteral("grid x"), vectorsA->GetGridX(), vectorsB->GetGridX());
        place.compare(QStringLiteral("grid y"), vectorsA->GetGridY(), vectorsB->GetGridY());
        place.compare(QStringLiteral("grid z"), vectorsA->GetGridZ(), vectorsB->GetGridZ());
    }
    compareScales(place, QStringLiteral("scale x"), a.GetScaleX(), b.GetScaleX());
    compareScales(place, QStringLiteral("scale y"), a.GetScaleY(), b.GetScaleY());
    compareScales(place, QStringLiteral("scale z"), a.GetScaleZ(), b.GetScaleZ());
    compareScales(place, QStringLiteral("scale I"), a.GetScaleI(), b.GetScaleI());
}

bool isFlags(const std::string& component)
{
    return component == I_Frame::COMPONENT_MASK || component == I_FrameVector::COMPONENT_ENABLED ||
           component == I_FrameVector::COMPONENT_ACTIVE_CHOICE;
}

void comparePlanes(const Place& place, const DiffRules& rules, const I_PlaneBase& a, const I_PlaneBase& b)
{
    if (a.GetWidth() != b.GetWidth() || a.GetHeight() != b.GetHeight()) {
        const auto size = [](const I_PlaneBase& plane) {
            return QStringLiteral("%1x%2").arg(plane.GetWidth()).arg(plane.GetHeight());
        };
        place.tell(QStringLiteral("size"), size(a), size(b));
    } else if (const auto pixels = comparePixels(a, b, rules)) {
        place.sink({place.frame, place.component, place.z, QStringLiteral("pixels"),
                    pixelText(a, pixels->x, pixels->y), pixelText(b, pixels->x, pixels->y), pixels});
    }
}

void compareComponents(Place place, const I_Component& a, const I_Component& b)
{
    place.component = BufferApi::nameToText(a.GetName());
    const bool isColorA = a.GetDataType() == BufferApi::DT_RGB;
    const bool isColorB = b.GetDataType() == BufferApi::DT_RGB;
    if (isColorA != isColorB || place.rules.compares("type")) {
        place.compare(QStringLiteral("type"), typeName(a.GetDataType()), typeName(b.GetDataType()));
    }
    const bool isSameScale = compareScales(place, QStringLiteral("scale"), a.GetScale(), b.GetScale());
    if (place.rules.compares("scales") && isSameScale) {
        place.compare(QStringLiteral("own scale"), a.HasOwnScale(), b.HasOwnScale());
    }
    place.compare(QStringLiteral("planes"), a.GetPlaneCount(), b.GetPlaneCount());
    const DiffRules rules = isFlags(a.GetName()) ? DiffRules{{}, {}, place.rules.ignored} : place.rules;
    const bool isComparable =
        isColorA == isColorB && (a.GetDataType() == b.GetDataType() || !rules.compares("type"));
    const unsigned int planes = isComparable ? std::min(a.GetPlaneCount(), b.GetPlaneCount()) : 0;
    for (unsigned int z = 0; z < planes; ++z) {
        place.z = a.GetPlaneCount() > 1 ? std::optional(z) : std::nullopt;
        comparePlanes(place, rules, *a.GetPlane(z), *b.GetPlane(z));
    }
}

std::set<std::string> componentNames(const I_Frame& a, const I_Frame& b)
{
    std::set<std::string> names;
    for (const I_Frame* frame : {&a, &b}) {
        for (unsigned int i = 0; i < frame->GetComponentCount(); ++i) {
            names.insert(frame->GetComponent(i)->GetName());
        }
    }
    return names;
}

} // namespace

const std::vector<std::string>& ignorableAspects()
{
    static const std::vector<std::string> aspects{"name", "attributes", "scales", "masks", "type"};
    return aspects;
}

void compareBuffers(const BufferApi::I_Buffer& a, const BufferApi::I_Buffer& b, const DiffRules& rules,
                    const DifferenceSink& sink)
{
    const Place place{rules, sink, {}, {}, {}};
    if (rules.compares("name")) {
        place.compare(QStringLiteral("name"), quoted(a.GetName()), quoted(b.GetName()));
    }
    compareAttributes(place, a.GetAttributeList(), b.GetAttributeList());
}

void compareFrames(unsigned int number, const I_Frame& a, const I_Frame& b, const DiffRules& rules,
                   const DifferenceSink& sink)
{
    const Place place{rules, sink, number, {}, {}};
    compareStructure(place, a, b);
    compareAttributes(place, a.GetAttributeList(), b.GetAttributeList());
    for (const std::string& name : componentNames(a, b)) {
        const I_Component* left = a.GetComponent(name);
        const I_Component* right = b.GetComponent(name);
        if (name == I_Frame::COMPONENT_MASK && !rules.compares("masks")) {
            continue;
        }
        if (left != nullptr && right != nullptr) {
            compareComponents(place, *left, *right);
        } else {
            const auto presence = [](const I_Component* component) {
                return component != nullptr ? QStringLiteral("present") : QStringLiteral("none");
            };
            place.tell(QStringLiteral("component ") + BufferApi::nameToText(name), presence(left),
                       presence(right));
        }
    }
}

QString lineOf(const Difference& difference)
{
    QStringList where;
    if (difference.frame) {
        where << QStringLiteral("frame %1").arg(*difference.frame);
    }
    if (!difference.component.isEmpty()) {
        where << difference.component;
    }
    if (difference.z) {
        where << QStringLiteral("z %1").arg(*difference.z);
    }
    QString what = difference.what;
    if (difference.pixels) {
        const PixelDifference& pixels = *difference.pixels;
        what = QStringLiteral("%1 of %2 pixels, most by %3 at (%4, %5)")
                   .arg(pixels.count)
                   .arg(pixels.total)
                   .arg(QString::fromStdString(exactText(pixels.largest)))
                   .arg(pixels.x)
                   .arg(pixels.y);
    }
    where << what;
    return QStringLiteral("%1: %2 != %3").arg(where.join(QStringLiteral(", ")), difference.a, difference.b);
}

} // namespace Qf
