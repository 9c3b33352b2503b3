// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/TypeIdentifier.h"

namespace DataObjects::TypeIdentifier
{

#define DATAOBJECTS_DEFINE_IDENTIFIER(constant, text, kind) const QString constant = QStringLiteral(text);
DATAOBJECTS_TYPE_IDENTIFIERS(DATAOBJECTS_DEFINE_IDENTIFIER)
#undef DATAOBJECTS_DEFINE_IDENTIFIER

} // namespace DataObjects::TypeIdentifier
