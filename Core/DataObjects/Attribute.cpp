// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/Attribute.h"

#include "Core/Common/StringOps.h"
#include "Core/DataObjects/Latin1.h"

#include <algorithm>

namespace DataObjects
{

namespace
{

bool isNameSign(char sign) noexcept
{
    return (sign >= 'A' && sign <= 'Z') || (sign >= 'a' && sign <= 'z') || (sign >= '0' && sign <= '9') ||
           sign == '_' || sign == ' ';
}

} // namespace

bool Attribute::isNameValid(const std::string& name)
{
    return !RTE::String::endsWithDigit(name) && std::all_of(name.begin(), name.end(), isNameSign);
}

bool Attribute::isNameValid(const QString& name)
{
    return isNameValid(Private::toLatin1(name));
}

} // namespace DataObjects
