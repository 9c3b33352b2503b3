// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/Export.h"

#include <QString>

/// Signs outside ASCII that unit texts are built from.
namespace Zt::Unicode
{

/// U+00B5, the micro sign; as Latin-1 the byte 0xB5. Not the Greek letter.
DATAOBJECTS_COMMON_EXPORT extern const QString micro;
/// U+00B2, the superscript two.
DATAOBJECTS_COMMON_EXPORT extern const QString square;
/// U+00B0, the degree sign.
DATAOBJECTS_COMMON_EXPORT extern const QString degree;

} // namespace Zt::Unicode
