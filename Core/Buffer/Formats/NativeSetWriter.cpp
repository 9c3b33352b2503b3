// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/NativeSetWriter.h"

#include "Core/Buffer/Formats/AttributeJson.h"
#include "Core/Buffer/Formats/NativeAttributes.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace BufferApi::Formats::Native
{

namespace
{

constexpr std::size_t mostMirrors = 32;
constexpr unsigned int mostFlags = 1000;

template <typename T>
QByteArray listOf(const std::vector<T>& values)
{
    return {reinterpret_cast<const char*>(values.data()), static_cast<qsizetype>(values.size() * sizeof(T))};
}

template <typename Names>
QByteArray jsonList(const Names& names, const std::function<QString(const typename Names::value_type&)>& text)
{
    JsonWriter json;
    json.beginArray();
    for (const auto& name : names) {
        json.text(text(name));
    }
    json.endArray();
    return json.result();
}

/// The number that an attribute holds: a plane of one number, or a text that is one.
std::optional<double> numberOf(const I_AttributeBase& attribute)
{
    if (const auto* text = dynamic_cast<const I_Attribute<QString>*>(&attribute)) {
        const QByteArray digits = text->GetValue().trimmed().toLatin1();
        double value = 0;
        const auto [end, error] = std::from_chars(digits.begin(), digits.end(), value);
        const bool isNumber = error == std::errc() && end == digits.end() && std::isfinite(value);
        return isNumber ? std::optional(value) : std::nullopt;
    }
    const auto* numbers = dynamic_cast<const I_AttributePlane*>(&attribute);
    const I_PlaneBase* plane = numbers == nullptr ? nullptr : numbers->GetPlane();
    if (plane == nullptr || plane->GetWidth() != 1 || plane->GetHeight() != 1 ||
        !PixelTypes::contains(plane->GetDataType()) || plane->GetData() == nullptr) {
        return {};
    }
    return PixelTypes::visit(
        plane->GetDataType(),
        [&](auto tag) {
            return std::optional(
                static_cast<double>(*static_cast<const typename decltype(tag)::type*>(plane->GetData())));
        },
        [] { return RTE::LogicError(QStringLiteral("Unknown element type")); });
}

void writeFlags(Hdf5::Dataset& dataset, const std::string& role, unsigned int choices)
{
    const Hdf5::Element element = dataset.layout().element;
    if (role == "active" && element == Hdf5::Element::I32 && choices <= mostFlags) {
        std::vector<int> values;
        QByteArray meanings;
        for (unsigned int choice = 0; choice < choices; ++choice) {
            values.push_back(static_cast<int>(choice));
            meanings += (choice == 0 ? "choice_" : " choice_") + QByteArray::number(choice);
        }
        dataset.writeNumbers("flag_values", element, listOf(values));
        dataset.writeText("flag_meanings", meanings);
    } else if ((role == "mask" || role == "enabled") && element == Hdf5::Element::U8) {
        dataset.writeNumbers("flag_values", element, listOf(std::vector<unsigned char>{0, 1}));
        dataset.writeText("flag_meanings", role == "mask" ? "masked_out valid" : "disabled enabled");
    }
}

/// Writes the coordinates of an axis: index times grid.
Hdf5::Dataset createCoordinate(Hdf5::Group& group, const std::string& name, unsigned int count,
                               unsigned int grid, ChunkCoder& coder)
{
    const bool isWide = 1ULL * count * grid > static_cast<unsigned>(std::numeric_limits<int>::max());
    ColumnWriter column(group, name, isWide ? Hdf5::Element::I64 : Hdf5::Element::I32, coder, count);
    for (unsigned int i = 0; i < count; ++i) {
        const long long value = 1LL * i * grid;
        const int narrow = static_cast<int>(value);
        column.append(isWide ? static_cast<const void*>(&value) : &narrow, 1);
    }
    column.flush();
    column.dataset().makeScale(name);
    return std::move(column.dataset());
}

/// Names joined as CF wants them; one with a space could not be told from two.
QByteArray joined(const std::vector<std::string>& names)
{
    QByteArray text;
    for (const std::string& name : names) {
        if (name.find(' ') == std::string::npos) {
            text += (text.isEmpty() ? "" : " ") + QByteArray::fromStdString(name);
        }
    }
    return text;
}

} // namespace

SetWriter::TextColumn::TextColumn(Hdf5::Group& group, const char* textName, const char* byteName,
                                  const char* endName, ChunkCoder& coder)
    : text(group, textName, Hdf5::Element::U8, textPerChunk, coder),
      end(group, endName, Hdf5::Element::I64, framesPerChunk, coder), byte(createDimension(group, byteName))
{
}

void SetWriter::TextColumn::append(const QByteArray& utf8)
{
    text.append(utf8.constData(), static_cast<unsigned long long>(utf8.size()));
    end.append(static_cast<long long>(text.size()));
}

void SetWriter::TextColumn::flush()
{
    text.flush();
    byte.resize({text.size()});
    end.flush();
}

FirstFrame::FirstFrame(const I_Frame& frame, FrameStructure frameStructure)
    : structure(std::move(frameStructure)), scales(scalesOf(frame))
{
    for (const auto& [name, attribute] : frame.GetAttributeList()) {
        if (numbers.size() < mostMirrors && numberOf(*attribute)) {
            numbers.push_back(name);
        }
    }
}

SetWriter::SetWriter(Hdf5::Group group, FirstFrame first, bool isPacked, ChunkCoder& coder)
    : m_group(std::move(group)), m_coder(coder), m_isPacked(isPacked),
      m_structure(std::move(first.structure)), m_usual(std::move(first.scales)),
      m_frame(m_group, Name::frame, Hdf5::Element::I64, framesPerChunk, coder),
      m_attributes(m_group, Name::frameAttributes, Name::attributeByte, Name::frameAttributesEnd, coder)
{
    m_frame.dataset().makeScale(Name::frame);
    std::vector<DatasetPlan> plans = planDatasets(m_structure);
    for (const DatasetPlan& plan : plans) {
        m_taken.insert(plan.name);
        for (const unsigned int component : plan.components) {
            m_usual.components[component] = m_usual.components[plan.components.front()];
        }
    }
    describeGroup(plans);
    createAxes();
    std::vector<Hdf5::DatasetScales> scales{{&m_attributes.text.dataset(), {&m_attributes.byte}},
                                            {&m_attributes.end.dataset(), {&m_frame.dataset()}}};
    for (DatasetPlan& plan : plans) {
        scales.push_back(createDataset(std::move(plan)));
    }
    createMirrors(first.numbers);
    for (Mirror& mirror : m_mirrors) {
        scales.push_back({&mirror.column.dataset(), {&m_frame.dataset()}});
    }
    Hdf5::Dataset::attachScales(scales);
    for (PlannedDataset& dataset : m_datasets) {
        describeDataset(dataset);
    }
}

void SetWriter::describeGroup(const std::vector<DatasetPlan>& plans)
{
    const FrameShape& shape = m_structure.shape;
    const std::vector<unsigned int> size{shape.width, shape.height, shape.depth};
    const std::vector<unsigned int> grid(m_structure.grid.begin(), m_structure.grid.end());
    m_group.writeText("qf_frame", kindText(shape.kind));
    m_group.writeNumbers("qf_size", Hdf5::Element::U32, listOf(size));
    m_group.writeNumbers("qf_grid", Hdf5::Element::U32, listOf(grid));
    m_group.writeNumber("qf_choices", shape.choices);
    writeLongText(m_group, "qf_datasets",
                  jsonList<std::vector<DatasetPlan>>(
                      plans, [](const DatasetPlan& plan) { return QString::fromStdString(plan.name); }));
    const bool isShown = std::any_of(plans.begin(), plans.end(), [&](const DatasetPlan& plan) {
        const unsigned int component = plan.components.front();
        return !m_usual.components[component] && followsIntensity(shape, nameOf(component));
    });
    if (!isShown) {
        writeLongText(m_group, "qf_scale_i", scaleToJson(m_usual.intensity));
    }
}

const std::string& SetWriter::nameOf(unsigned int component) const
{
    return m_structure.components[component].name;
}

void SetWriter::createAxes()
{
    const FrameShape& shape = m_structure.shape;
    const std::array<unsigned int, 3> sizes{shape.width, shape.height, shape.depth};
    for (std::size_t axis = 0; axis < sizes.size(); ++axis) {
        const char* name = Name::axes[axis];
        Hdf5::Dataset dataset = createCoordinate(m_group, name, sizes[axis], m_structure.grid[axis], m_coder);
        writeScale(dataset, m_usual.axes[axis], ScaleUse::Coordinate);
        dataset.writeText("axis", QByteArray(name).toUpper());
        m_axes.push_back({std::move(dataset), false});
    }
}

Hdf5::DatasetScales SetWriter::createDataset(DatasetPlan plan)
{
    const auto choices = static_cast<unsigned int>(plan.components.size());
    const PlaneGeometry geometry(m_structure.components[plan.components.front()], m_structure.shape.depth,
                                 choices);
    PlaneWriter planes(m_group, plan.name, geometry, m_isPacked, m_coder);
    PlannedDataset& dataset =
        m_datasets.emplace_back(PlannedDataset{std::move(plan), std::move(planes), false});
    return {&dataset.planes.dataset(), dimensionsOf(dataset)};
}

std::vector<const Hdf5::Dataset*> SetWriter::dimensionsOf(const PlannedDataset& dataset)
{
    const ComponentStructure& component = dataset.planes.geometry().component();
    const auto choices = static_cast<unsigned int>(dataset.plan.components.size());
    std::vector<const Hdf5::Dataset*> scales{&m_frame.dataset()};
    if (choices > 1) {
        scales.push_back(&indexScale(Name::choice, choices));
    }
    scales.push_back(&m_axes[2].dataset);
    if (component.width != m_structure.shape.width || component.height != m_structure.shape.height) {
        scales.push_back(&indexScale("y_" + dataset.plan.name, component.height));
        scales.push_back(&indexScale("x_" + dataset.plan.name, component.width));
    } else {
        scales.push_back(&m_axes[1].dataset);
        scales.push_back(&m_axes[0].dataset);
    }
    if (component.type == DT_RGB) {
        const char* name = component.channels == 3 ? Name::channel : "channel_4";
        scales.push_back(&indexScale(name, component.channels));
    }
    return scales;
}

Hdf5::Dataset& SetWriter::indexScale(const std::string& name, unsigned int count)
{
    const auto found = m_indexScales.find(name);
    if (found != m_indexScales.end()) {
        return found->second;
    }
    // The names of the format itself are reserved, so that only others may have to give way.
    const bool isOurs = name == Name::choice || name == Name::channel;
    const std::string unique = isOurs ? name : datasetName(name, m_taken);
    return m_indexScales.emplace(name, createCoordinate(m_group, unique, count, 1, m_coder)).first->second;
}

void SetWriter::describeDataset(PlannedDataset& dataset)
{
    const DatasetPlan& plan = dataset.plan;
    Hdf5::Dataset& target = dataset.planes.dataset();
    const unsigned int first = plan.components.front();
    writeLongText(target, "qf_components",
                  jsonList<std::vector<unsigned int>>(plan.components,
                                                      [&](unsigned int i) { return nameToText(nameOf(i)); }));
    writeLongList(target, "qf_index", plan.components);
    target.writeText("qf_role", QByteArray::fromStdString(plan.role));
    if (m_structure.components[first].type == DT_RGB) {
        target.writeText("qf_element", "rgb");
    }
    const bool hasOwnScale = m_usual.components[first].has_value();
    if (hasOwnScale || followsIntensity(m_structure.shape, nameOf(first))) {
        target.writeNumber("qf_own_scale", hasOwnScale ? 1 : 0);
        writeScale(target, hasOwnScale ? *m_usual.components[first] : m_usual.intensity, ScaleUse::Data);
    }
    writeFlags(target, plan.role, m_structure.shape.choices);
    if (plan.role == "data" || plan.role == "scalar") {
        writeRelations(target);
    }
}

void SetWriter::writeRelations(Hdf5::Dataset& dataset)
{
    std::vector<std::string> flags;
    for (const PlannedDataset& other : m_datasets) {
        if (other.plan.role != "data" && other.plan.role != "scalar") {
            flags.push_back(other.plan.name);
        }
    }
    std::vector<std::string> mirrors;
    for (Mirror& mirror : m_mirrors) {
        mirrors.push_back(mirror.column.dataset().name());
    }
    if (const QByteArray text = joined(flags); !text.isEmpty()) {
        dataset.writeText("ancillary_variables", text);
    }
    if (const QByteArray text = joined(mirrors); !text.isEmpty()) {
        dataset.writeText("coordinates", text);
    }
}

void SetWriter::createMirrors(const std::vector<std::string>& numbers)
{
    for (const std::string& name : numbers) {
        m_mirrors.push_back({name, ColumnWriter(m_group, datasetName(name, m_taken), Hdf5::Element::F64,
                                                framesPerChunk, m_coder)});
        writeAnyText(m_mirrors.back().column.dataset(), "qf_mirror_of", nameToText(name));
    }
}

void SetWriter::append(const I_Frame& frame, unsigned long long index)
{
    // What can fail on behalf of the frame comes before anything is written.
    const FrameScales scales = scalesOf(frame);
    const QByteArray attributes = attributesToJson(frame.GetAttributeList());
    for (PlannedDataset& dataset : m_datasets) {
        dataset.planes.resize(m_rows + 1);
        for (unsigned int choice = 0; choice < dataset.plan.components.size(); ++choice) {
            for (unsigned int z = 0; z < m_structure.shape.depth; ++z) {
                const I_PlaneBase& plane = *frame.GetPlane(dataset.plan.components[choice], z);
                dataset.planes.write({m_rows, choice, z}, plane);
            }
        }
    }
    appendScales(scales);
    m_attributes.append(attributes);
    for (Mirror& mirror : m_mirrors) {
        const I_AttributeBase* attribute = frame.FindAttribute(mirror.attribute);
        const auto value = attribute == nullptr ? std::nullopt : numberOf(*attribute);
        mirror.column.append(value.value_or(std::numeric_limits<double>::quiet_NaN()));
    }
    m_frame.append(static_cast<long long>(index));
    ++m_rows;
}

void SetWriter::appendScales(const FrameScales& scales)
{
    const QByteArray text = scalesToJson(scales, m_usual, m_structure);
    if (!text.isEmpty()) {
        hideChangedScales(scales);
        if (!m_scales) {
            m_scales.emplace(m_group, Name::frameScales, Name::scaleByte, Name::frameScalesEnd, m_coder);
            m_scales->text.dataset().attachScale(m_scales->byte, 0);
            m_scales->end.dataset().attachScale(m_frame.dataset(), 0);
            m_scales->end.pad(m_rows);
        }
    }
    if (m_scales) {
        m_scales->append(text);
    }
}

void SetWriter::hideChangedScales(const FrameScales& scales)
{
    for (std::size_t axis = 0; axis < m_axes.size(); ++axis) {
        if (!(scales.axes[axis] == m_usual.axes[axis])) {
            hide(m_axes[axis].dataset, m_axes[axis].isScaleHidden);
        }
    }
    for (PlannedDataset& dataset : m_datasets) {
        const auto isChanged = [&](unsigned int component) {
            return scales.components[component] != m_usual.components[component] ||
                   (!scales.components[component] && followsIntensity(m_structure.shape, nameOf(component)) &&
                    !(scales.intensity == m_usual.intensity));
        };
        if (std::any_of(dataset.plan.components.begin(), dataset.plan.components.end(), isChanged)) {
            hide(dataset.planes.dataset(), dataset.isScaleHidden);
        }
    }
}

void SetWriter::hide(Hdf5::Dataset& dataset, bool& isHidden)
{
    if (!isHidden) {
        hideScale(dataset);
        isHidden = true;
    }
}

void SetWriter::flush()
{
    for (PlannedDataset& dataset : m_datasets) {
        dataset.planes.flush();
    }
    if (m_scales) {
        m_scales->flush();
    }
    m_attributes.flush();
    for (Mirror& mirror : m_mirrors) {
        mirror.column.flush();
    }
    m_frame.flush();
}

} // namespace BufferApi::Formats::Native
