// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Tools/qf/Plot/ColorMap.h"

#include <QImage>
#include <QRectF>
#include <QString>

#include <memory>
#include <optional>
#include <vector>

class QPainter;

namespace Qf
{

/// An axis by its values at the two edges of the data: left and right, or top and bottom.
struct PlotAxis
{
    double from = 0.0;
    double to = 1.0;
    QString label;
};

/// Where the data lies in the picture: axis values to picture pixels.
class PlotArea
{
public:
    PlotArea(const QRectF& rectangle, const PlotAxis& x, const PlotAxis& y)
        : m_rectangle(rectangle), m_x(x), m_y(y)
    {
    }

    [[nodiscard]] const QRectF& rectangle() const noexcept { return m_rectangle; }
    [[nodiscard]] double toPixelX(double value) const
    {
        return m_rectangle.left() + m_rectangle.width() * (value - m_x.from) / (m_x.to - m_x.from);
    }
    [[nodiscard]] double toPixelY(double value) const
    {
        return m_rectangle.top() + m_rectangle.height() * (value - m_y.from) / (m_y.to - m_y.from);
    }

private:
    QRectF m_rectangle;
    PlotAxis m_x;
    PlotAxis m_y;
};

/// Something drawn inside the axes; later layers lie above earlier ones.
class I_PlotLayer
{
public:
    I_PlotLayer() = default;
    I_PlotLayer(const I_PlotLayer&) = delete;
    I_PlotLayer& operator=(const I_PlotLayer&) = delete;
    virtual ~I_PlotLayer() = default;

    virtual void paint(QPainter& painter, const PlotArea& area) const = 0;
};

/// Pixels that fill the axes; transparent ones show the background.
class ImageLayer : public I_PlotLayer
{
public:
    explicit ImageLayer(QImage image) : m_image(std::move(image)) {}
    void paint(QPainter& painter, const PlotArea& area) const override;

private:
    QImage m_image;
};

/// The values of the colours, drawn beside the axes.
struct PlotColorBar
{
    ColorMap map;
    double low = 0.0;
    double high = 1.0;
    QString label;
};

/// Everything that a picture shows.
struct Plot
{
    QString title;
    PlotAxis x;
    PlotAxis y;
    /// Columns and rows of the data; images are enlarged by whole factors only.
    int columns = 1;
    int rows = 1;
    /// Height of a data pixel relative to its width.
    double pixelAspect = 1.0;
    std::vector<std::unique_ptr<I_PlotLayer>> layers;
    std::optional<PlotColorBar> colorBar;
};

} // namespace Qf
