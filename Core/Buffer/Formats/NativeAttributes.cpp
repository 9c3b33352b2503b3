// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/NativeAttributes.h"

#include "Core/Buffer/BufferApi.h"
#include "Core/Buffer/Formats/AttributeJson.h"
#include "Core/Buffer/Formats/Hdf5Call.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <utility>

namespace BufferApi::Formats::Native
{

namespace
{

// Beyond about 64 KiB HDF5 moves an attribute to a place without checksum.
constexpr qsizetype largestAttribute = 60000;

constexpr std::string_view hiddenPrefix = "qf_";
constexpr std::string_view jsonSuffix = "_json";
constexpr std::array<const char*, 4> scaleAttributes{"scale_factor", "add_offset", "units", "long_name"};

// Python's xarray takes data in one of these units for time spans and loses their fractions.
constexpr std::array<std::pair<const char*, const char*>, 7> timeUnits{{{"days", "d"},
                                                                        {"hours", "h"},
                                                                        {"minutes", "min"},
                                                                        {"seconds", "s"},
                                                                        {"milliseconds", "ms"},
                                                                        {"microseconds", "us"},
                                                                        {"nanoseconds", "ns"}}};

std::string exactName(const std::string& name)
{
    const std::string base = name.starts_with(hiddenPrefix) ? name : std::string(hiddenPrefix) + name;
    return base + std::string(jsonSuffix);
}

QByteArray textToJson(const QString& text)
{
    JsonWriter json;
    json.text(text);
    return json.result();
}

/// What HDF5 gives back as it was: no null characters, no unpaired surrogates.
bool isExact(const QString& text, const QByteArray& utf8)
{
    return utf8.size() <= largestAttribute && !utf8.contains('\0') && QString::fromUtf8(utf8) == text;
}

/// The unit that other programs see; empty for one that they would take for a date.
QString shownUnit(const QString& unit)
{
    for (const auto& [word, symbol] : timeUnits) {
        if (unit == QLatin1String(word)) {
            return QLatin1String(symbol);
        }
    }
    return unit.contains(QLatin1String("since")) ? QString() : unit;
}

void writeUnit(Hdf5::Object& object, const QString& unit)
{
    const QString shown = shownUnit(unit);
    if (shown == unit) {
        writeAnyText(object, "units", unit);
        return;
    }
    if (!shown.isEmpty()) {
        object.writeText("units", shown.toUtf8());
    }
    writeLongText(object, exactName("units"), textToJson(unit));
}

bool writeText(Hdf5::Object& root, const std::string& name, const I_Attribute<QString>& attribute)
{
    const QString text = attribute.GetValue();
    const QByteArray utf8 = text.toUtf8();
    if (!isExact(text, utf8)) {
        return false;
    }
    root.writeText(name, utf8);
    return true;
}

bool writeList(Hdf5::Object& root, const std::string& name, const I_AttributePlane& attribute)
{
    const I_PlaneBase* plane = attribute.GetPlane();
    if (plane == nullptr || plane->GetHeight() != 1 || plane->GetDataType() == DT_RGB ||
        plane->GetData() == nullptr) {
        return false;
    }
    const auto bytes = static_cast<qsizetype>(GetDataTypeSize(plane->GetDataType()) * plane->GetWidth());
    if (bytes > largestAttribute) {
        return false;
    }
    root.writeNumbers(name, static_cast<Hdf5::Element>(plane->GetDataType()),
                      QByteArray(static_cast<const char*>(plane->GetData()), bytes));
    return true;
}

bool writeOne(Hdf5::Object& root, const std::string& name, const I_AttributeBase& attribute)
{
    const auto fileName = attributeName(name);
    if (!fileName) {
        return false;
    }
    if (const auto* text = dynamic_cast<const I_Attribute<QString>*>(&attribute)) {
        return writeText(root, *fileName, *text);
    }
    const auto* list = dynamic_cast<const I_AttributePlane*>(&attribute);
    return list != nullptr && writeList(root, *fileName, *list);
}

void setNumbers(I_AttributePlane& attribute, const Hdf5::Attribute& value)
{
    // 64-bit integers come from other programs alone; the store's widest number takes them.
    const bool isWide = value.element == Hdf5::Element::I64;
    const E_DataType type = isWide ? DT_DOUBLE : static_cast<E_DataType>(value.element);
    const auto count = static_cast<unsigned long long>(value.bytes.size()) / GetDataTypeSize(type);
    std::unique_ptr<I_PlaneBase> plane(CreatePlane(type, static_cast<unsigned int>(count), 1));
    for (unsigned long long i = 0; isWide && i < count; ++i) {
        long long number = 0;
        std::memcpy(&number, value.bytes.constData() + i * sizeof(number), sizeof(number));
        static_cast<double*>(plane->GetData())[i] = static_cast<double>(number);
    }
    if (!isWide && count > 0) {
        std::memcpy(plane->GetData(), value.bytes.constData(), static_cast<std::size_t>(value.bytes.size()));
    }
    attribute.SetPlane(plane.release());
}

void createAttribute(I_Buffer& buffer, const std::string& name, const Hdf5::Attribute& value)
{
    if (value.kind == Hdf5::Attribute::Kind::Text) {
        auto& attribute = dynamic_cast<I_Attribute<QString>&>(*buffer.CreateAttribute(name, AT_STRING));
        attribute.SetValue(QString::fromUtf8(value.bytes));
    } else if (value.kind == Hdf5::Attribute::Kind::Numbers) {
        setNumbers(dynamic_cast<I_AttributePlane&>(*buffer.CreateAttribute(name, AT_PLANE)), value);
    }
}

std::string pieceName(const std::string& name, unsigned int number)
{
    return number == 1 ? name : name + '_' + std::to_string(number);
}

/// Bytes of the next piece, which ends between two characters.
qsizetype pieceBytes(const QByteArray& utf8, qsizetype first)
{
    qsizetype end = std::min(first + largestAttribute, utf8.size());
    while (end < utf8.size() && (static_cast<unsigned char>(utf8[end]) & 0xC0U) == 0x80U) {
        --end;
    }
    return end - first;
}

std::string hiddenName(const char* name)
{
    return std::string(hiddenPrefix) + name;
}

double readNumber(const Hdf5::Attributes& attributes, const char* name, double missing)
{
    if (const auto hidden = attributes.findNumber(hiddenName(name))) {
        return *hidden;
    }
    return attributes.findNumber(name).value_or(missing);
}

QString readTextOf(const Hdf5::Attributes& attributes, const char* name)
{
    const QString hidden = readAnyText(attributes, hiddenName(name));
    return hidden.isEmpty() ? readAnyText(attributes, name) : hidden;
}

} // namespace

void writeScale(Hdf5::Object& object, const ScaleValue& scale, ScaleUse use)
{
    if (use == ScaleUse::Coordinate || !scale.isPlain()) {
        object.writeNumber("scale_factor", scale.factor);
        object.writeNumber("add_offset", scale.offset);
    }
    if (!scale.unit.isEmpty()) {
        writeUnit(object, scale.unit);
    }
    if (!scale.description.isEmpty()) {
        writeAnyText(object, "long_name", scale.description);
    }
}

void hideScale(Hdf5::Object& object)
{
    const std::vector<std::string> present = object.attributeNames();
    for (const char* name : scaleAttributes) {
        if (std::find(present.begin(), present.end(), name) != present.end()) {
            object.renameAttribute(name, hiddenName(name));
        }
    }
}

ScaleValue readScale(const Hdf5::Attributes& attributes)
{
    ScaleValue scale;
    scale.factor = readNumber(attributes, "scale_factor", 1);
    scale.offset = readNumber(attributes, "add_offset", 0);
    scale.unit = readTextOf(attributes, "units");
    scale.description = readTextOf(attributes, "long_name");
    return scale;
}

void writeAnyText(Hdf5::Object& object, const std::string& name, const QString& text)
{
    const QByteArray utf8 = text.toUtf8();
    if (isExact(text, utf8)) {
        object.writeText(name, utf8);
    } else {
        writeLongText(object, exactName(name), textToJson(text));
    }
}

QString readAnyText(const Hdf5::Attributes& attributes, const std::string& name)
{
    if (const auto exact = findLongText(attributes, exactName(name))) {
        const QString source =
            QStringLiteral("%1, attribute %2")
                .arg(attributes.object().file().path(), QString::fromStdString(exactName(name)));
        const Hdf5::Unlocked unlocked;
        JsonReader json({exact->constData(), static_cast<std::size_t>(exact->size())}, source);
        QString text = json.text();
        json.end();
        return text;
    }
    return QString::fromUtf8(attributes.findText(name).value_or(QByteArray()));
}

void writeLongText(Hdf5::Object& object, const std::string& name, const QByteArray& utf8)
{
    qsizetype first = 0;
    for (unsigned int number = 1; number == 1 || first < utf8.size(); ++number) {
        const qsizetype bytes = pieceBytes(utf8, first);
        object.writeText(pieceName(name, number), utf8.mid(first, bytes));
        first += bytes;
    }
}

std::optional<QByteArray> findLongText(const Hdf5::Attributes& attributes, const std::string& name)
{
    auto text = attributes.findText(name);
    for (unsigned int number = 2; text; ++number) {
        const auto piece = attributes.findText(pieceName(name, number));
        if (!piece) {
            break;
        }
        *text += *piece;
    }
    return text;
}

void writeLongList(Hdf5::Object& object, const std::string& name, const std::vector<unsigned int>& values)
{
    const QByteArray bytes(reinterpret_cast<const char*>(values.data()),
                           static_cast<qsizetype>(values.size() * sizeof(unsigned int)));
    static_assert(largestAttribute % sizeof(unsigned int) == 0);
    qsizetype first = 0;
    for (unsigned int number = 1; number == 1 || first < bytes.size(); ++number) {
        object.writeNumbers(pieceName(name, number), Hdf5::Element::U32, bytes.mid(first, largestAttribute));
        first += largestAttribute;
    }
}

std::optional<std::vector<double>> findLongList(const Hdf5::Attributes& attributes, const std::string& name)
{
    auto values = attributes.findNumbers(name);
    for (unsigned int number = 2; values; ++number) {
        const auto piece = attributes.findNumbers(pieceName(name, number));
        if (!piece) {
            break;
        }
        values->insert(values->end(), piece->begin(), piece->end());
    }
    return values;
}

QByteArray writeBufferAttributes(Hdf5::Object& root, const AttributeMap& attributes)
{
    JsonWriter json;
    json.beginObject();
    bool hasOthers = false;
    for (const auto& [name, attribute] : attributes) {
        if (!writeOne(root, name, *attribute)) {
            writeAttribute(json, name, *attribute);
            hasOthers = true;
        }
    }
    json.endObject();
    return hasOthers ? json.result() : QByteArray();
}

void readBufferAttributes(const Hdf5::Attributes& root, I_Buffer& buffer)
{
    for (const std::string& name : root.names()) {
        if (const auto own = attributeNameFromFile(name)) {
            createAttribute(buffer, *own, root.object().readAttribute(name));
        }
    }
}

} // namespace BufferApi::Formats::Native
