// SPDX-License-Identifier: Apache-2.0
#include "Tools/qf/Plot/FramePlot.h"

#include "Tools/qf/Mosaic.h"
#include "Tools/qf/PlaneChoice.h"
#include "Tools/qf/PlaneValues.h"

#include "Core/Common/Raise.h"

#include <algorithm>
#include <cmath>

namespace Qf
{

namespace
{

using BufferApi::I_Component;
using BufferApi::I_Frame;
using BufferApi::I_PlaneBase;

QString axisLabel(const Zt::LinearScale& scale, const QString& fallback)
{
    const QString name = scale.getDescription().isEmpty() ? fallback : scale.getDescription();
    return scale.getUnit().isEmpty() ? name : QStringLiteral("%1 [%2]").arg(name, scale.getUnit());
}

/// Pixel centres lie at whole numbers, so that the data begins half a pixel before the first.
PlotAxis axisOf(const Zt::LinearScale& scale, int first, int count, const QString& fallback)
{
    const double from = first - 0.5;
    const double to = from + count;
    if (scale.getFactor() == 0.0 || !std::isfinite(scale.getFactor()) || !std::isfinite(scale.getOffset())) {
        return {from, to, fallback + QStringLiteral(" [pixel]")};
    }
    return {scale.getScaled(from), scale.getScaled(to), axisLabel(scale, fallback)};
}

/// Pixels are drawn square unless both axes have the same unit and tell otherwise.
double pixelAspect(const Zt::LinearScale& x, const Zt::LinearScale& y)
{
    const double aspect = std::abs(y.getFactor() / x.getFactor());
    const bool comparable = x.getUnit() == y.getUnit() && std::isfinite(aspect) && aspect > 0.0;
    return comparable ? std::clamp(aspect, 1e-3, 1e3) : 1.0;
}

/// Sets what the frame's mask rejects to no number.
void blankInvalid(std::vector<double>& values, const I_Frame& frame, unsigned int z)
{
    const I_Component* mask = frame.HasMask() ? frame.GetComponent(I_Frame::COMPONENT_MASK) : nullptr;
    const I_PlaneBase* plane = mask != nullptr ? mask->GetPlane(z) : nullptr;
    if (plane == nullptr ||
        plane->GetWidth() * static_cast<std::size_t>(plane->GetHeight()) != values.size()) {
        return;
    }
    const auto* valid = static_cast<const unsigned char*>(plane->GetData());
    for (std::size_t i = 0; i < values.size(); ++i) {
        values[i] = valid[i] != 0 ? values[i] : std::nan("");
    }
}

std::vector<double> cut(const std::vector<double>& values, unsigned int width, const QRect& region)
{
    std::vector<double> result;
    for (int y = region.top(); y <= region.bottom(); ++y) {
        const auto row = values.begin() + static_cast<std::ptrdiff_t>(y) * width + region.left();
        result.insert(result.end(), row, row + region.width());
    }
    return result;
}

QImage colored(const std::vector<double>& values, QSize size, const ColorMap& map, const ValueRange& range)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    const double factor = 1.0 / (range.high - range.low);
    const double* value = values.data();
    for (int y = 0; y < size.height(); ++y) {
        auto* row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < size.width(); ++x, ++value) {
            row[x] = std::isnan(*value) ? qRgba(0, 0, 0, 0) : map.color((*value - range.low) * factor);
        }
    }
    return image;
}

QImage rgbImage(const I_PlaneBase& plane, const QRect& region)
{
    const std::vector<unsigned char> channels = rgbChannels(plane);
    const int width = static_cast<int>(plane.GetWidth());
    const QImage image(channels.data(), width, static_cast<int>(plane.GetHeight()), qsizetype{3} * width,
                       QImage::Format_RGB888);
    return image.copy(region);
}

QString colorMapFor(const FramePlotOptions& options, BufferApi::E_DataType type)
{
    if (!options.colorMap.isEmpty()) {
        return options.colorMap;
    }
    const bool floating = type == BufferApi::DT_FLOAT || type == BufferApi::DT_DOUBLE;
    return floating ? QStringLiteral("viridis") : QStringLiteral("gray");
}

ValueRange rangeFor(const FramePlotOptions& options, const ColorMap& map, const std::vector<double>& values)
{
    if (options.range) {
        return *options.range;
    }
    const ValueRange range = percentileRange(values);
    return map.isDiverging() ? symmetric(range) : range;
}

void addValues(Plot& plot, const I_Frame& frame, const I_Component& component, const QRect& region,
               const FramePlotOptions& options)
{
    const I_PlaneBase& plane = *component.GetPlane(options.z);
    const Zt::LinearScale& scale = component.GetScale();
    std::vector<double> values = planeValues(plane);
    for (double& value : values) {
        value = scale.getScaled(value);
    }
    if (component.GetName() != I_Frame::COMPONENT_MASK) {
        blankInvalid(values, frame, options.z);
    }
    values = cut(values, plane.GetWidth(), region);
    const ColorMap map(colorMapFor(options, plane.GetDataType()));
    const ValueRange range = rangeFor(options, map, values);
    plot.layers.push_back(
        std::make_unique<ImageLayer>(colored(values, {plot.columns, plot.rows}, map, range)));
    plot.colorBar = PlotColorBar{map, range.low, range.high,
                                 axisLabel(scale, QString::fromStdString(component.GetName()))};
}

bool showsColours(const I_Frame& frame, const I_Component& component, const FramePlotOptions& options)
{
    return options.colorMap.isEmpty() && isMosaic(frame) &&
           component.GetName() == BufferApi::I_FrameImage::COMPONENT_PIXEL;
}

} // namespace

Plot plotOfFrame(const I_Frame& frame, const FramePlotOptions& options)
{
    const I_Component& component = componentOf(frame, options.component);
    const I_PlaneBase& plane = planeOf(component, options.z);
    if (pixelCount(plane) == 0) {
        RTE::raise(RTE::InvalidArgumentError(QStringLiteral("the plane is empty, there is nothing to draw")));
    }
    const QRect region = regionOf(plane, options.region);
    Plot plot;
    plot.title = options.title;
    plot.columns = region.width();
    plot.rows = region.height();
    plot.x = axisOf(frame.GetScaleX(), region.x(), region.width(), QStringLiteral("x"));
    plot.y = axisOf(frame.GetScaleY(), region.y(), region.height(), QStringLiteral("y"));
    plot.pixelAspect = pixelAspect(frame.GetScaleX(), frame.GetScaleY());
    if (plane.GetDataType() == BufferApi::DT_RGB) {
        plot.layers.push_back(std::make_unique<ImageLayer>(rgbImage(plane, region)));
    } else if (showsColours(frame, component, options)) {
        const auto& image = dynamic_cast<const BufferApi::I_FrameImage&>(frame);
        plot.layers.push_back(
            std::make_unique<ImageLayer>(mosaicImage(image, options.z, options.range).copy(region)));
    } else {
        addValues(plot, frame, component, region, options);
    }
    return plot;
}

} // namespace Qf
