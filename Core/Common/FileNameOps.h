// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/Export.h"

#include <QString>

namespace RTE::FileNameOps
{

/// Makes a text usable as the name of one file, without folders: each sign that may not stand there becomes
/// `replacement`.
///
/// Always replaced: "/" and the sign 0, and the dots of the names "." and "..". With `portable` also what
/// other systems refuse: \ : * ? " < > | and control signs, a blank or dot at the end, and a device name
/// such as "CON" or "com1.txt", which gets the replacement behind its stem.
/// \throws RTE::InvalidArgumentError if the replacement itself would be replaced
[[nodiscard]] DATAOBJECTS_COMMON_EXPORT QString MakeValidFileName(const QString& text, char replacement,
                                                                  bool portable);

} // namespace RTE::FileNameOps
