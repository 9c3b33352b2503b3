// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/DataType.h"

#include <utility>

/// \file
/// The run-time pixel type of images, volumes and buffers. The second type of a pair needs no second dispatch
/// of an object: pixels meet in ImageData::Assign, all else is without a type.
namespace DataObjects::Private
{

/// Calls `visitor` with the PixelTypes::Tag of the type.
/// \throws RTE::Exception "Unsupported image type" unless it is one of the six
template <typename Visitor>
decltype(auto) visitImageType(E_DataType type, Visitor&& visitor,
                              RTE::SourceLocation location = RTE::SourceLocation::current())
{
    return PixelTypes::visit(
        static_cast<int>(type), std::forward<Visitor>(visitor),
        [] { return RTE::Exception(QStringLiteral("Unsupported image type")); }, location);
}

/// The same for pixels alone. \throws RTE::Exception "Unsupported image data type" unless it is one of the
/// six
template <typename Visitor>
decltype(auto) visitImageDataType(E_DataType type, Visitor&& visitor,
                                  RTE::SourceLocation location = RTE::SourceLocation::current())
{
    return PixelTypes::visit(
        static_cast<int>(type), std::forward<Visitor>(visitor),
        [] { return RTE::Exception(QStringLiteral("Unsupported image data type")); }, location);
}

/// \throws RTE::Exception "Unsupported image type" unless the type is one of the six
inline void verifyImageType(E_DataType type, RTE::SourceLocation location = RTE::SourceLocation::current())
{
    visitImageType(
        type, [](auto /*tag*/) {}, location);
}

} // namespace DataObjects::Private
