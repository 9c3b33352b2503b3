// SPDX-License-Identifier: Apache-2.0
#include "Core/Common/AttributesSink.h"

namespace RTE
{

I_AttributesSink::~I_AttributesSink() = default;

I_AttributesSource::~I_AttributesSource() = default;

} // namespace RTE
