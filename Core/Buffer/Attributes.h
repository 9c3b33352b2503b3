// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/I_Attribute.h"

#include <vector>

/// Functions on the attributes of a frame or a buffer as a whole.
namespace BufferApi::Attributes
{

/// Copies an attribute map into three lists of equal length, sorted by name; what they held is dropped.
/// \param names
/// \param kinds as `I_AttributeBase::GetKind` gives them
/// \param attributes owned by the map's owner
DATAOBJECTS_BUFFER_EXPORT void GetList(const AttributeMap& map, std::vector<std::string>& names,
                                       std::vector<unsigned int>& kinds,
                                       std::vector<I_AttributeBase*>& attributes);

} // namespace BufferApi::Attributes
