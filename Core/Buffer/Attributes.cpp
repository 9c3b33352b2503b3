// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Attributes.h"

namespace BufferApi::Attributes
{

void GetList(const AttributeMap& map, std::vector<std::string>& names, std::vector<unsigned int>& kinds,
             std::vector<I_AttributeBase*>& attributes)
{
    names.clear();
    kinds.clear();
    attributes.clear();
    for (const auto& [name, attribute] : map) {
        names.push_back(name);
        kinds.push_back(attribute->GetKind());
        attributes.push_back(attribute.get());
    }
}

} // namespace BufferApi::Attributes
