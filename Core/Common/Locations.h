// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/Export.h"

#include <QString>

/// Folders that the library reads from; safe from any thread.
namespace RTE::Locations
{

/// The folder of the settings that come with the software and are never written, without "/" at the end.
///
/// The one given to setReadOnlySettingsPath; else the first folder "DataObjects/settings" in the system's
/// data locations (QStandardPaths::GenericDataLocation), and if there is none, the place of the user's own.
[[nodiscard]] DATAOBJECTS_COMMON_EXPORT QString getReadOnlySettingsPath();
/// Sets the folder for this process; an empty path goes back to the system's data locations.
DATAOBJECTS_COMMON_EXPORT void setReadOnlySettingsPath(const QString& path);

} // namespace RTE::Locations
