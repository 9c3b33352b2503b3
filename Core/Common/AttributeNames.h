// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/Export.h"

#include <QString>

#include <string>

/// The attribute names that several libraries share: X(constant, name as stored, meaning).
///
/// The names are stored in files and never change. The dot separates a group from its members, and removing a
/// group removes its members: no name is the group of another. All names are Latin-1.
#define DATAOBJECTS_ATTRIBUTE_NAMES(X)                                                                       \
    X(acqAttributesTransformed, "Acq.AttributesTransformed",                                                 \
      "the frame's attributes were already rewritten by the transformers")                                   \
    X(acqCycle, "Acq.Cycle", "number of the cycle of a periodic process")                                    \
    X(acqCycleLength, "Acq.CycleLength", "duration of a cycle, text with number and unit")                   \
    X(acqPhase, "Acq.Phase", "phase within the cycle, text with number and unit")                            \
    X(acqTime, "Acq.Time", "acquisition time in microseconds, list of double or scalar")                     \
    X(acqTimeDeprecated, "Acq.TimeText", "older form of the acquisition time, text with number and unit")    \
    X(acqTimeSeries, "Acq.TimeSeries", "time of the series in microseconds, text with number and unit")      \
    X(cameraConversionFactor, "Camera.ConversionFactor", "counts per electron")                              \
    X(cameraLabel, "Camera.Label", "label of the camera for the user")                                       \
    X(cameraMaxIntensity, "Camera.MaxIntensity", "largest intensity of the sensor in counts")                \
    X(cameraName, "Camera.Name", "name of the camera, which holds its number")                               \
    X(cameraNoise, "Camera.Noise", "read-out noise in electrons")                                            \
    X(cameraPixelSize, "Camera.PixelSize", "text that holds the pixel size in micrometres")                  \
    X(cameraSpectrum, "Camera.Spectrum", "spectral range of the sensor")                                     \
    X(frameDt, "Frame.Dt", "time between the two frames of a double frame, text with number and unit")       \
    X(headerMinimalVersion, "Header.MinimalVersion", "least version that reads the data")                    \
    X(loadSetType, "Load.SetType", "kind of the set that the data were loaded from")                         \
    X(preferredDisplayMode, "PreferredDisplayMode", "how a viewer shows the data at first")                  \
    X(rgbFrame, "RGBFrame", "phase of the colour filter pattern, 0 for a monochrome frame")                  \
    X(strainPlot, "Plot.Strain", "present in a plot of strain gauges")                                       \
    X(time, "Time", "older time text")                                                                       \
    X(timestamp, "Timestamp", "time of the recording, ISO 8601")                                             \
    X(title, "Title", "title for the user")                                                                  \
    X(viewPlotMode, "View.PlotMode", "kind of plot: 0 profile, 1 or 2 plot over an axis")                    \
    X(viewWinType, "View.WindowType", "number of the viewer that shows the data")

namespace Attr
{

/// The name of one attribute, usable wherever a `std::string` is read.
class Name
{
public:
    explicit Name(const char* text) : m_text(text) {}

    operator const std::string&() const noexcept { return m_text; }
    [[nodiscard]] const std::string& toStdString() const noexcept { return m_text; }
    [[nodiscard]] QString toQString() const
    {
        return QString::fromLatin1(m_text.data(), static_cast<qsizetype>(m_text.size()));
    }

private:
    std::string m_text;
};

#define DATAOBJECTS_DECLARE_NAME(constant, text, meaning)                                                    \
    DATAOBJECTS_COMMON_EXPORT extern const Name constant;
DATAOBJECTS_ATTRIBUTE_NAMES(DATAOBJECTS_DECLARE_NAME)
#undef DATAOBJECTS_DECLARE_NAME

} // namespace Attr
