// SPDX-License-Identifier: Apache-2.0
#include "Tests/Support/Frames.h"

#include "Tests/Support/Files.h"

#include "Core/Buffer/ElementTypes.h"
#include "Core/Buffer/FrameBuilder.h"
#include "Core/Buffer/I_FrameVector.h"

#include <bit>
#include <cstring>

namespace TestSupport
{

namespace
{

using BufferApi::AttributeMap;
using BufferApi::I_AttributeBase;
using BufferApi::I_Component;
using BufferApi::I_Frame;
using BufferApi::I_PlaneBase;

/// What differs, from the outside to the inside; empty while nothing does.
using Difference = std::string;

template <typename Value>
Difference compare(const std::string& what, const Value& a, const Value& b)
{
    if (a == b) {
        return {};
    }
    return what + ": " + testing::PrintToString(a) + " != " + testing::PrintToString(b);
}

Difference compareText(const std::string& what, const QString& a, const QString& b)
{
    return a == b ? Difference() : what + ": \"" + a.toStdString() + "\" != \"" + b.toStdString() + '"';
}

Difference within(const std::string& where, const Difference& difference)
{
    return difference.empty() ? difference : where + ", " + difference;
}

/// The first of several comparisons that finds something; the later ones are not made.
template <typename... Comparisons>
Difference firstOf(const Comparisons&... comparisons)
{
    Difference difference;
    static_cast<void>((... || !(difference = comparisons()).empty()));
    return difference;
}

Difference compareScales(const std::string& what, const Zt::LinearScale& a, const Zt::LinearScale& b)
{
    const auto bits = [](double value) { return std::bit_cast<std::uint64_t>(value); };
    if (bits(a.getFactor()) != bits(b.getFactor()) || bits(a.getOffset()) != bits(b.getOffset())) {
        return what + ": factor or offset: " + testing::PrintToString(a.getFactor()) + ", " +
               testing::PrintToString(a.getOffset()) + " != " + testing::PrintToString(b.getFactor()) + ", " +
               testing::PrintToString(b.getOffset());
    }
    return firstOf(
        [&] { return compareText(what + ": unit", a.getUnit(), b.getUnit()); },
        [&] { return compareText(what + ": description", a.getDescription(), b.getDescription()); });
}

Difference comparePixels(const I_PlaneBase& a, const I_PlaneBase& b)
{
    return BufferApi::visitElement(a.GetDataType(), [&](auto tag) -> Difference {
        using T = typename decltype(tag)::type;
        const auto* left = static_cast<const T*>(a.GetData());
        const auto* right = static_cast<const T*>(b.GetData());
        if (!left || !right) {
            return compare("has data", left != nullptr, right != nullptr);
        }
        const std::size_t count = std::size_t{a.GetWidth()} * a.GetHeight();
        for (std::size_t i = 0; i < count; ++i) {
            if (std::memcmp(left + i, right + i, sizeof(T)) != 0) {
                return "pixel (" + std::to_string(i % a.GetWidth()) + ", " +
                       std::to_string(i / a.GetWidth()) + "): " + testing::PrintToString(left[i]) +
                       " != " + testing::PrintToString(right[i]);
            }
        }
        return {};
    });
}

Difference comparePlanes(const I_PlaneBase* a, const I_PlaneBase* b)
{
    if (!a || !b) {
        return compare("exists", a != nullptr, b != nullptr);
    }
    return firstOf([&] { return compare<int>("type", a->GetDataType(), b->GetDataType()); },
                   [&] { return compare("width", a->GetWidth(), b->GetWidth()); },
                   [&] { return compare("height", a->GetHeight(), b->GetHeight()); },
                   [&] { return comparePixels(*a, *b); });
}

Difference compareComponents(const I_Component& a, const I_Component& b)
{
    Difference difference = firstOf([&] { return compare<int>("type", a.GetDataType(), b.GetDataType()); },
                                    [&] { return compare("own scale", a.HasOwnScale(), b.HasOwnScale()); },
                                    [&] { return compareScales("scale", a.GetScale(), b.GetScale()); },
                                    [&] { return compare("planes", a.GetPlaneCount(), b.GetPlaneCount()); });
    for (unsigned int z = 0; difference.empty() && z < a.GetPlaneCount(); ++z) {
        difference = within("plane " + std::to_string(z), comparePlanes(a.GetPlane(z), b.GetPlane(z)));
    }
    return difference;
}

Difference compareAttributes(const I_AttributeBase& a, const I_AttributeBase& b)
{
    if (a.GetKind() != b.GetKind()) {
        return compare("kind", a.GetKind(), b.GetKind());
    }
    if (const auto* text = dynamic_cast<const BufferApi::I_Attribute<QString>*>(&a)) {
        const auto& other = dynamic_cast<const BufferApi::I_Attribute<QString>&>(b);
        return compareText("text", text->GetValue(), other.GetValue());
    }
    const auto& plane = dynamic_cast<const BufferApi::I_AttributePlane&>(a);
    const auto& other = dynamic_cast<const BufferApi::I_AttributePlane&>(b);
    return comparePlanes(plane.GetPlane(), other.GetPlane());
}

Difference compareMaps(const AttributeMap& a, const AttributeMap& b)
{
    const auto names = [](const AttributeMap& map) {
        std::vector<std::string> result;
        for (const auto& [name, attribute] : map) {
            result.push_back(name);
        }
        return result;
    };
    Difference difference = compare("attributes", names(a), names(b));
    for (auto left = a.begin(), right = b.begin(); difference.empty() && left != a.end(); ++left, ++right) {
        difference =
            within("attribute '" + left->first + "'", compareAttributes(*left->second, *right->second));
    }
    return difference;
}

std::map<std::string, const I_Component*> componentsOf(const I_Frame& frame)
{
    std::map<std::string, const I_Component*> components;
    for (unsigned int i = 0; i < frame.GetComponentCount(); ++i) {
        components[frame.GetComponent(i)->GetName()] = frame.GetComponent(i);
    }
    return components;
}

Difference compareAllComponents(const I_Frame& a, const I_Frame& b)
{
    const auto left = componentsOf(a);
    const auto right = componentsOf(b);
    for (const auto& [name, component] : left) {
        const auto other = right.find(name);
        const Difference difference =
            other == right.end() ? "only in the first" : compareComponents(*component, *other->second);
        if (!difference.empty()) {
            return "component '" + name + "', " + difference;
        }
    }
    for (const auto& [name, component] : right) {
        if (!left.contains(name)) {
            return "component '" + name + "', only in the second";
        }
    }
    return {};
}

Difference compareGrids(const I_Frame& a, const I_Frame& b)
{
    const auto* left = dynamic_cast<const BufferApi::I_FrameVector*>(&a);
    const auto* right = dynamic_cast<const BufferApi::I_FrameVector*>(&b);
    if (!left || !right) {
        return {};
    }
    return firstOf([&] { return compare("grid x", left->GetGridX(), right->GetGridX()); },
                   [&] { return compare("grid y", left->GetGridY(), right->GetGridY()); },
                   [&] { return compare("grid z", left->GetGridZ(), right->GetGridZ()); });
}

Difference compareFrames(const I_Frame& a, const I_Frame& b)
{
    const BufferApi::FrameShape left = BufferApi::frameShape(a);
    const BufferApi::FrameShape right = BufferApi::frameShape(b);
    return firstOf([&] { return compare("kind", static_cast<int>(left.kind), static_cast<int>(right.kind)); },
                   [&] { return compare("width", left.width, right.width); },
                   [&] { return compare("height", left.height, right.height); },
                   [&] { return compare("depth", left.depth, right.depth); },
                   [&] { return compare("choices", left.choices, right.choices); },
                   [&] { return compareGrids(a, b); },
                   [&] { return compareScales("scale X", a.GetScaleX(), b.GetScaleX()); },
                   [&] { return compareScales("scale Y", a.GetScaleY(), b.GetScaleY()); },
                   [&] { return compareScales("scale Z", a.GetScaleZ(), b.GetScaleZ()); },
                   [&] { return compareScales("scale I", a.GetScaleI(), b.GetScaleI()); },
                   [&] { return compareMaps(a.GetAttributeList(), b.GetAttributeList()); },
                   [&] { return compareAllComponents(a, b); });
}

testing::AssertionResult result(const Difference& difference)
{
    return difference.empty() ? testing::AssertionSuccess() : testing::AssertionFailure() << difference;
}

} // namespace

testing::AssertionResult framesEqual(const I_Frame& a, const I_Frame& b)
{
    return result(compareFrames(a, b));
}

testing::AssertionResult buffersEqual(const BufferApi::I_Buffer& a, const BufferApi::I_Buffer& b)
{
    Difference difference = firstOf([&] { return compareText("name", a.GetName(), b.GetName()); },
                                    [&] { return compareMaps(a.GetAttributeList(), b.GetAttributeList()); },
                                    [&] { return compare("frames", a.GetFrameCount(), b.GetFrameCount()); });
    for (unsigned int i = 0; difference.empty() && i < a.GetFrameCount(); ++i) {
        difference = within("frame " + std::to_string(i), compareFrames(*a.GetFrame(i), *b.GetFrame(i)));
    }
    return result(difference);
}

testing::AssertionResult planesEqual(const I_PlaneBase* a, const I_PlaneBase* b)
{
    return result(comparePlanes(a, b));
}

void flipBitOf(const I_PlaneBase& plane, const QString& path)
{
    // Planes may be split into chunks; a row is in one.
    const auto bytes = static_cast<qsizetype>(GetDataTypeSize(plane.GetDataType()) * plane.GetWidth());
    const QByteArray row(static_cast<const char*>(plane.GetData()), bytes);
    QByteArray content = contentOf(path);
    const qsizetype at = content.indexOf(row);
    ASSERT_GE(at, 0);
    content[at] = static_cast<char>(content[at] ^ 1);
    writeContent(path, content);
}

} // namespace TestSupport
