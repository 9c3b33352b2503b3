// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/I_Buffer.h"
#include "Core/Common/RGBQuadParameter.h"

#include <variant>

namespace BufferApi
{

/// Options of import and export by name, such as "PackType".
using BufferOptions =
    std::map<std::string, std::variant<bool, int, unsigned long long, std::string, QString,
                                       std::vector<RTE::RGBQuadParameter>, std::vector<std::string>>>;

/// Reads a file; what it holds decides the format, not its name. Planes load when their data is asked for.
/// The result is owned by the caller. \throws RTE::Exception with file and reason
[[nodiscard]] DATAOBJECTS_BUFFER_EXPORT I_Buffer* ImportBuffer(const QString& path,
                                                               const BufferOptions& options = {});

/// Writes a file whose extension decides the format; the old file or the whole new one stands there
/// afterwards. "PackType" (`int`): 2 packed, 0 planes as they are.
/// \throws RTE::Exception with file and reason
DATAOBJECTS_BUFFER_EXPORT void ExportBuffer(const I_Buffer* buffer, const QString& path,
                                            const BufferOptions& options = {});

} // namespace BufferApi
