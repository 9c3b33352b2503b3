// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/NativeWriter.h"

#include "Core/Buffer/Formats/AttributeJson.h"
#include "Core/Buffer/Formats/Hdf5Call.h"
#include "Core/Buffer/Formats/Json.h"
#include "Core/Buffer/Formats/NativeAttributes.h"

#include <algorithm>

namespace BufferApi::Formats::Native
{

Writer::Writer(Hdf5::File file, bool isPacked) : m_isPacked(isPacked), m_file(std::move(file))
{
    static constexpr int version[] = {formatMajor, formatMinor};
    m_file->writeText("Conventions", "CF-1.8");
    m_file->writeText("qf_format", formatName);
    m_file->writeNumbers("qf_version", Hdf5::Element::I32,
                         QByteArray(reinterpret_cast<const char*>(version), sizeof(version)));
}

void Writer::describe(const I_Buffer& buffer)
{
    JsonWriter json;
    json.text(buffer.GetName());
    const QByteArray description = json.result() + attributesToJson(buffer.GetAttributeList());
    if (description == m_description) {
        return;
    }
    removeDescription();
    const std::vector<std::string> before = m_file->attributeNames();
    writeAnyText(*m_file, "qf_name", buffer.GetName());
    const QByteArray others = writeBufferAttributes(*m_file, buffer.GetAttributeList());
    if (!others.isEmpty()) {
        writeLargeAttributes(others);
    }
    const std::vector<std::string> after = m_file->attributeNames();
    m_descriptionNames.assign(after.begin() + static_cast<std::ptrdiff_t>(before.size()), after.end());
    m_description = description;
}

void Writer::removeDescription()
{
    for (const std::string& name : m_descriptionNames) {
        m_file->removeAttribute(name);
    }
    if (m_hasLargeAttributes) {
        m_file->remove(Name::bufferAttributes);
        m_file->remove(Name::bufferAttributeByte);
        m_hasLargeAttributes = false;
    }
}

void Writer::writeLargeAttributes(const QByteArray& json)
{
    ColumnWriter column(*m_file, Name::bufferAttributes, Hdf5::Element::U8, textPerChunk, m_coder);
    column.append(json.constData(), static_cast<unsigned long long>(json.size()));
    column.flush();
    Hdf5::Dataset dimension = createDimension(*m_file, Name::bufferAttributeByte);
    dimension.resize({column.size()});
    column.dataset().attachScale(dimension, 0);
    m_hasLargeAttributes = true;
}

void Writer::append(const I_Frame& frame)
{
    m_changedSet = &setOf(frame);
    m_changedSet->append(frame, m_frames);
    ++m_frames;
}

bool Writer::acknowledge(const I_Buffer& buffer)
{
    describe(buffer);
    if (m_changedSet != nullptr) {
        m_changedSet->flush();
    }
    m_file->flush();
    return true;
}

SetWriter& Writer::setOf(const I_Frame& frame)
{
    FrameStructure structure = structureOf(frame);
    const auto found = std::find_if(m_sets.begin(), m_sets.end(),
                                    [&](const SetWriter& set) { return set.structure() == structure; });
    if (found != m_sets.end()) {
        return *found;
    }
    FirstFrame first(frame, std::move(structure));
    const Hdf5::Serial serial;
    if (m_sets.empty()) {
        m_file->writeText("qf_kind", isVectorKind(first.structure.shape.kind) ? "vector" : "image");
        return m_sets.emplace_back(m_file->root(), std::move(first), m_isPacked, m_coder);
    }
    Hdf5::Group group = m_file->createGroup("set" + std::to_string(m_sets.size()));
    return m_sets.emplace_back(std::move(group), std::move(first), m_isPacked, m_coder);
}

void Writer::finish(const I_Buffer& buffer)
{
    describe(buffer);
    for (SetWriter& set : m_sets) {
        set.flush();
    }
    {
        const Hdf5::Serial serial;
        m_sets.clear();
    }
    m_file->close();
    m_file.reset();
}

} // namespace BufferApi::Formats::Native
