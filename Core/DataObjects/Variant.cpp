// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/Variant.h"

namespace DataObjects
{

Variant::Variant() noexcept = default;
Variant::Variant(const Variant&) noexcept = default;
Variant& Variant::operator=(const Variant&) noexcept = default;
Variant::~Variant() = default;

} // namespace DataObjects
