// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/DataType.h"

namespace BufferApi
{

unsigned long long GetDataTypeSize(E_DataType type) noexcept
{
    if (type == DT_RGB) {
        return sizeof(RgbQuad);
    }
    if (!PixelTypes::contains(type)) {
        return 0;
    }
    return PixelTypes::visit(
        type, [](auto tag) -> unsigned long long { return sizeof(typename decltype(tag)::type); },
        [] { return RTE::LogicError(QStringLiteral("Unknown data type")); });
}

} // namespace BufferApi
