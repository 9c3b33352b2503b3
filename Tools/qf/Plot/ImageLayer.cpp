// SPDX-License-Identifier: Apache-2.0
#include "Tools/qf/Plot/Plot.h"

#include <QPainter>

namespace Qf
{

void ImageLayer::paint(QPainter& painter, const PlotArea& area) const
{
    const QSize target = area.rectangle().size().toSize();
    const bool reduced = target.width() < m_image.width() || target.height() < m_image.height();
    const QImage scaled = m_image.scaled(target, Qt::IgnoreAspectRatio,
                                         reduced ? Qt::SmoothTransformation : Qt::FastTransformation);
    painter.drawImage(area.rectangle().topLeft(), scaled);
}

} // namespace Qf
