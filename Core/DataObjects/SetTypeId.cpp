// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/SetTypeId.h"

namespace DataObjects::SetTypeId
{

#define DATAOBJECTS_DEFINE_SET_TYPE(constant, text) const QString constant = QStringLiteral(text);
DATAOBJECTS_SET_TYPE_IDS(DATAOBJECTS_DEFINE_SET_TYPE)
#undef DATAOBJECTS_DEFINE_SET_TYPE

} // namespace DataObjects::SetTypeId
