// SPDX-License-Identifier: Apache-2.0
/// \file
/// The records of measuring devices in the attributes of an image. RTE::DeviceData lists the names of their
/// attributes. Values are unscaled unless a function says otherwise.
#pragma once

#include "Core/Buffer/I_Buffer.h"
#include "Core/Common/DeviceData.h"
#include "Core/DataObjects/AttributesContainer.h"

namespace DataObjects
{

/// \name Lists of records
/// In their order, up to the number that is stored; above 1000 no further than the first record without a
/// name.
/// @{

/// The number that is stored; 0 if there is none or the text is no number.
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT int GetNumberOfDevData(const Attributes& attributes);
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT int GetNumberOfMeasuredDevData(const Attributes& attributes);

[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::vector<RTE::DeviceDataT<double>>
GetAllDevData(const Attributes& attributes);
/// Those of analog inputs.
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::vector<RTE::DeviceDataT<double>>
GetAdcDevDataList(const Attributes& attributes);
/// Those of analog inputs that were measured.
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::vector<RTE::DeviceDataT<double>>
GetMeasuredAdcDevDataList(const Attributes& attributes);

[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::vector<RTE::DeviceDataWithRangeT<double>>
GetAllDevDataWithRange(const Attributes& attributes);
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::vector<RTE::DeviceDataWithRangeT<double>>
GetAdcDevDataWithRangeList(const Attributes& attributes);
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::vector<RTE::DeviceDataWithRangeT<double>>
GetMeasuredAdcDevDataWithRangeList(const Attributes& attributes);
/// @}

/// \name One record
/// The first that fits. \throws RTE::PreconditionFailed "Precondition failed: index < m_count" if there is
/// none
/// @{
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT RTE::DeviceDataT<double>
GetDeviceDataByName(const Attributes& attributes, const QString& name);
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT RTE::DeviceDataT<double>
GetDeviceDataByAlias(const Attributes& attributes, const QString& alias);
/// Among those that were measured.
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT RTE::DeviceDataT<double>
GetMeasuredDeviceDataByName(const Attributes& attributes, const QString& name);
/// @}

/// Empty if the record has none.
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT QString GetDevDataAlias(int index, const Attributes& attributes);

/// The traces of all devices whose name contains the text, one behind the other.
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::vector<double>
GetTraceOfDevData(const Attributes& attributes, const QString& name);

/// \name Positions
/// @{

/// The pose of a robot, physical values of all devices whose name contains "RdkTargetScan_" and
/// "RobotControl.RoboDK": of each its trace, or without one its average. A whole pose has three lengths in mm
/// and three angles in degrees.
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::vector<double>
GetRoboCoordinatesFrom(const Attributes& attributes);
/// "P[mm]=1_2_3_A[deg]=4_5_6"; empty unless there are exactly six numbers.
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT QString GetRoboCoordinatesAsString(const Attributes& attributes);

/// The average of the first device with a trace whose name ends with "z-position".
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::optional<double>
GetScanPositionZ(const Attributes& attributes);
/// The scale of that device; the default intensity scale if there is none.
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT Zt::LinearScale
GetScanPositionZScaleI(const Attributes& attributes);
/// @}

/// A copy of all attributes without the devices of this name, the later ones moved up.
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT AttributesContainer
RemoveDeviceDataEntry(const Attributes& attributes, const QString& name);

/// \name Mark that a viewer shall offer neither the raw view nor the background image
/// @{
DATAOBJECTS_DATAOBJECTS_EXPORT void AddDisableRawViewAndBgImageAttribute(BufferApi::I_Buffer& buffer);
/// \param attributes those of a buffer
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT bool IsRawViewAndBgImageDisabled(const Attributes& attributes);
/// @}

} // namespace DataObjects
