// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/Export.h"

namespace RTE
{

/// Size of the processor's last-level cache in bytes, asked once; 32 MiB where the system does not tell.
///
/// A pass that reads and writes more than this gains from streaming stores, a smaller one loses.
[[nodiscard]] DATAOBJECTS_COMMON_EXPORT unsigned long long lastLevelCacheBytes() noexcept;

} // namespace RTE
