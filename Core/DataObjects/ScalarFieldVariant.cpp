// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/ScalarFieldVariant.h"

namespace DataObjects
{

ScalarFieldVariant::~ScalarFieldVariant() = default;

void Assign(const ScalarFieldVariant& source, ScalarFieldVariant& target)
{
    target.Assign(source);
}

} // namespace DataObjects
