// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/DataType.h"

#include <utility>

namespace BufferApi
{

/// True for the seven types that a plane can have: the six of PixelTypes and packed colour.
[[nodiscard]] constexpr bool isElementType(E_DataType type) noexcept
{
    return type == DT_RGB || PixelTypes::contains(type);
}

/// PixelTypes::visit with packed colour besides. \throws RTE::InvalidArgumentError "Unsupported data type"
template <typename Visitor>
decltype(auto) visitElement(E_DataType type, Visitor&& visitor,
                            RTE::SourceLocation location = RTE::SourceLocation::current())
{
    if (type == DT_RGB) {
        return std::forward<Visitor>(visitor)(PixelTypes::Tag<RgbQuad>{});
    }
    return PixelTypes::visit(
        type, std::forward<Visitor>(visitor),
        [] { return RTE::InvalidArgumentError(QStringLiteral("Unsupported data type")); }, location);
}

} // namespace BufferApi
