// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/DataType.h"
#include "Core/Common/LinearScale.h"

#include <QByteArray>
#include <QString>

#include <memory>
#include <optional>
#include <vector>

namespace BufferApi::Formats
{

/// Consecutive pages of one size and type, a time series of images or volumes.
struct OmeImage
{
    E_DataType type = DT_UNKNOWN;
    unsigned int width = 0;
    unsigned int height = 0;
    unsigned int depth = 1;
    Zt::LinearScale scaleX{Zt::ScalePreset::X};
    Zt::LinearScale scaleY{Zt::ScalePreset::Y};
    Zt::LinearScale scaleZ{Zt::ScalePreset::Z};
    unsigned int firstPage = 0;
    unsigned int pages = 0;
};

/// Metres of one pixel along the axis of a scale; nothing when its unit is no length or its factor no size.
[[nodiscard]] std::optional<double> metresPerPixel(const Zt::LinearScale& scale);

/// A description of pages in ASCII characters, from which Fiji, napari and others take the size of a pixel,
/// with our own record among its annotations. Format: http://www.openmicroscopy.org/Schemas/OME/2016-06
[[nodiscard]] QByteArray omeXml(const std::vector<OmeImage>& images, const QString& name,
                                const QByteArray& record);

/// What a description tells of the axes of an image; nothing where it gives no length.
struct OmeScales
{
    std::optional<Zt::LinearScale> x;
    std::optional<Zt::LinearScale> y;
    std::optional<Zt::LinearScale> z;
};

/// The scales of each page by a description that another program wrote; null for pages of which it tells
/// nothing.
[[nodiscard]] std::vector<std::shared_ptr<const OmeScales>> scalesOfOmeXml(const QByteArray& xml,
                                                                           std::size_t pages);

/// Our own record; empty when the text has none.
[[nodiscard]] QByteArray recordOfOmeXml(const QByteArray& xml);

} // namespace BufferApi::Formats
