// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/Export.h"

namespace Service
{

/// Who works with the application, and so how much it shows.
enum class VisibilityLevel
{
    User = 0,
    Service = 1,
    Developer = 2
};

/// The level of the process, `User` at first; read and set from any thread.
[[nodiscard]] DATAOBJECTS_COMMON_EXPORT VisibilityLevel GetVisibilityLevel() noexcept;
DATAOBJECTS_COMMON_EXPORT void SetVisibilityLevel(VisibilityLevel level) noexcept;

} // namespace Service
