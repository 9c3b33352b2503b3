// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/ScalarField.h"

namespace DataObjects
{

/// Bytes that the pixels of a field take: width × height × bytes of an element.
template <typename T>
[[nodiscard]] unsigned long long GetSizeOfScalarFieldT(const ScalarField<T>& field) noexcept
{
    return field.size() * sizeof(T);
}

/// The same for a field of any type.
/// \throws RTE::Exception "Unsupported scalar field type" unless it has one of the six types
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT unsigned long long
GetSizeOfScalarField(const ScalarFieldVariant& field);

} // namespace DataObjects
