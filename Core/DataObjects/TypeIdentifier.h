// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/Export.h"

#include <QString>

/// The texts by which Variant::getTypeIdentifier() names the kind of an object: X(constant, text, kind).
///
/// Each class has one; the last two are kinds without a class.
#define DATAOBJECTS_TYPE_IDENTIFIERS(X)                                                                      \
    X(imageBuffer, "ImageBufferVariant", "ImageBuffer of any pixel type")                                    \
    X(rgbImageBuffer, "RGBImageBuffer", "RGBImageBuffer")                                                    \
    X(vectorBuffer, "VectorBuffer", "VectorBuffer")                                                          \
    X(particleField, "ParticleField", "ParticleField")                                                       \
    X(profileDataList, "ProfileDataList", "ProfileDataList")                                                 \
    X(xyPlotList, "XYPlotList", "XYPlotList")                                                                \
    X(scatterPlot, "ScatterPlot", "ScatterPlot")                                                             \
    X(dataLinesWithReference, "DataLinesWithReference", "DataLinesWithReference")                            \
    X(histogramData, "HistogramData", "HistogramData")                                                       \
    X(traceList, "TraceList", "TraceList")                                                                   \
    X(sparseVectorField, "SparseVectorField", "SparseVectorField")                                           \
    X(asset, "Asset", "Object3D")                                                                            \
    X(strainPlotData, "StrainPlotData", "a plot of strain gauges")                                           \
    X(invalid, "Invalid", "no kind at all")

namespace DataObjects::TypeIdentifier
{

#define DATAOBJECTS_DECLARE_IDENTIFIER(constant, text, kind)                                                 \
    DATAOBJECTS_DATAOBJECTS_EXPORT extern const QString constant;
DATAOBJECTS_TYPE_IDENTIFIERS(DATAOBJECTS_DECLARE_IDENTIFIER)
#undef DATAOBJECTS_DECLARE_IDENTIFIER

} // namespace DataObjects::TypeIdentifier
