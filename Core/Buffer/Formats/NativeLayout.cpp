// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/NativeLayout.h"

#include "Core/Buffer/Formats/AttributeJson.h"
#include "Core/Buffer/I_FrameImage.h"
#include "Core/Buffer/I_FrameVector.h"
#include "Core/Buffer/LazyPlane.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <memory>
#include <utility>

namespace BufferApi::Formats::Native
{

namespace
{

constexpr std::size_t longestName = 200;
constexpr std::string_view userPrefix = "qf_user_";

constexpr std::array<std::pair<FrameKind, const char*>, 4> kinds{{{FrameKind::Image, "image"},
                                                                  {FrameKind::Rgb, "rgb"},
                                                                  {FrameKind::Vector2C, "vector2c"},
                                                                  {FrameKind::Vector3C, "vector3c"}}};

// What HDF5's dimension scales and netCDF keep for themselves.
constexpr std::array<std::string_view, 9> reservedAttributes{
    "CLASS",          "Conventions", "DIMENSION_LABELS", "DIMENSION_LIST", "NAME",
    "REFERENCE_LIST", "add_offset",  "scale_factor",     "units"};

constexpr std::array<std::string_view, 13> reservedDatasets{
    Name::frame,         Name::frameAttributes,  Name::frameAttributesEnd,
    Name::attributeByte, Name::frameScales,      Name::frameScalesEnd,
    Name::scaleByte,     Name::bufferAttributes, Name::bufferAttributeByte,
    Name::choice,        Name::axes[0],          Name::axes[1],
    Name::axes[2]};

template <typename List>
bool contains(const List& list, std::string_view name)
{
    return std::find(list.begin(), list.end(), name) != list.end();
}

bool isSetName(std::string_view name)
{
    return name.starts_with("set") &&
           std::all_of(name.begin() + 3, name.end(), [](char c) { return c >= '0' && c <= '9'; });
}

bool needsEncoding(const QByteArray& utf8, qsizetype i)
{
    const auto byte = static_cast<unsigned char>(utf8[i]);
    const bool isAtEnd = i == 0 || i + 1 == utf8.size();
    return byte < 0x20 || byte == 0x7F || byte == '%' || byte == '/' ||
           (isAtEnd && (byte == ' ' || byte == '.'));
}

std::string percentEncoded(const std::string& name)
{
    static constexpr char digits[] = "0123456789ABCDEF";
    const QByteArray utf8 = nameToText(name).toUtf8();
    std::string result;
    for (qsizetype i = 0; i < utf8.size(); ++i) {
        const auto byte = static_cast<unsigned char>(utf8[i]);
        if (needsEncoding(utf8, i)) {
            result += {'%', digits[byte >> 4U], digits[byte & 15U]};
        } else {
            result += utf8[i];
        }
    }
    return result;
}

std::string withPrefix(const std::string& name, bool isReserved)
{
    const bool isOurs = name.starts_with("qf_") || name.starts_with('_');
    return isOurs || isReserved ? std::string(userPrefix) + name : name;
}

bool carriesReserved(const I_PlaneBase& plane)
{
    const std::size_t count = std::size_t{plane.GetWidth()} * plane.GetHeight();
    std::unique_ptr<RgbQuad[]> copy;
    const RgbQuad* pixels = nullptr;
    if (isUnread(plane)) {
        copy = std::make_unique_for_overwrite<RgbQuad[]>(count);
        readPlane(plane, copy.get());
        pixels = copy.get();
    } else {
        pixels = static_cast<const RgbQuad*>(plane.GetData());
    }
    return pixels != nullptr &&
           std::any_of(pixels, pixels + count, [](const RgbQuad& pixel) { return pixel.reserved != 0; });
}

ComponentStructure structureOf(const I_Component& component, const FrameShape& shape)
{
    ComponentStructure structure{component.GetName(), component.GetDataType(), shape.width, shape.height, 1};
    if (const I_PlaneBase* plane = component.GetPlane(0)) {
        structure.width = plane->GetWidth();
        structure.height = plane->GetHeight();
    }
    if (structure.type == DT_RGB) {
        structure.channels = 3;
        for (unsigned int z = 0; z < component.GetPlaneCount() && structure.channels == 3; ++z) {
            structure.channels = carriesReserved(*component.GetPlane(z)) ? 4 : 3;
        }
    }
    return structure;
}

/// All choices of U, V or W when they can be stacked, else the one component.
std::vector<unsigned int> stackOf(const FrameStructure& structure, unsigned int first)
{
    const ComponentStructure& base = structure.components[first];
    std::vector<unsigned int> stack;
    for (unsigned int choice = 0; choice < structure.shape.choices; ++choice) {
        ComponentStructure wanted = base;
        wanted.name = choiceComponentName(base.name, choice);
        // The choices follow each other, so that the next one is found at once.
        const auto begin = structure.components.begin();
        const auto near = begin + (stack.empty() ? 0 : stack.back());
        auto found = std::find(near, structure.components.end(), wanted);
        found = found == structure.components.end() ? std::find(begin, near, wanted) : found;
        if (*found != wanted || !isVectorComponent(structure.shape, wanted.name)) {
            return {first};
        }
        stack.push_back(static_cast<unsigned int>(found - begin));
    }
    return stack;
}

bool isMain(const FrameShape& shape, const std::string& name)
{
    return isVectorKind(shape.kind) ? isVectorComponent(shape, name) : name == I_FrameImage::COMPONENT_PIXEL;
}

std::string roleOf(const FrameStructure& structure, const std::string& name)
{
    if (name == I_Frame::COMPONENT_MASK) {
        return "mask";
    }
    if (isVectorKind(structure.shape.kind) && name == I_FrameVector::COMPONENT_ENABLED) {
        return "enabled";
    }
    if (isVectorKind(structure.shape.kind) && name == I_FrameVector::COMPONENT_ACTIVE_CHOICE) {
        return "active";
    }
    return isMain(structure.shape, name) ? "data" : "scalar";
}

/// The dataset of a component before anything else has its name: lower case for the known vector parts.
std::string plainName(const std::string& role, const FrameShape& shape, const std::string& component)
{
    static constexpr std::string_view typedScalar = "TS:";
    if (component.starts_with(typedScalar) && component.size() > typedScalar.size()) {
        return component.substr(typedScalar.size());
    }
    if (role == "scalar" || (role == "data" && !isVectorKind(shape.kind))) {
        return component;
    }
    return QString::fromStdString(component).toLower().toStdString();
}

void writeScale(JsonWriter& json, const ScaleValue& scale)
{
    json.beginArray();
    json.number(scale.factor);
    json.number(scale.offset);
    json.text(scale.unit);
    json.text(scale.description);
    json.endArray();
}

ScaleValue readScale(JsonReader& json)
{
    ScaleValue scale;
    json.beginArray();
    json.next();
    scale.factor = json.number<double>();
    json.next();
    scale.offset = json.number<double>();
    json.next();
    scale.unit = json.text();
    json.next();
    scale.description = json.text();
    json.endArray();
    return scale;
}

void writeComponentScales(JsonWriter& json, const FrameScales& scales, const FrameScales& usual,
                          const FrameStructure& structure)
{
    json.key(QStringLiteral("components"));
    json.beginObject();
    for (std::size_t i = 0; i < scales.components.size(); ++i) {
        if (scales.components[i] == usual.components[i]) {
            continue;
        }
        json.key(nameToText(structure.components[i].name));
        if (scales.components[i]) {
            writeScale(json, *scales.components[i]);
        } else {
            json.null();
        }
    }
    json.endObject();
}

void readComponentScales(JsonReader& json, const FrameStructure& structure, FrameScales& scales)
{
    json.beginObject();
    while (json.hasNext('}')) {
        const std::string name = nameFromText(json.key());
        const auto found = std::find_if(structure.components.begin(), structure.components.end(),
                                        [&](const auto& component) { return component.name == name; });
        json.verify(found != structure.components.end(), "a scale of a component that is not there");
        auto& scale = scales.components[static_cast<std::size_t>(found - structure.components.begin())];
        scale = json.takeNull() ? std::nullopt : std::optional(readScale(json));
    }
}

} // namespace

ScaleValue::ScaleValue(const Zt::LinearScale& scale)
    : factor(scale.getFactor()), offset(scale.getOffset()), unit(scale.getUnit()),
      description(scale.getDescription())
{
}

bool operator==(const ScaleValue& a, const ScaleValue& b)
{
    const auto bits = [](double value) { return std::bit_cast<std::uint64_t>(value); };
    return bits(a.factor) == bits(b.factor) && bits(a.offset) == bits(b.offset) && a.unit == b.unit &&
           a.description == b.description;
}

FrameStructure structureOf(const I_Frame& frame)
{
    FrameStructure structure{frameShape(frame), {1, 1, 1}, {}};
    if (const auto* vectors = dynamic_cast<const I_FrameVector*>(&frame)) {
        structure.grid = {vectors->GetGridX(), vectors->GetGridY(), vectors->GetGridZ()};
    }
    for (unsigned int i = 0; i < frame.GetComponentCount(); ++i) {
        structure.components.push_back(structureOf(*frame.GetComponent(i), structure.shape));
    }
    return structure;
}

FrameScales scalesOf(const I_Frame& frame)
{
    FrameScales scales{
        {ScaleValue(frame.GetScaleX()), ScaleValue(frame.GetScaleY()), ScaleValue(frame.GetScaleZ())},
        ScaleValue(frame.GetScaleI()),
        {}};
    for (unsigned int i = 0; i < frame.GetComponentCount(); ++i) {
        const I_Component& component = *frame.GetComponent(i);
        scales.components.push_back(component.HasOwnScale() ? std::optional(ScaleValue(component.GetScale()))
                                                            : std::nullopt);
    }
    return scales;
}

std::vector<DatasetPlan> planDatasets(const FrameStructure& structure)
{
    std::vector<DatasetPlan> plans;
    std::set<std::string> taken;
    std::vector<bool> isPlanned(structure.components.size());
    for (unsigned int i = 0; i < structure.components.size(); ++i) {
        if (isPlanned[i]) {
            continue;
        }
        const std::string& name = structure.components[i].name;
        DatasetPlan plan{{}, roleOf(structure, name), stackOf(structure, i)};
        plan.name = datasetName(plainName(plan.role, structure.shape, name), taken);
        for (const unsigned int component : plan.components) {
            isPlanned[component] = true;
        }
        plans.push_back(std::move(plan));
    }
    return plans;
}

bool followsIntensity(const FrameShape& shape, const std::string& component)
{
    return isMain(shape, component);
}

QByteArray kindText(FrameKind kind)
{
    for (const auto& [known, text] : kinds) {
        if (known == kind) {
            return text;
        }
    }
    return {};
}

std::optional<FrameKind> kindFromText(const QByteArray& text)
{
    for (const auto& [kind, known] : kinds) {
        if (text == known) {
            return kind;
        }
    }
    return {};
}

std::string datasetName(const std::string& name, std::set<std::string>& taken)
{
    const bool isReserved = contains(reservedDatasets, name) || name == Name::channel || isSetName(name);
    std::string base = withPrefix(percentEncoded(name), isReserved);
    if (base.size() > longestName) {
        base = QString::fromStdString(base).left(longestName / 4).toStdString();
    }
    std::string unique = base;
    for (unsigned int number = 2; !taken.insert(unique).second; ++number) {
        unique = base + '_' + std::to_string(number);
    }
    return unique;
}

std::optional<std::string> attributeName(const std::string& name)
{
    std::string result = withPrefix(percentEncoded(name), contains(reservedAttributes, name));
    return result.size() > longestName ? std::nullopt : std::optional(std::move(result));
}

std::optional<std::string> attributeNameFromFile(const std::string& name)
{
    std::string_view rest = name;
    if (rest.starts_with(userPrefix)) {
        rest.remove_prefix(userPrefix.size());
    } else if (rest.starts_with("qf_") || rest.starts_with('_') || contains(reservedAttributes, rest)) {
        return {};
    }
    const QByteArray utf8(rest.data(), static_cast<qsizetype>(rest.size()));
    std::string result = nameFromText(QString::fromUtf8(QByteArray::fromPercentEncoding(utf8)));
    return result.empty() ? std::nullopt : std::optional(std::move(result));
}

QByteArray scaleToJson(const ScaleValue& scale)
{
    JsonWriter json;
    writeScale(json, scale);
    return json.result();
}

ScaleValue scaleFromJson(const QByteArray& text, const QString& source)
{
    JsonReader json({text.constData(), static_cast<std::size_t>(text.size())}, source);
    const ScaleValue scale = readScale(json);
    json.end();
    return scale;
}

QByteArray scalesToJson(const FrameScales& scales, const FrameScales& usual, const FrameStructure& structure)
{
    if (scales == usual) {
        return {};
    }
    JsonWriter json;
    const auto writeChanged = [&](const char* key, const ScaleValue& scale, const ScaleValue& other) {
        if (!(scale == other)) {
            json.key(QLatin1String(key));
            writeScale(json, scale);
        }
    };
    json.beginObject();
    for (std::size_t axis = 0; axis < scales.axes.size(); ++axis) {
        writeChanged(Name::axes[axis], scales.axes[axis], usual.axes[axis]);
    }
    writeChanged("i", scales.intensity, usual.intensity);
    if (scales.components != usual.components) {
        writeComponentScales(json, scales, usual, structure);
    }
    json.endObject();
    return json.result();
}

void scalesFromJson(std::string_view text, const QString& source, const FrameStructure& structure,
                    FrameScales& scales)
{
    if (text.empty()) {
        return;
    }
    JsonReader json(text, source);
    json.beginObject();
    while (json.hasNext('}')) {
        const QString key = json.key();
        const auto axis = std::find_if(std::begin(Name::axes), std::end(Name::axes),
                                       [&](const char* name) { return key == QLatin1String(name); });
        if (axis != std::end(Name::axes)) {
            scales.axes[static_cast<std::size_t>(axis - std::begin(Name::axes))] = readScale(json);
        } else if (key == QLatin1String("i")) {
            scales.intensity = readScale(json);
        } else {
            json.verify(key == QLatin1String("components"), "unknown scale");
            readComponentScales(json, structure, scales);
        }
    }
    json.end();
}

} // namespace BufferApi::Formats::Native
