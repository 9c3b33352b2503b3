// SPDX-License-Identifier: Apache-2.0
#include "Tools/qf/Plot/PlotPainter.h"

#include "Tools/qf/Plot/AxisTicks.h"

#include <QFont>
#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace Qf
{

namespace
{

/// Distances in picture pixels that follow from the picture's width.
struct Style
{
    explicit Style(int width)
        : fontSize(std::clamp(width / 62, 11, 28)), padding(0.7 * fontSize), tick(0.4 * fontSize),
          gap(0.35 * fontSize), barWidth(1.2 * fontSize), line(std::max(1.0, fontSize / 14.0))
    {
        font.setFamilies({QStringLiteral("DejaVu Sans")});
        font.setPixelSize(fontSize);
        titleFont = font;
        titleFont.setPixelSize(fontSize * 8 / 7);
    }

    int fontSize;
    double padding;
    double tick;
    double gap;
    double barWidth;
    double line;
    QFont font;
    QFont titleFont;
};

double widestLabel(const std::vector<Tick>& ticks, const QFontMetricsF& metrics)
{
    double widest = 0.0;
    for (const Tick& tick : ticks) {
        widest = std::max(widest, metrics.horizontalAdvance(tick.label));
    }
    return widest;
}

/// As many ticks as find room beside one another.
std::vector<Tick> ticksAcross(const PlotAxis& axis, double length, const QFontMetricsF& metrics)
{
    for (int count = 11; count > 2; --count) {
        std::vector<Tick> ticks = axisTicks(axis.from, axis.to, count);
        const double room = length / static_cast<double>(std::max<std::size_t>(ticks.size(), 1));
        if (widestLabel(ticks, metrics) + 1.5 * metrics.averageCharWidth() < room) {
            return ticks;
        }
    }
    return axisTicks(axis.from, axis.to, 2);
}

std::vector<Tick> ticksAlong(double from, double to, double height, const Style& style)
{
    const int count = std::clamp(static_cast<int>(height / (2.4 * style.fontSize)), 3, 11);
    std::vector<Tick> ticks = axisTicks(from, to, count);
    return ticks.size() < 2 ? axisTicks(from, to, count + 1) : ticks;
}

/// A size in whole picture pixels that keeps the data's aspect ratio; only where that would leave a thread it
/// is stretched.
QSizeF dataSize(const Plot& plot, double width)
{
    const double smallest = 80.0;
    const double maximumHeight = 1.5 * width;
    const double aspect = plot.rows * plot.pixelAspect / plot.columns;
    double dataWidth = std::min(width, maximumHeight / aspect);
    if (dataWidth >= plot.columns) {
        dataWidth = std::floor(dataWidth / plot.columns) * plot.columns;
    }
    const double dataHeight = std::min(dataWidth * aspect, maximumHeight);
    return {std::max(smallest, std::round(dataWidth)), std::max(smallest, std::round(dataHeight))};
}

/// Measures first, so that no label is cut off, then draws.
class PlotPainter
{
public:
    PlotPainter(const Plot& plot, int width) : m_plot(plot), m_style(width), m_metrics(m_style.font)
    {
        arrange(width);
    }

    [[nodiscard]] QImage paint() const
    {
        QImage image(m_size, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
        painter.setFont(m_style.font);
        paintData(painter);
        paintAxisX(painter);
        paintAxisY(painter);
        paintTitle(painter);
        paintColorBar(painter);
        return image;
    }

private:
    [[nodiscard]] double besideTicks(const std::vector<Tick>& ticks) const
    {
        return m_style.tick + m_style.gap + widestLabel(ticks, m_metrics) + m_style.gap + m_metrics.height();
    }

    void arrange(int width)
    {
        const Style& style = m_style;
        const double estimate = dataSize(m_plot, 0.8 * width).height();
        m_ticksY = ticksAlong(m_plot.y.from, m_plot.y.to, estimate, style);
        const double left = std::ceil(style.padding + besideTicks(m_ticksY));
        double right = 2.0 * style.padding;
        if (m_plot.colorBar) {
            m_ticksBar = ticksAlong(m_plot.colorBar->low, m_plot.colorBar->high, estimate, style);
            right += style.padding + style.barWidth + besideTicks(m_ticksBar);
        }
        const QSizeF data = dataSize(m_plot, std::max(60.0, std::floor(width - left - right)));
        m_ticksX = ticksAcross(m_plot.x, data.width(), m_metrics);
        m_data = QRectF(QPointF(left, topMargin(data.height())), data);
        const double rightmost = std::max(m_data.right() + right, labelCentreX() + halfWidth(m_plot.x.label));
        const double bottom = std::max(bottomMargin(), overhang(data.height()));
        m_size = QSize(static_cast<int>(std::ceil(rightmost)),
                       static_cast<int>(std::ceil(m_data.bottom() + bottom)));
    }

    [[nodiscard]] double halfWidth(const QString& label) const
    {
        return m_metrics.horizontalAdvance(label) / 2.0 + m_style.padding;
    }

    /// Below the middle of the data unless the label would begin outside the picture.
    [[nodiscard]] double labelCentreX() const
    {
        return std::max(m_data.center().x(), halfWidth(m_plot.x.label));
    }

    /// How far the upright labels reach beyond the data at both ends.
    [[nodiscard]] double overhang(double dataHeight) const
    {
        const double bar = m_plot.colorBar ? halfWidth(m_plot.colorBar->label) : 0.0;
        return std::max(halfWidth(m_plot.y.label), bar) - dataHeight / 2.0;
    }

    [[nodiscard]] double topMargin(double dataHeight) const
    {
        const double title = m_plot.title.isEmpty()
                                 ? m_metrics.height() / 2.0
                                 : QFontMetricsF(m_style.titleFont).height() + m_style.padding;
        return std::ceil(std::max(m_style.padding + title, overhang(dataHeight)));
    }

    [[nodiscard]] double bottomMargin() const
    {
        return m_style.tick + 2.0 * m_style.gap + 2.0 * m_metrics.height() + m_style.padding;
    }

    void paintData(QPainter& painter) const
    {
        painter.fillRect(m_data, QColor(0xd8, 0xdc, 0xe4));
        const PlotArea area(m_data, m_plot.x, m_plot.y);
        painter.save();
        painter.setClipRect(m_data);
        for (const auto& layer : m_plot.layers) {
            layer->paint(painter, area);
        }
        painter.restore();
        paintFrame(painter, m_data);
    }

    void paintFrame(QPainter& painter, const QRectF& rectangle) const
    {
        const double half = m_style.line / 2.0;
        painter.setPen(QPen(Qt::black, m_style.line, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
        painter.drawRect(rectangle.adjusted(-half, -half, half, half));
    }

    void paintAxisX(QPainter& painter) const
    {
        const PlotArea area(m_data, m_plot.x, m_plot.y);
        const double below = m_data.bottom() + m_style.tick + m_style.gap;
        for (const Tick& tick : m_ticksX) {
            const double x = area.toPixelX(tick.value);
            painter.drawLine(QPointF(x, m_data.bottom()), QPointF(x, m_data.bottom() + m_style.tick));
            drawText(painter, {x, below + m_metrics.height() / 2.0}, tick.label);
        }
        drawText(painter, {labelCentreX(), below + m_style.gap + 1.5 * m_metrics.height()}, m_plot.x.label);
    }

    void paintAxisY(QPainter& painter) const
    {
        const PlotArea area(m_data, m_plot.x, m_plot.y);
        for (const Tick& tick : m_ticksY) {
            const double y = area.toPixelY(tick.value);
            painter.drawLine(QPointF(m_data.left() - m_style.tick, y), QPointF(m_data.left(), y));
            const double width = m_metrics.horizontalAdvance(tick.label);
            drawText(painter, {m_data.left() - m_style.tick - m_style.gap - width / 2.0, y}, tick.label);
        }
        drawUpright(painter, {m_style.padding + m_metrics.height() / 2.0, m_data.center().y()},
                    m_plot.y.label);
    }

    void paintTitle(QPainter& painter) const
    {
        painter.setFont(m_style.titleFont);
        const QFontMetricsF metrics(m_style.titleFont);
        const double middle = m_size.width() / 2.0;
        const double room = m_size.width() - 2.0 * m_style.padding;
        const QString text = metrics.elidedText(m_plot.title, Qt::ElideMiddle, room);
        const double half = metrics.horizontalAdvance(text) / 2.0;
        const double x = std::clamp(m_data.center().x(), std::min(middle, m_style.padding + half),
                                    std::max(middle, m_size.width() - m_style.padding - half));
        drawText(painter, {x, m_style.padding + metrics.height() / 2.0}, text);
        painter.setFont(m_style.font);
    }

    void paintColorBar(QPainter& painter) const
    {
        if (!m_plot.colorBar) {
            return;
        }
        const PlotColorBar& bar = *m_plot.colorBar;
        const QRectF area(m_data.right() + 2.0 * m_style.padding, m_data.top(), m_style.barWidth,
                          m_data.height());
        const int steps = static_cast<int>(area.height());
        for (int i = 0; i < steps; ++i) {
            const double share = steps > 1 ? 1.0 - static_cast<double>(i) / (steps - 1) : 0.5;
            painter.fillRect(QRectF(area.left(), area.top() + i, area.width(), 1.0),
                             QColor(bar.map.color(share)));
        }
        paintFrame(painter, area);
        const double labels = area.right() + m_style.tick + m_style.gap;
        for (const Tick& tick : m_ticksBar) {
            const double y = area.bottom() - area.height() * (tick.value - bar.low) / (bar.high - bar.low);
            painter.drawLine(QPointF(area.right(), y), QPointF(area.right() + m_style.tick, y));
            drawText(painter, {labels + m_metrics.horizontalAdvance(tick.label) / 2.0, y}, tick.label);
        }
        const double x = labels + widestLabel(m_ticksBar, m_metrics) + m_style.gap + m_metrics.height() / 2.0;
        drawUpright(painter, {x, area.center().y()}, bar.label);
    }

    /// Centred; in a box wide enough that rounding of the text's width never cuts a letter.
    static void drawText(QPainter& painter, const QPointF& centre, const QString& text)
    {
        painter.drawText(QRectF(centre.x() - 5000.0, centre.y() - 500.0, 10000.0, 1000.0),
                         Qt::AlignCenter | Qt::TextDontClip, text);
    }

    static void drawUpright(QPainter& painter, const QPointF& centre, const QString& text)
    {
        painter.save();
        painter.translate(centre);
        painter.rotate(-90.0);
        drawText(painter, {0.0, 0.0}, text);
        painter.restore();
    }

    const Plot& m_plot;
    Style m_style;
    QFontMetricsF m_metrics;
    std::vector<Tick> m_ticksX;
    std::vector<Tick> m_ticksY;
    std::vector<Tick> m_ticksBar;
    QRectF m_data;
    QSize m_size;
};

} // namespace

QImage paintPlot(const Plot& plot, int width)
{
    return PlotPainter(plot, width).paint();
}

} // namespace Qf
