// SPDX-License-Identifier: Apache-2.0
#include "Core/Common/VisibilityLevel.h"

#include <atomic>

namespace Service
{

namespace
{

std::atomic<VisibilityLevel> visibilityLevel{VisibilityLevel::User};

} // namespace

VisibilityLevel GetVisibilityLevel() noexcept
{
    return visibilityLevel;
}

void SetVisibilityLevel(VisibilityLevel level) noexcept
{
    visibilityLevel = level;
}

} // namespace Service
