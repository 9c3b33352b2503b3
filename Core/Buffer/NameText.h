// SPDX-License-Identifier: Apache-2.0
/// \file
/// Names of components and attributes are bytes in the store and Unicode in files and for people.
///
/// The bytes are Latin-1. A name beyond Latin-1, which another program may have given, is kept as UTF-8.
#pragma once

#include "Core/Buffer/Export.h"

#include <QString>

#include <string>

namespace BufferApi
{

/// Never loses anything: different names have different texts.
[[nodiscard]] DATAOBJECTS_BUFFER_EXPORT QString nameToText(const std::string& name);
[[nodiscard]] DATAOBJECTS_BUFFER_EXPORT std::string nameFromText(const QString& text);

} // namespace BufferApi
