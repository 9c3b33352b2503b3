// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/FrameRecord.h"

#include "Core/Buffer/Formats/AttributeJson.h"
#include "Core/Buffer/Formats/NativeLayout.h"

#include <algorithm>

namespace BufferApi::Formats
{

namespace
{

constexpr int version = 1;

/// Characters beyond ASCII stand in texts alone, where JSON has an escape for them.
QByteArray toAscii(const QByteArray& json)
{
    QByteArray ascii;
    ascii.reserve(json.size());
    const QString text = QString::fromUtf8(json);
    for (const QChar c : text) {
        if (c.unicode() < 0x80) {
            ascii += static_cast<char>(c.unicode());
        } else {
            ascii += "\\u" + QByteArray::number(c.unicode(), 16).rightJustified(4, '0');
        }
    }
    return ascii;
}

void writeAttributes(JsonWriter& json, const AttributeMap& attributes)
{
    if (!attributes.empty()) {
        json.key(QStringLiteral("attributes"));
        json.json(attributesToJson(attributes));
    }
}

} // namespace

FrameRecordWriter::FrameRecordWriter()
{
    m_json.beginObject();
    m_json.key(QStringLiteral("version"));
    m_json.number(version);
    m_json.key(QStringLiteral("frames"));
    m_json.beginArray();
}

unsigned int FrameRecordWriter::indexOf(const Zt::LinearScale& scale)
{
    const QByteArray text = Native::scaleToJson(Native::ScaleValue(scale));
    const auto [place, isNew] = m_indices.try_emplace(text, static_cast<unsigned int>(m_scales.size()));
    if (isNew) {
        m_scales.push_back(text);
    }
    return place->second;
}

void FrameRecordWriter::add(const I_Frame& frame)
{
    m_json.beginObject();
    if (frame.GetDepth() != 1) {
        m_json.key(QStringLiteral("depth"));
        m_json.number(frame.GetDepth());
    }
    m_json.key(QStringLiteral("scales"));
    m_json.beginArray();
    for (const Zt::LinearScale* scale :
         {&frame.GetScaleX(), &frame.GetScaleY(), &frame.GetScaleZ(), &frame.GetScaleI()}) {
        m_json.number(indexOf(*scale));
    }
    m_json.endArray();
    writeAttributes(m_json, frame.GetAttributeList());
    m_json.endObject();
}

QByteArray FrameRecordWriter::finish(const I_Buffer& buffer)
{
    m_json.endArray();
    m_json.key(QStringLiteral("scales"));
    m_json.beginArray();
    for (const QByteArray& scale : m_scales) {
        m_json.json(scale);
    }
    m_json.endArray();
    m_json.key(QStringLiteral("name"));
    m_json.text(buffer.GetName());
    writeAttributes(m_json, buffer.GetAttributeList());
    m_json.endObject();
    return toAscii(m_json.result());
}

FrameRecord::FrameRecord(QByteArray text, const QString& path)
    : m_text(std::move(text)),
      m_source(QStringLiteral("Cannot read '%1': its record of scales and attributes").arg(path))
{
    JsonReader json({m_text.constData(), static_cast<std::size_t>(m_text.size())}, m_source);
    json.beginObject();
    while (json.hasNext('}')) {
        readKey(json, json.key());
    }
    json.end();
    checkScales(json);
}

void FrameRecord::readKey(JsonReader& json, const QString& key)
{
    if (key == QStringLiteral("version")) {
        json.verify(json.number<int>() == version, "a version that this library does not know");
    } else if (key == QStringLiteral("frames")) {
        json.beginArray();
        while (json.hasNext(']')) {
            m_frames.push_back(readFrame(json));
            m_frames.back().firstPlane = m_planeCount;
            m_planeCount += m_frames.back().depth;
        }
    } else if (key == QStringLiteral("scales")) {
        json.beginArray();
        while (json.hasNext(']')) {
            const std::string_view scale = json.json();
            m_scales.push_back(Native::scaleFromJson(
                                   QByteArray(scale.data(), static_cast<qsizetype>(scale.size())), m_source)
                                   .scale());
        }
    } else if (key == QStringLiteral("name")) {
        m_name = json.text();
    } else if (key == QStringLiteral("attributes")) {
        m_attributes = json.json();
    } else {
        json.fail("an unknown key");
    }
}

FrameRecord::Frame FrameRecord::readFrame(JsonReader& json) const
{
    Frame frame;
    json.beginObject();
    while (json.hasNext('}')) {
        const QString key = json.key();
        if (key == QStringLiteral("scales")) {
            json.beginArray();
            for (unsigned int& index : frame.scales) {
                json.next();
                index = json.number<unsigned int>();
            }
            json.endArray();
        } else if (key == QStringLiteral("depth")) {
            frame.depth = json.number<unsigned int>();
            json.verify(frame.depth != 0, "a frame without planes");
        } else {
            json.verify(key == QStringLiteral("attributes"), "an unknown key");
            frame.attributes = json.json();
        }
    }
    return frame;
}

void FrameRecord::checkScales(const JsonReader& json) const
{
    for (const Frame& frame : m_frames) {
        json.verify(*std::max_element(frame.scales.begin(), frame.scales.end()) < m_scales.size(),
                    "a scale is missing");
    }
}

void FrameRecord::applyTo(I_Buffer& buffer) const
{
    buffer.SetName(m_name);
    attributesFromJson(m_attributes, m_source, [&](const std::string& name, E_AttributeKind kind) {
        return buffer.CreateAttribute(name, kind);
    });
}

void FrameRecord::applyTo(I_Frame& frame, std::size_t index) const
{
    const Frame& record = m_frames.at(index);
    frame.SetScaleX(m_scales[record.scales[0]]);
    frame.SetScaleY(m_scales[record.scales[1]]);
    frame.SetScaleZ(m_scales[record.scales[2]]);
    frame.SetScaleI(m_scales[record.scales[3]]);
    attributesFromJson(record.attributes, m_source, [&](const std::string& name, E_AttributeKind kind) {
        return frame.CreateAttribute(name, kind);
    });
}

} // namespace BufferApi::Formats
