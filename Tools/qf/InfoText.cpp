// SPDX-License-Identifier: Apache-2.0
#include "Tools/qf/InfoText.h"

#include "Tools/qf/Arguments.h"
#include "Tools/qf/NumberText.h"
#include "Tools/qf/Session.h"
#include "Tools/qf/TextTable.h"

#include "Core/Buffer/NameText.h"

#include <QStringList>

#include <algorithm>
#include <array>
#include <set>

namespace Qf
{

namespace
{

QString number(double value)
{
    return QString::number(value, 'g', 6);
}

QString sizeText(const FrameStructure& frame)
{
    QString text = QStringLiteral("%1x%2").arg(frame.width).arg(frame.height);
    return frame.depth > 1 ? QStringLiteral("%1x%2").arg(text).arg(frame.depth) : text;
}

/// One text when all runs of frames agree, else "mixed".
template <typename Text>
QString common(const BufferSummary& buffer, Text&& text)
{
    if (buffer.runs.empty()) {
        return QStringLiteral("-");
    }
    const QString first = text(buffer.runs.front().structure);
    const bool same = std::all_of(buffer.runs.begin(), buffer.runs.end(),
                                  [&](const FrameRun& run) { return text(run.structure) == first; });
    return same ? first : QStringLiteral("mixed");
}

/// "3 frames", or "2 of 3 frames" when not all were asked for.
QString framesText(const BufferSummary& buffer)
{
    std::size_t selected = 0;
    for (const FrameRun& run : buffer.runs) {
        selected += run.numbers.size();
    }
    const QString all = counted(buffer.frameCount, QStringLiteral("frame"));
    return selected == buffer.frameCount ? all : QStringLiteral("%1 of %2").arg(selected).arg(all);
}

QStringList columnsOf(const FileInfo& info)
{
    QStringList columns{printable(info.path),
                        common(info.buffer, [](const FrameStructure& frame) { return frame.kind; }),
                        framesText(info.buffer),
                        common(info.buffer, sizeText),
                        common(info.buffer, [](const FrameStructure& frame) { return typeName(frame.type); }),
                        byteCountText(static_cast<unsigned long long>(info.bytes))};
    if (!info.hash.isEmpty()) {
        columns << QStringLiteral("sha256:") + info.hash;
    }
    return columns;
}

QString attributeText(const AttributeSummary& attribute)
{
    if (attribute.isText) {
        return printable(attribute.text);
    }
    const std::size_t shown = 8;
    QStringList numbers;
    for (std::size_t i = 0; i < std::min(shown, attribute.numbers.size()); ++i) {
        numbers << QString::fromStdString(exactText(attribute.numbers[i]));
    }
    if (attribute.numbers.size() > shown) {
        numbers << QStringLiteral("... %1 numbers").arg(attribute.numbers.size());
    }
    return QStringLiteral("[%1]").arg(numbers.join(QStringLiteral(", ")));
}

/// The attribute in the first frame, and in the last where not all frames agree.
QString attributeText(const FrameRun& run, const std::string& name)
{
    const auto textOf = [&](const AttributeSummaries& attributes) {
        const auto found = attributes.find(name);
        return found == attributes.end() ? QStringLiteral("none") : attributeText(found->second);
    };
    const QString first = textOf(run.attributes.front());
    const bool same = std::all_of(run.attributes.begin(), run.attributes.end(),
                                  [&](const AttributeSummaries& frame) { return textOf(frame) == first; });
    return same ? first : QStringLiteral("%1 ... %2").arg(first, textOf(run.attributes.back()));
}

std::set<std::string> attributeNames(const FrameRun& run)
{
    std::set<std::string> names;
    for (const AttributeSummaries& attributes : run.attributes) {
        for (const auto& entry : attributes) {
            names.insert(entry.first);
        }
    }
    return names;
}

/// Lines of a name and a value, the values below one another.
class Details
{
public:
    void addHeading(const QString& text) { m_text += QStringLiteral("  %1\n").arg(text); }
    void add(const QString& name, const QString& value)
    {
        const qsizetype width = std::max<qsizetype>(28, name.size() + 2);
        m_text += QStringLiteral("    %1%2\n").arg(printable(name).leftJustified(width), value);
    }
    void addAttribute(const std::string& name, const QString& value)
    {
        add(QStringLiteral("attribute ") + BufferApi::nameToText(name), value);
    }
    [[nodiscard]] QString text() const { return m_text; }

private:
    QString m_text;
};

void addStructure(Details& details, const FrameStructure& frame)
{
    if (!frame.grid.empty()) {
        details.add(
            QStringLiteral("grid"),
            QStringLiteral("%1 x %2 x %3 pixels").arg(frame.grid[0]).arg(frame.grid[1]).arg(frame.grid[2]));
        details.add(QStringLiteral("choices"), QString::number(frame.choices));
    }
    const std::array<const char*, 4> axes{"x", "y", "z", "I"};
    for (std::size_t i = 0; i < axes.size(); ++i) {
        details.add(QStringLiteral("scale ") + QLatin1String(axes[i]), printable(scaleText(frame.scales[i])));
    }
    for (const ComponentSummary& component : frame.components) {
        details.add(QStringLiteral("component ") + component.name,
                    QStringLiteral("%1, %2, %3")
                        .arg(typeName(component.type), counted(component.planes, QStringLiteral("plane")),
                             printable(scaleText(component.scale))));
    }
}

/// "frame 3", "frames 0 to 9" or, of a slice, "frames 0 to 8 by 2".
QString numbersText(const std::vector<unsigned int>& numbers)
{
    if (numbers.size() == 1) {
        return QStringLiteral("frame %1").arg(numbers.front());
    }
    const long long step = static_cast<long long>(numbers[1]) - numbers[0];
    const QString text = QStringLiteral("frames %1 to %2").arg(numbers.front()).arg(numbers.back());
    return step == 1 ? text : QStringLiteral("%1 by %2").arg(text).arg(step);
}

void addRun(Details& details, const FrameRun& run)
{
    details.addHeading(
        QStringLiteral("%1: %2, %3")
            .arg(numbersText(run.numbers), sizeText(run.structure), typeName(run.structure.type)));
    addStructure(details, run.structure);
    for (const std::string& name : attributeNames(run)) {
        details.addAttribute(name, attributeText(run, name));
    }
}

void addBuffer(Details& details, const QString& format, const BufferSummary& buffer)
{
    details.addHeading(QStringLiteral("buffer"));
    details.add(QStringLiteral("format"), format);
    if (!buffer.name.isEmpty()) {
        details.add(QStringLiteral("name"), printable(buffer.name));
    }
    for (const auto& [name, attribute] : buffer.attributes) {
        details.addAttribute(name, attributeText(attribute));
    }
    for (const FrameRun& run : buffer.runs) {
        addRun(details, run);
    }
}

void addStatistics(Details& details, const std::vector<Statistics>& statistics)
{
    for (const Statistics& values : statistics) {
        QString text = QStringLiteral("min %1  max %2  mean %3  deviation %4 %5")
                           .arg(number(values.minimum), number(values.maximum), number(values.mean),
                                number(values.deviation), printable(values.unit));
        if (values.notFinite > 0) {
            text += QStringLiteral("  %1 not finite").arg(values.notFinite);
        }
        details.add(QStringLiteral("frame %1 %2").arg(values.frame).arg(values.component), text);
    }
}

} // namespace

QString infoText(const std::vector<FileInfo>& infos, bool verbose)
{
    std::vector<QStringList> rows;
    for (const FileInfo& info : infos) {
        rows.push_back(columnsOf(info));
    }
    const QStringList lines = alignedLines(rows);
    QString text;
    for (std::size_t i = 0; i < infos.size(); ++i) {
        Details details;
        if (verbose) {
            addBuffer(details, infos[i].format, infos[i].buffer);
        }
        addStatistics(details, infos[i].statistics);
        text += lines[static_cast<qsizetype>(i)] + details.text();
    }
    return text;
}

} // namespace Qf
