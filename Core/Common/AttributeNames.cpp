// SPDX-License-Identifier: Apache-2.0
#include "Core/Common/AttributeNames.h"

namespace Attr
{

#define DATAOBJECTS_DEFINE_NAME(constant, text, meaning) const Name constant(text);
DATAOBJECTS_ATTRIBUTE_NAMES(DATAOBJECTS_DEFINE_NAME)
#undef DATAOBJECTS_DEFINE_NAME

} // namespace Attr
