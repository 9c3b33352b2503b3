// SPDX-License-Identifier: Apache-2.0
#include "Core/Common/Unicode.h"

namespace Zt::Unicode
{

const QString micro = QStringLiteral(u"\u00B5");
const QString square = QStringLiteral(u"\u00B2");
const QString degree = QStringLiteral(u"\u00B0");

} // namespace Zt::Unicode
