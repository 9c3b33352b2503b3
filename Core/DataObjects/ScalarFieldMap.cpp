// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/ScalarFieldMap.h"

#include "Core/Common/Raise.h"

namespace DataObjects
{

std::shared_ptr<ScalarFieldVariant>& ScalarFieldMap::operator[](const QString& name)
{
    verifyName(name);
    return map::operator[](name);
}

void ScalarFieldMap::verifyName(const QString& name)
{
    RTE::verify(!name.isEmpty(), "Empty scalar field names are not allowed.");
}

} // namespace DataObjects
