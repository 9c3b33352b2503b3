// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/NativeSetReader.h"

#include "Core/Buffer/Formats/AttributeJson.h"
#include "Core/Buffer/Formats/Hdf5Call.h"
#include "Core/Buffer/Formats/NativeAttributes.h"
#include "Core/Buffer/I_FrameVector.h"
#include "Core/Buffer/LazyPlane.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace BufferApi::Formats::Native
{

namespace
{

// Planes without pixels take no bytes in a file; so many may be there anyway.
constexpr unsigned long long mostEmptyPlanes = 1ULL << 20U;

std::string_view viewOf(const QByteArray& text)
{
    return {text.constData(), static_cast<std::size_t>(text.size())};
}

class NativePlaneSource final : public PlaneSource
{
public:
    NativePlaneSource(std::shared_ptr<const PlaneReader> planes, const PlanePosition& position)
        : m_planes(std::move(planes)), m_position(position)
    {
    }

    void read(void* destination, unsigned long long) const override
    {
        m_planes->read(m_position, static_cast<unsigned char*>(destination));
    }

private:
    std::shared_ptr<const PlaneReader> m_planes;
    PlanePosition m_position;
};

std::vector<unsigned int> requiredList(const Hdf5::Attributes& attributes, const char* name)
{
    const auto numbers = findLongList(attributes, name);
    if (!numbers) {
        attributes.object().fail(QStringLiteral("attribute %1 is missing").arg(QLatin1String(name)));
    }
    std::vector<unsigned int> values;
    for (const double number : *numbers) {
        if (!(number >= 0 && number <= std::numeric_limits<unsigned int>::max()) ||
            number != std::floor(number)) {
            attributes.object().fail(
                QStringLiteral("attribute %1 does not hold counts").arg(QLatin1String(name)));
        }
        values.push_back(static_cast<unsigned int>(number));
    }
    return values;
}

std::array<unsigned int, 3> requiredTriple(const Hdf5::Attributes& attributes, const char* name)
{
    const std::vector<unsigned int> values = requiredList(attributes, name);
    if (values.size() != 3) {
        attributes.object().fail(
            QStringLiteral("attribute %1 does not hold 3 numbers").arg(QLatin1String(name)));
    }
    return {values[0], values[1], values[2]};
}

QByteArray requiredText(const Hdf5::Attributes& attributes, const char* name)
{
    auto text = findLongText(attributes, name);
    if (!text) {
        attributes.object().fail(QStringLiteral("attribute %1 is missing").arg(QLatin1String(name)));
    }
    return *text;
}

QString sourceOf(const Hdf5::Object& object, const char* attribute)
{
    return QStringLiteral("Cannot read '%1': %2, attribute %3")
        .arg(object.file().path(), QString::fromStdString(object.name()), QLatin1String(attribute));
}

std::vector<QString> requiredNames(const Hdf5::Attributes& attributes, const char* name)
{
    const QByteArray text = requiredText(attributes, name);
    const QString source = sourceOf(attributes.object(), name);
    const Hdf5::Unlocked unlocked;
    JsonReader json(viewOf(text), source);
    std::vector<QString> names;
    json.beginArray();
    while (json.hasNext(']')) {
        names.push_back(json.text());
    }
    json.end();
    return names;
}

/// Type and size of the components of a dataset, from its extents.
ComponentStructure componentOf(const Hdf5::Dataset& dataset, bool isRgb, bool isStacked)
{
    const Hdf5::Extents& extents = dataset.extents();
    const std::size_t rank = 4U + (isStacked ? 1U : 0U) + (isRgb ? 1U : 0U);
    if (extents.size() != rank) {
        dataset.fail(QStringLiteral("it has %1 dimensions where %2 are due").arg(extents.size()).arg(rank));
    }
    const std::size_t y = isStacked ? 3 : 2;
    if (dataset.layout().element == Hdf5::Element::I64) {
        dataset.fail(QStringLiteral("unsupported element type"));
    }
    constexpr unsigned long long largest = std::numeric_limits<unsigned int>::max();
    if (extents[y] > largest || extents[y + 1] > largest || (isRgb && extents.back() - 3 > 1)) {
        dataset.fail(QStringLiteral("its extents are not those of planes"));
    }
    ComponentStructure component;
    component.type = isRgb ? DT_RGB : static_cast<E_DataType>(dataset.layout().element);
    component.height = static_cast<unsigned int>(extents[y]);
    component.width = static_cast<unsigned int>(extents[y + 1]);
    component.channels = isRgb ? static_cast<unsigned int>(extents.back()) : 1;
    return component;
}

} // namespace

SetReader::TextColumn::TextColumn(const Hdf5::Group& group, const char* textName, const char* endName,
                                  OpenFile& file)
    : text(group.openDataset(textName), Hdf5::Element::U8, file),
      end(group.openDataset(endName), Hdf5::Element::I64, file),
      name(QStringLiteral("Cannot read '%1': %2, %3 of row ")
               .arg(group.file().path(), QString::fromStdString(group.name()), QLatin1String(textName)))
{
}

QByteArray SetReader::TextColumn::at(unsigned long long row) const
{
    // Rows that other programs appended have no text.
    if (row >= end.size()) {
        return {};
    }
    long long ends[2] = {0, 0};
    end.read(row == 0 ? 0 : row - 1, row == 0 ? 1 : 2, row == 0 ? ends + 1 : ends);
    if (ends[0] < 0 || ends[1] < ends[0] || static_cast<unsigned long long>(ends[1]) > text.size()) {
        end.dataset().fail(QStringLiteral("an end is out of order"));
    }
    return text.text(static_cast<unsigned long long>(ends[0]),
                     static_cast<unsigned long long>(ends[1] - ends[0]));
}

SetReader::SetReader(const Hdf5::Group& group, std::shared_ptr<OpenFile> file) : m_file(std::move(file))
{
    openStructure(group);
    readIndices(group);
    if (group.contains(Name::frameAttributes)) {
        m_attributes =
            std::make_unique<TextColumn>(group, Name::frameAttributes, Name::frameAttributesEnd, *m_file);
    }
    if (group.contains(Name::frameScales)) {
        m_scales = std::make_unique<TextColumn>(group, Name::frameScales, Name::frameScalesEnd, *m_file);
    }
}

void SetReader::openStructure(const Hdf5::Group& group)
{
    const Hdf5::Serial serial;
    const Hdf5::Attributes attributes(group);
    readShape(attributes);
    openDatasets(group, attributes);
    readAxes(group);
}

void SetReader::readShape(const Hdf5::Attributes& group)
{
    const auto kind = kindFromText(requiredText(group, "qf_frame"));
    if (!kind) {
        group.object().fail(QStringLiteral("unknown kind of frames"));
    }
    const auto size = requiredTriple(group, "qf_size");
    const std::vector<unsigned int> choices = requiredList(group, "qf_choices");
    m_structure.shape = {*kind, size[0], size[1], size[2], choices.empty() ? 1 : choices.front()};
    m_structure.grid = requiredTriple(group, "qf_grid");
    if (m_structure.shape.choices == 0 ||
        m_structure.shape.choices > std::max(m_file->bytes, mostEmptyPlanes)) {
        group.object().fail(QStringLiteral("it has an impossible number of choices"));
    }
}

void SetReader::openDatasets(const Hdf5::Group& group, const Hdf5::Attributes& attributes)
{
    FoundComponents found;
    if (const auto intensity = findLongText(attributes, "qf_scale_i")) {
        const Hdf5::Unlocked unlocked;
        found.intensity = scaleFromJson(*intensity, sourceOf(group, "qf_scale_i"));
    }
    for (const QString& name : requiredNames(attributes, "qf_datasets")) {
        if (name.contains(QLatin1Char('/'))) {
            group.fail(QStringLiteral("'%1' is not a name of a dataset").arg(name));
        }
        openDataset(group.openDataset(name.toStdString()), found);
    }
    for (auto& [index, component] : found.placed) {
        if (index != m_structure.components.size()) {
            group.fail(QStringLiteral("a component is missing"));
        }
        m_structure.components.push_back(std::move(component.structure));
        m_usual.components.push_back(std::move(component.ownScale));
    }
    m_usual.intensity = found.intensity.value_or(ScaleValue());
}

void SetReader::openDataset(Hdf5::Dataset dataset, FoundComponents& found)
{
    const Hdf5::Attributes attributes(dataset);
    const std::vector<QString> names = requiredNames(attributes, "qf_components");
    const std::vector<unsigned int> indices = requiredList(attributes, "qf_index");
    if (names.empty() || names.size() != indices.size()) {
        dataset.fail(QStringLiteral("its components are not named"));
    }
    const bool isRgb = attributes.findText("qf_element") == QByteArray("rgb");
    Component component{componentOf(dataset, isRgb, names.size() > 1), readOwnScale(attributes, found)};
    for (std::size_t i = 0; i < names.size(); ++i) {
        component.structure.name = nameFromText(names[i]);
        if (component.structure.name.empty() || !found.placed.emplace(indices[i], component).second) {
            dataset.fail(QStringLiteral("a component is out of place"));
        }
    }
    const PlaneGeometry geometry(component.structure, m_structure.shape.depth,
                                 static_cast<unsigned>(names.size()));
    m_datasets.push_back({indices, std::make_shared<PlaneReader>(std::move(dataset), geometry, m_file)});
}

std::optional<ScaleValue> SetReader::readOwnScale(const Hdf5::Attributes& dataset, FoundComponents& found)
{
    const auto isOwn = dataset.findNumber("qf_own_scale");
    if (isOwn && *isOwn != 0) {
        return readScale(dataset);
    }
    if (isOwn && !found.intensity) {
        found.intensity = readScale(dataset);
    }
    return {};
}

void SetReader::readAxes(const Hdf5::Group& group)
{
    for (std::size_t axis = 0; axis < m_usual.axes.size(); ++axis) {
        if (group.contains(Name::axes[axis])) {
            const Hdf5::Object coordinate = group.openDescription(Name::axes[axis]);
            m_usual.axes[axis] = readScale(Hdf5::Attributes(coordinate));
        }
    }
}

void SetReader::readIndices(const Hdf5::Group& group)
{
    const ColumnReader column(group.openDataset(Name::frame), Hdf5::Element::I64, *m_file);
    unsigned long long rows = column.size();
    for (const OpenDataset& dataset : m_datasets) {
        rows = std::min(rows, dataset.planes->rows());
    }
    // Memory is taken as the chunks prove to be there.
    for (unsigned long long first = 0; first < rows; first += framesPerChunk) {
        const unsigned long long count = std::min(framesPerChunk, rows - first);
        m_indices.resize(first + count);
        column.read(first, count, m_indices.data() + first);
    }
    unsigned long long planes = 0;
    const unsigned long long perComponent = rows * m_structure.shape.depth;
    if (__builtin_mul_overflow(perComponent, m_structure.components.size(), &planes) ||
        planes > std::max(m_file->bytes, mostEmptyPlanes)) {
        group.fail(QStringLiteral("more planes than the file can hold"));
    }
}

std::unique_ptr<I_Frame> SetReader::frame(unsigned long long row) const
{
    FrameScales scales = m_usual;
    if (m_scales) {
        const QByteArray text = m_scales->at(row);
        scalesFromJson(viewOf(text), m_scales->source(row), m_structure, scales);
    }
    std::unique_ptr<I_Frame> frame = buildFrame(m_structure.shape, components(row, scales));
    frame->SetScaleX(scales.axes[0].scale());
    frame->SetScaleY(scales.axes[1].scale());
    frame->SetScaleZ(scales.axes[2].scale());
    frame->SetScaleI(scales.intensity.scale());
    if (auto* vectors = dynamic_cast<I_FrameVector*>(frame.get())) {
        vectors->SetGridX(m_structure.grid[0]);
        vectors->SetGridY(m_structure.grid[1]);
        vectors->SetGridZ(m_structure.grid[2]);
    }
    if (m_attributes) {
        const QByteArray attributes = m_attributes->at(row);
        attributesFromJson(viewOf(attributes), m_attributes->source(row),
                           [&](const std::string& name, E_AttributeKind kind) {
                               return frame->CreateAttribute(name, kind);
                           });
    }
    return frame;
}

bool SetReader::hasChecksums() const
{
    return std::all_of(m_datasets.begin(), m_datasets.end(),
                       [](const OpenDataset& dataset) { return dataset.planes->dataset().hasChecksums(); });
}

std::vector<ComponentParts> SetReader::components(unsigned long long row, const FrameScales& scales) const
{
    std::vector<ComponentParts> parts(m_structure.components.size());
    for (const OpenDataset& dataset : m_datasets) {
        for (unsigned int choice = 0; choice < dataset.components.size(); ++choice) {
            const unsigned int index = dataset.components[choice];
            const ComponentStructure& component = m_structure.components[index];
            ComponentParts& part = parts[index];
            part.name = component.name;
            part.type = component.type;
            if (scales.components[index]) {
                part.scale = scales.components[index]->scale();
            }
            for (unsigned int z = 0; z < m_structure.shape.depth; ++z) {
                part.planes.push_back(createLazyPlane(
                    component.type, component.width, component.height,
                    std::make_shared<NativePlaneSource>(dataset.planes, PlanePosition{row, choice, z})));
            }
        }
    }
    return parts;
}

} // namespace BufferApi::Formats::Native
