// SPDX-License-Identifier: Apache-2.0
#include "Tools/qf/PlaneText.h"

#include "Tools/qf/BufferSummary.h"
#include "Tools/qf/JsonText.h"
#include "Tools/qf/NumberText.h"
#include "Tools/qf/PlaneValues.h"
#include "Tools/qf/Session.h"

#include "Core/Buffer/NameText.h"
#include "Core/Common/Raise.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <bit>
#include <cmath>

namespace Qf
{

namespace
{

using BufferApi::RgbQuad;

static_assert(std::endian::native == std::endian::little, "raw values are written as they lie in memory");

/// Gathers small texts into writes of some size.
class Output
{
public:
    Output() = default;
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;
    ~Output() = default;

    void add(std::string_view text)
    {
        const std::size_t limit = 1U << 16U;
        m_text.append(text);
        if (m_text.size() >= limit) {
            flush();
        }
    }
    void addPadded(std::string_view text, std::size_t width)
    {
        m_text.append(width - std::min(width, text.size()), ' ');
        add(text);
    }
    void flush()
    {
        Session::stopIfRequested();
        Session::write(m_text);
        m_text.clear();
    }

private:
    std::string m_text;
};

template <typename T>
std::string jsonText(const T& value)
{
    if constexpr (std::is_same_v<T, RgbQuad>) {
        return std::string("[")
            .append(exactText(value.red))
            .append(",")
            .append(exactText(value.green))
            .append(",")
            .append(exactText(value.blue))
            .append("]");
    } else if constexpr (std::is_floating_point_v<T>) {
        return std::isfinite(value) ? exactText(value) : "null";
    } else {
        return exactText(value);
    }
}

/// What the object tells before its values, without the closing brace.
QByteArray jsonHead(const PlaneExcerpt& excerpt)
{
    const Zt::LinearScale& scale = excerpt.component.GetScale();
    const QJsonObject head{{QStringLiteral("file"), excerpt.path},
                           {QStringLiteral("frame"), static_cast<qint64>(excerpt.frame)},
                           {QStringLiteral("component"), BufferApi::nameToText(excerpt.component.GetName())},
                           {QStringLiteral("z"), static_cast<qint64>(excerpt.z)},
                           {QStringLiteral("type"), typeName(excerpt.plane.GetDataType())},
                           {QStringLiteral("x"), excerpt.region.x()},
                           {QStringLiteral("y"), excerpt.region.y()},
                           {QStringLiteral("width"), excerpt.region.width()},
                           {QStringLiteral("height"), excerpt.region.height()},
                           {QStringLiteral("scaled"), excerpt.scaled},
                           {QStringLiteral("factor"), scale.getFactor()},
                           {QStringLiteral("offset"), scale.getOffset()},
                           {QStringLiteral("unit"), scale.getUnit()}};
    QByteArray text = portableJson(QJsonDocument(head), QJsonDocument::Compact);
    text.chop(1);
    return text;
}

/// Writes the values of the region, which `valueAt(element)` takes from the plane's elements.
template <typename T, typename ValueAt>
class Writer
{
public:
    Writer(const PlaneExcerpt& excerpt, const ValueAt& valueAt)
        : m_excerpt(excerpt), m_region(excerpt.region),
          m_elements(static_cast<const T*>(excerpt.plane.GetData())), m_valueAt(valueAt)
    {
    }

    void write(PlaneForm form)
    {
        switch (form) {
        case PlaneForm::Text:
            writeText();
            break;
        case PlaneForm::Csv:
            writeCsv();
            break;
        case PlaneForm::Json:
            writeJson();
            break;
        case PlaneForm::Raw:
            writeRaw();
            break;
        }
        m_output.flush();
    }

private:
    template <typename Visitor>
    void forEachRow(const Visitor& visit) const
    {
        for (int y = m_region.y(); y < m_region.y() + m_region.height(); ++y) {
            visit(m_elements + static_cast<std::size_t>(y) * m_excerpt.plane.GetWidth() + m_region.x());
        }
    }

    [[nodiscard]] std::size_t widestText() const
    {
        std::size_t widest = 0;
        forEachRow([&](const T* row) {
            Session::stopIfRequested();
            for (int x = 0; x < m_region.width(); ++x) {
                widest = std::max(widest, exactText(m_valueAt(row[x])).size());
            }
        });
        return widest;
    }

    void writeText()
    {
        const std::size_t width = widestText();
        forEachRow([&](const T* row) {
            for (int x = 0; x < m_region.width(); ++x) {
                m_output.addPadded(exactText(m_valueAt(row[x])), x == 0 ? width : width + 1);
            }
            m_output.add("\n");
        });
    }

    void writeCsv()
    {
        forEachRow([&](const T* row) {
            for (int x = 0; x < m_region.width(); ++x) {
                m_output.add(x == 0 ? "" : ",");
                m_output.add(exactText(m_valueAt(row[x])));
            }
            m_output.add("\n");
        });
    }

    void writeJson()
    {
        m_output.add(jsonHead(m_excerpt).constData());
        const char* separator = ",\"values\":[\n[";
        forEachRow([&](const T* row) {
            m_output.add(separator);
            separator = ",\n[";
            for (int x = 0; x < m_region.width(); ++x) {
                m_output.add(x == 0 ? "" : ",");
                m_output.add(jsonText(m_valueAt(row[x])));
            }
            m_output.add("]");
        });
        m_output.add(m_region.height() == 0 ? ",\"values\":[]}\n" : "]}\n");
    }

    void writeRaw()
    {
        forEachRow([&](const T* row) {
            if constexpr (std::is_same_v<T, RgbQuad>) {
                for (int x = 0; x < m_region.width(); ++x) {
                    const char channels[] = {static_cast<char>(row[x].red), static_cast<char>(row[x].green),
                                             static_cast<char>(row[x].blue)};
                    m_output.add({channels, sizeof(channels)});
                }
            } else {
                m_output.add({reinterpret_cast<const char*>(row),
                              static_cast<std::size_t>(m_region.width()) * sizeof(T)});
            }
        });
    }

    const PlaneExcerpt& m_excerpt;
    QRect m_region;
    const T* m_elements;
    ValueAt m_valueAt;
    Output m_output;
};

} // namespace

void writePlane(const PlaneExcerpt& excerpt, PlaneForm form)
{
    const bool isColor = excerpt.plane.GetDataType() == BufferApi::DT_RGB;
    if (excerpt.scaled && (isColor || form == PlaneForm::Raw)) {
        RTE::raise(RTE::InvalidArgumentError(isColor
                                                 ? QStringLiteral("colours have no scale; leave out --scaled")
                                                 : QStringLiteral("bytes are not scaled; choose one of "
                                                                  "--scaled and --raw")));
    }
    visitPlane(excerpt.plane, [&](auto tag) {
        using T = typename decltype(tag)::type;
        if constexpr (!std::is_same_v<T, RgbQuad>) {
            if (excerpt.scaled) {
                const Zt::LinearScale scale = excerpt.component.GetScale();
                const auto physical = [&scale](T value) {
                    return scale.getScaled(static_cast<double>(value));
                };
                Writer<T, decltype(physical)>(excerpt, physical).write(form);
                return;
            }
        }
        const auto stored = [](const T& value) { return value; };
        Writer<T, decltype(stored)>(excerpt, stored).write(form);
    });
}

} // namespace Qf
