// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Tools/qf/Plot/Plot.h"

namespace Qf
{

/// Draws a plot: data in its own aspect ratio, axes with ticks, title and colour bar.
///
/// \param width of the picture in pixels, at most: data that would be enlarged by a broken factor makes it
///              narrower
/// Needs a QGuiApplication for its fonts.
[[nodiscard]] QImage paintPlot(const Plot& plot, int width);

} // namespace Qf
