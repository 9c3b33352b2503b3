// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/DataType.h"

#include "Core/Buffer/ElementTypes.h"

namespace BufferApi
{

unsigned long long GetDataTypeSize(E_DataType type) noexcept
{
    if (!isElementType(type)) {
        return 0;
    }
    return visitElement(type,
                        [](auto tag) -> unsigned long long { return sizeof(typename decltype(tag)::type); });
}

} // namespace BufferApi
