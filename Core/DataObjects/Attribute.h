// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/AttributeValue.h"

namespace DataObjects
{

/// A value with its name. The name is a byte string, Latin-1 where it becomes a QString; a dot separates a
/// group from its members.
struct DATAOBJECTS_DATAOBJECTS_EXPORT Attribute
{
    std::string name;
    AttributeValue value;

    /// Whether a user may give this name: letters, digits, "_" and blanks of ASCII, with no digit at the end,
    /// where indices stand. The empty name passes. Stored names may have dots besides; containers take any.
    [[nodiscard]] static bool isNameValid(const std::string& name);
    [[nodiscard]] static bool isNameValid(const QString& name);

    [[nodiscard]] friend bool operator==(const Attribute&, const Attribute&) = default;
};

} // namespace DataObjects
