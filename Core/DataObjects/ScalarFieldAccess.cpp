// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/ScalarFieldAccess.h"

namespace DataObjects
{

unsigned long long GetSizeOfScalarField(const ScalarFieldVariant& field)
{
    const auto bytesOf = [&](auto tag) {
        return GetSizeOfScalarFieldT(CastScalarFieldTo<typename decltype(tag)::type>(field));
    };
    return PixelTypes::visit(static_cast<int>(field.GetDataType()), bytesOf,
                             [] { return RTE::Exception(QStringLiteral("Unsupported scalar field type")); });
}

} // namespace DataObjects
