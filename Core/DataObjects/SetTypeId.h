// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/Export.h"

#include <QString>

/// What a buffer holds, in the words of its attribute `Attr::loadSetType`: X(constant, text).
///
/// The texts are stored in files and never change. What they mean beyond their names is the application's.
#define DATAOBJECTS_SET_TYPE_IDS(X)                                                                          \
    X(calibration, "SET_TYPE_ID_CALIBRATION")                                                                \
    X(flameFront, "SET_TYPE_ID_FLAMEFRONT")                                                                  \
    X(folder, "SET_TYPE_ID_FOLDER")                                                                          \
    X(genericCalibration, "GenericCalibration")                                                              \
    X(image, "SET_TYPE_ID_IMAGE")                                                                            \
    X(intensityCalibration, "IntensityCalibration")                                                          \
    X(activeIntensityCalibration, "ActiveIntensityCalibration")                                              \
    X(intensityCalibrationHistory, "IntensityCalibrationHistory")                                            \
    X(nullSet, "NullSet")                                                                                    \
    X(object3D, "Object3D")                                                                                  \
    X(object3DFolder, "Object3DFolder")                                                                      \
    X(opticalTransferFunction, "OpticalTransferFunctionSet")                                                 \
    X(dovrelShadow, "DovrelShadowSet")                                                                       \
    X(particleField, "ParticleField")                                                                        \
    X(perspectiveCalibration, "PerspectiveCalibrationSet")                                                   \
    X(plot, "SET_TYPE_ID_PLOT")                                                                              \
    X(podImage, "PODImage")                                                                                  \
    X(podVector, "PODVector")                                                                                \
    X(properties, "SET_TYPE_ID_PROPERTIES")                                                                  \
    X(propertiesCalibrationImage, "PropertiesCalibrationImageSet")                                           \
    X(propertiesCalibrationRecording, "PropertiesCalibrationRecordingSet")                                   \
    X(ramanDBView, "RamanDBView")                                                                            \
    X(ramanProcView, "RamanProcView")                                                                        \
    X(ramanRFView, "RamanRFView")                                                                            \
    X(ramanTMView, "RamanTMView")                                                                            \
    X(recording, "SET_TYPE_ID_RECORDING")                                                                    \
    X(rgb, "SET_TYPE_ID_RGB")                                                                                \
    X(scatterPlot, "SET_TYPE_ID_SCATTER_PLOT")                                                               \
    X(sprayGeometry, "SprayGeoSet")                                                                          \
    X(sprayQC, "SprayQC")                                                                                    \
    X(strainPlot, "SET_TYPE_ID_STRAIN_PLOT")                                                                 \
    X(surface, "SET_TYPE_ID_SURFACE")                                                                        \
    X(trashCan, "SET_TYPE_ID_TRASHCAN")                                                                      \
    X(dovrelTrendGraph, "DovrelTrendGraph")                                                                  \
    X(vector, "SET_TYPE_ID_VECTOR")                                                                          \
    X(volumeSelfCalibrationResult, "VolumeSelfCalibrationResultSet")                                         \
    X(xyPlot, "SET_TYPE_ID_XY_PLOT")

namespace DataObjects::SetTypeId
{

#define DATAOBJECTS_DECLARE_SET_TYPE(constant, text)                                                         \
    DATAOBJECTS_DATAOBJECTS_EXPORT extern const QString constant;
DATAOBJECTS_SET_TYPE_IDS(DATAOBJECTS_DECLARE_SET_TYPE)
#undef DATAOBJECTS_DECLARE_SET_TYPE

} // namespace DataObjects::SetTypeId
