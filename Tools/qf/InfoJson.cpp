// SPDX-License-Identifier: Apache-2.0
#include "Tools/qf/InfoText.h"

#include "Tools/qf/JsonText.h"

#include "Core/Buffer/NameText.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <array>

namespace Qf
{

namespace
{

QJsonValue toJson(const AttributeSummary& attribute)
{
    if (attribute.isText) {
        return attribute.text;
    }
    QJsonArray numbers;
    for (const double value : attribute.numbers) {
        numbers.append(value);
    }
    return numbers;
}

QJsonObject toJson(const AttributeSummaries& attributes)
{
    QJsonObject object;
    for (const auto& [name, attribute] : attributes) {
        object.insert(BufferApi::nameToText(name), toJson(attribute));
    }
    return object;
}

QJsonObject toJson(const Zt::LinearScale& scale)
{
    return {{QStringLiteral("factor"), scale.getFactor()},
            {QStringLiteral("offset"), scale.getOffset()},
            {QStringLiteral("unit"), scale.getUnit()},
            {QStringLiteral("description"), scale.getDescription()}};
}

QJsonArray toJson(const std::vector<ComponentSummary>& components)
{
    QJsonArray array;
    for (const ComponentSummary& component : components) {
        array.append(QJsonObject{{QStringLiteral("name"), component.name},
                                 {QStringLiteral("type"), typeName(component.type)},
                                 {QStringLiteral("planes"), static_cast<qint64>(component.planes)},
                                 {QStringLiteral("scale"), toJson(component.scale)}});
    }
    return array;
}

QJsonObject toJson(const FrameStructure& frame)
{
    QJsonObject scales;
    const std::array<const char*, 4> axes{"x", "y", "z", "I"};
    for (std::size_t i = 0; i < axes.size(); ++i) {
        scales.insert(QLatin1String(axes[i]), toJson(frame.scales[i]));
    }
    QJsonObject object{{QStringLiteral("kind"), frame.kind},
                       {QStringLiteral("type"), typeName(frame.type)},
                       {QStringLiteral("width"), static_cast<qint64>(frame.width)},
                       {QStringLiteral("height"), static_cast<qint64>(frame.height)},
                       {QStringLiteral("depth"), static_cast<qint64>(frame.depth)},
                       {QStringLiteral("scales"), scales},
                       {QStringLiteral("components"), toJson(frame.components)}};
    if (!frame.grid.empty()) {
        object.insert(QStringLiteral("choices"), static_cast<qint64>(frame.choices));
        object.insert(QStringLiteral("grid"),
                      QJsonArray{static_cast<qint64>(frame.grid[0]), static_cast<qint64>(frame.grid[1]),
                                 static_cast<qint64>(frame.grid[2])});
    }
    return object;
}

QJsonArray framesJson(const BufferSummary& buffer)
{
    QJsonArray array;
    for (const FrameRun& run : buffer.runs) {
        for (std::size_t i = 0; i < run.numbers.size(); ++i) {
            QJsonObject frame = toJson(run.structure);
            frame.insert(QStringLiteral("frame"), static_cast<qint64>(run.numbers[i]));
            frame.insert(QStringLiteral("attributes"), toJson(run.attributes[i]));
            array.append(frame);
        }
    }
    return array;
}

QJsonArray toJson(const std::vector<Statistics>& statistics)
{
    QJsonArray array;
    for (const Statistics& values : statistics) {
        array.append(QJsonObject{{QStringLiteral("frame"), static_cast<qint64>(values.frame)},
                                 {QStringLiteral("component"), values.component},
                                 {QStringLiteral("unit"), values.unit},
                                 {QStringLiteral("count"), static_cast<qint64>(values.count)},
                                 {QStringLiteral("not_finite"), static_cast<qint64>(values.notFinite)},
                                 {QStringLiteral("minimum"), values.minimum},
                                 {QStringLiteral("maximum"), values.maximum},
                                 {QStringLiteral("mean"), values.mean},
                                 {QStringLiteral("deviation"), values.deviation}});
    }
    return array;
}

QJsonObject toJson(const FileInfo& info)
{
    QJsonObject object{{QStringLiteral("file"), info.path},
                       {QStringLiteral("format"), info.format},
                       {QStringLiteral("bytes"), info.bytes},
                       {QStringLiteral("name"), info.buffer.name},
                       {QStringLiteral("frame_count"), static_cast<qint64>(info.buffer.frameCount)},
                       {QStringLiteral("attributes"), toJson(info.buffer.attributes)},
                       {QStringLiteral("frames"), framesJson(info.buffer)}};
    if (!info.hash.isEmpty()) {
        object.insert(QStringLiteral("sha256"), info.hash);
    }
    if (!info.statistics.empty()) {
        object.insert(QStringLiteral("statistics"), toJson(info.statistics));
    }
    return object;
}

} // namespace

QString infoJson(const std::vector<FileInfo>& infos)
{
    QJsonArray array;
    for (const FileInfo& info : infos) {
        array.append(toJson(info));
    }
    return QString::fromUtf8(portableJson(QJsonDocument(array)));
}

} // namespace Qf
