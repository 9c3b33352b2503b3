// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/AttributeJson.h"

#include "Core/Buffer/BufferApi.h"
#include "Core/Buffer/ElementTypes.h"

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

namespace BufferApi::Formats
{

namespace
{

constexpr std::array<std::pair<E_DataType, std::string_view>, 7> typeNames{{{DT_BYTE, "u8"},
                                                                            {DT_WORD, "u16"},
                                                                            {DT_INT32, "i32"},
                                                                            {DT_UINT32, "u32"},
                                                                            {DT_FLOAT, "f32"},
                                                                            {DT_DOUBLE, "f64"},
                                                                            {DT_RGB, "rgb"}}};

/// Packed colour is written as one number: blue + 256 green + 65536 red + 2^24 reserved.
template <typename T>
using NumberOf = std::conditional_t<std::is_same_v<T, RgbQuad>, std::uint32_t, T>;

QString typeText(const I_PlaneBase& plane)
{
    QString text;
    for (const auto& [type, name] : typeNames) {
        if (type == plane.GetDataType()) {
            text = QLatin1String(name.data(), static_cast<qsizetype>(name.size()));
        }
    }
    if (plane.GetHeight() != 1) {
        return text + QStringLiteral("[%1,%2]").arg(plane.GetHeight()).arg(plane.GetWidth());
    }
    return plane.GetWidth() == 1 ? text : text + QStringLiteral("[]");
}

void writeValues(JsonWriter& json, const I_PlaneBase& plane)
{
    const void* data = plane.GetData();
    RTE::verify(data != nullptr, "Attribute plane has no data");
    visitElement(plane.GetDataType(), [&](auto tag) {
        using T = typename decltype(tag)::type;
        const auto* values = static_cast<const T*>(data);
        for (unsigned long long i = 0; i < 1ULL * plane.GetWidth() * plane.GetHeight(); ++i) {
            json.number(std::bit_cast<NumberOf<T>>(values[i]));
        }
    });
}

void writePlane(JsonWriter& json, const I_PlaneBase& plane)
{
    const bool isScalar = plane.GetWidth() == 1 && plane.GetHeight() == 1;
    json.text(typeText(plane));
    if (isScalar) {
        return writeValues(json, plane);
    }
    json.beginArray();
    writeValues(json, plane);
    json.endArray();
}

/// Element type and form of a plane as its type text tells.
struct PlaneForm
{
    E_DataType type = DT_UNKNOWN;
    bool isScalar = false;
    bool isList = false;
    unsigned int width = 1;
    unsigned int height = 1;
};

PlaneForm parseForm(const JsonReader& json, std::string_view text)
{
    PlaneForm form;
    const std::string_view name = text.substr(0, text.find('['));
    for (const auto& [type, known] : typeNames) {
        form.type = known == name ? type : form.type;
    }
    json.verify(form.type != DT_UNKNOWN, "unknown type of an attribute");
    const std::string_view sizes = text.substr(name.size());
    form.isScalar = sizes.empty();
    form.isList = sizes == "[]";
    if (!form.isScalar && !form.isList) {
        const char* last = sizes.data() + sizes.size();
        const auto height = std::from_chars(sizes.data() + 1, last, form.height);
        json.verify(height.ptr != last && *height.ptr == ',', "unknown form of an attribute");
        const auto width = std::from_chars(height.ptr + 1, last, form.width);
        json.verify(std::string_view(width.ptr, last) == "]", "unknown form of an attribute");
    }
    return form;
}

template <typename T>
std::vector<T> readValues(JsonReader& json, bool isScalar)
{
    std::vector<T> values;
    if (isScalar) {
        values.push_back(std::bit_cast<T>(json.number<NumberOf<T>>()));
        return values;
    }
    json.beginArray();
    while (json.hasNext(']')) {
        values.push_back(std::bit_cast<T>(json.number<NumberOf<T>>()));
    }
    return values;
}

std::unique_ptr<I_PlaneBase> readPlane(JsonReader& json, std::string_view typeText)
{
    PlaneForm form = parseForm(json, typeText);
    return visitElement(form.type, [&](auto tag) {
        using T = typename decltype(tag)::type;
        const std::vector<T> values = readValues<T>(json, form.isScalar);
        form.width = form.isList ? static_cast<unsigned int>(values.size()) : form.width;
        json.verify(values.size() == 1ULL * form.width * form.height, "wrong number of values");
        std::unique_ptr<I_PlaneBase> plane(CreatePlane(form.type, form.width, form.height));
        if (!values.empty()) {
            std::memcpy(plane->GetData(), values.data(), values.size() * sizeof(T));
        }
        return plane;
    });
}

void readAttribute(JsonReader& json, const CreateAttribute& create)
{
    const std::string name = nameFromText(json.key());
    json.verify(!name.empty(), "an attribute without a name");
    json.beginArray();
    json.next();
    const std::string type = json.text().toStdString();
    json.next();
    if (type == "str") {
        const QString text = json.text();
        dynamic_cast<I_Attribute<QString>&>(*create(name, AT_STRING)).SetValue(text);
    } else {
        auto plane = type == "plane" && json.takeNull() ? nullptr : readPlane(json, type);
        dynamic_cast<I_AttributePlane&>(*create(name, AT_PLANE)).SetPlane(plane.release());
    }
    json.endArray();
}

} // namespace

void writeAttribute(JsonWriter& json, const std::string& name, const I_AttributeBase& attribute)
{
    json.key(nameToText(name));
    json.beginArray();
    if (const auto* text = dynamic_cast<const I_Attribute<QString>*>(&attribute)) {
        json.text(QStringLiteral("str"));
        json.text(text->GetValue());
    } else if (const auto* numbers = dynamic_cast<const I_AttributePlane*>(&attribute)) {
        if (const I_PlaneBase* plane = numbers->GetPlane()) {
            writePlane(json, *plane);
        } else {
            json.text(QStringLiteral("plane"));
            json.null();
        }
    } else {
        RTE::raise(RTE::NotImplemented(
            QStringLiteral("Attribute '%1' is of a kind that no file holds").arg(nameToText(name))));
    }
    json.endArray();
}

QByteArray attributesToJson(const AttributeMap& attributes)
{
    if (attributes.empty()) {
        return {};
    }
    JsonWriter json;
    json.beginObject();
    for (const auto& [name, attribute] : attributes) {
        writeAttribute(json, name, *attribute);
    }
    json.endObject();
    return json.result();
}

void attributesFromJson(std::string_view text, const QString& source, const CreateAttribute& create)
{
    if (text.empty()) {
        return;
    }
    JsonReader json(text, source);
    json.beginObject();
    while (json.hasNext('}')) {
        readAttribute(json, create);
    }
    json.end();
}

} // namespace BufferApi::Formats
