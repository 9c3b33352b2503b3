// SPDX-License-Identifier: Apache-2.0
#include "Tools/qf/BufferSummary.h"

#include "Tools/qf/Mosaic.h"
#include "Tools/qf/PlaneValues.h"
#include "Tools/qf/Session.h"

#include "Core/Buffer/I_FrameVector.h"
#include "Core/Buffer/NameText.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace Qf
{

namespace
{

using BufferApi::I_Buffer;
using BufferApi::I_Component;
using BufferApi::I_Frame;
using BufferApi::I_FrameVector;
using BufferApi::I_PlaneBase;

AttributeSummary summarize(const BufferApi::I_AttributeBase& attribute)
{
    AttributeSummary summary;
    if (const auto* text = dynamic_cast<const BufferApi::I_Attribute<QString>*>(&attribute)) {
        summary.text = text->GetValue();
    } else if (const auto* list = dynamic_cast<const BufferApi::I_AttributePlane*>(&attribute)) {
        summary.isText = false;
        if (const I_PlaneBase* plane = list->GetPlane()) {
            summary.numbers = planeValues(*plane);
        }
    }
    return summary;
}

AttributeSummaries summarize(const BufferApi::AttributeMap& attributes)
{
    AttributeSummaries summaries;
    for (const auto& [name, attribute] : attributes) {
        summaries.emplace(name, summarize(*attribute));
    }
    return summaries;
}

FrameStructure structureOf(const I_Frame& frame)
{
    FrameStructure structure{QStringLiteral("image"),
                             frame.GetDataType(),
                             frame.GetWidth(),
                             frame.GetHeight(),
                             frame.GetDepth(),
                             0,
                             {},
                             {},
                             {}};
    if (isMosaic(frame)) {
        structure.kind = QStringLiteral("mosaic");
    }
    if (const auto* vectors = dynamic_cast<const I_FrameVector*>(&frame)) {
        structure.kind = QStringLiteral("vector");
        structure.choices = vectors->GetChoiceCount();
        structure.grid = {vectors->GetGridX(), vectors->GetGridY(), vectors->GetGridZ()};
    }
    structure.scales = {frame.GetScaleX(), frame.GetScaleY(), frame.GetScaleZ(), frame.GetScaleI()};
    for (unsigned int i = 0; i < frame.GetComponentCount(); ++i) {
        const I_Component& component = *frame.GetComponent(i);
        structure.components.push_back({BufferApi::nameToText(component.GetName()), component.GetDataType(),
                                        component.GetPlaneCount(), component.GetScale()});
    }
    return structure;
}

/// Adds the values of one plane. Mean and deviation of plane and earlier ones are merged after T. F. Chan and
/// others, Updating formulae and a pairwise algorithm for computing sample variances (1979).
class Accumulator
{
public:
    void add(const std::vector<double>& values, const Zt::LinearScale& scale)
    {
        double sum = 0.0;
        unsigned long long count = 0;
        for (const double value : values) {
            const double scaled = scale.getScaled(value);
            if (std::isfinite(scaled)) {
                m_minimum = std::min(m_minimum, scaled);
                m_maximum = std::max(m_maximum, scaled);
                sum += scaled;
                ++count;
            }
        }
        m_notFinite += values.size() - count;
        if (count > 0) {
            merge(values, scale, sum / static_cast<double>(count), count);
        }
    }

    void finish(Statistics& result) const
    {
        const double none = std::numeric_limits<double>::quiet_NaN();
        result.count = m_count;
        result.notFinite = m_notFinite;
        result.minimum = m_count > 0 ? m_minimum : none;
        result.maximum = m_count > 0 ? m_maximum : none;
        result.mean = m_count > 0 ? m_mean : none;
        result.deviation = m_count > 0 ? std::sqrt(m_squares / static_cast<double>(m_count)) : none;
    }

private:
    void merge(const std::vector<double>& values, const Zt::LinearScale& scale, double mean,
               unsigned long long count)
    {
        double squares = 0.0;
        for (const double value : values) {
            const double difference = scale.getScaled(value) - mean;
            squares += std::isfinite(difference) ? difference * difference : 0.0;
        }
        const auto before = static_cast<double>(m_count);
        const auto added = static_cast<double>(count);
        const double shift = mean - m_mean;
        m_mean += shift * added / (before + added);
        m_squares += squares + shift * shift * before * added / (before + added);
        m_count += count;
    }

    unsigned long long m_count = 0;
    unsigned long long m_notFinite = 0;
    double m_minimum = std::numeric_limits<double>::infinity();
    double m_maximum = -std::numeric_limits<double>::infinity();
    double m_mean = 0.0;
    double m_squares = 0.0;
};

} // namespace

BufferSummary summarize(const I_Buffer& buffer, const std::vector<unsigned int>& numbers)
{
    BufferSummary summary{buffer.GetName(), buffer.GetFrameCount(), summarize(buffer.GetAttributeList()), {}};
    for (const unsigned int number : numbers) {
        const I_Frame& frame = *buffer.GetFrame(number);
        FrameStructure structure = structureOf(frame);
        if (summary.runs.empty() || !(summary.runs.back().structure == structure)) {
            summary.runs.push_back({std::move(structure), {}, {}});
        }
        summary.runs.back().numbers.push_back(number);
        summary.runs.back().attributes.push_back(summarize(frame.GetAttributeList()));
    }
    return summary;
}

std::vector<Statistics> statistics(unsigned int number, const I_Frame& frame)
{
    std::vector<Statistics> results;
    for (unsigned int i = 0; i < frame.GetComponentCount(); ++i) {
        const I_Component& component = *frame.GetComponent(i);
        Accumulator accumulator;
        for (unsigned int z = 0; z < component.GetPlaneCount(); ++z) {
            Session::stopIfRequested();
            accumulator.add(planeValues(*component.GetPlane(z)), component.GetScale());
        }
        Statistics& result = results.emplace_back();
        result.frame = number;
        result.component = BufferApi::nameToText(component.GetName());
        result.unit = component.GetScale().getUnit();
        accumulator.finish(result);
    }
    return results;
}

void PlanesHash::add(const I_Frame& frame)
{
    forEachPlane(
        frame, [this](const I_Component& /*component*/, unsigned int /*z*/, const I_PlaneBase& plane) {
            Session::stopIfRequested();
            if (plane.GetDataType() == BufferApi::DT_RGB) {
                const std::vector<unsigned char> channels = rgbChannels(plane);
                m_hash.addData(QByteArrayView(channels.data(), static_cast<qsizetype>(channels.size())));
                return;
            }
            const auto bytes = pixelCount(plane) * BufferApi::GetDataTypeSize(plane.GetDataType());
            m_hash.addData(
                QByteArrayView(static_cast<const char*>(plane.GetData()), static_cast<qsizetype>(bytes)));
        });
}

QString PlanesHash::text() const
{
    return QString::fromLatin1(m_hash.result().toHex());
}

QString typeName(BufferApi::E_DataType type)
{
    if (!PixelTypes::contains(type)) {
        return type == BufferApi::DT_RGB ? QStringLiteral("rgb") : QStringLiteral("unknown");
    }
    return PixelTypes::visit(
        type,
        [](auto tag) {
            using T = typename decltype(tag)::type;
            const char* family = std::is_floating_point_v<T> ? "float" : std::is_signed_v<T> ? "int" : "uint";
            return QLatin1String(family) + QString::number(8 * sizeof(T));
        },
        [] { return RTE::LogicError(QStringLiteral("no pixel type")); });
}

} // namespace Qf
