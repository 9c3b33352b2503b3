// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/Export.h"

namespace RTE
{

/// What is known of the machine; read once, from any thread.
class DATAOBJECTS_COMMON_EXPORT C_SystemInfo
{
public:
    C_SystemInfo(const C_SystemInfo&) = delete;
    C_SystemInfo& operator=(const C_SystemInfo&) = delete;

    [[nodiscard]] static const C_SystemInfo& GetInstance();

    /// Physical memory in kilobytes of 1024 bytes; 0 if the system does not tell.
    [[nodiscard]] unsigned long long GetMemoryTotal() const noexcept { return m_memoryTotal; }

private:
    C_SystemInfo() noexcept;

    unsigned long long m_memoryTotal;
};

} // namespace RTE
