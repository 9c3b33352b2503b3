// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/PixelTypes.h"
#include "Core/Common/Raise.h"
#include "Core/DataObjects/AttributeValue.h"

#include <QMetaType>
#include <QVariant>

#include <utility>
#include <vector>

/// How the value of an attribute is held in its variant; shared by the sources of AttributeValue.
namespace DataObjects::Private
{

/// Makes the types that Qt does not know by itself known to it, once: by name, and lists with their
/// conversion to QSequentialIterable.
void registerHeldTypes();

/// What the variant holds, without a copy; null if it holds another type.
template <typename T>
const T* heldAs(const QVariant& held) noexcept
{
    return held.metaType() == QMetaType::fromType<T>() ? static_cast<const T*>(held.constData()) : nullptr;
}

/// Calls `visitor` with the PixelTypes::Tag of the list's element type.
///
/// \throws RTE::NotImplemented "Unknown list type of attribute value." for a kind that is no known list.
template <typename Visitor>
decltype(auto) visitListKind(AttributeValue::Type type, Visitor&& visitor)
{
    switch (type) {
    case AttributeValue::TypeUInt16List:
        return std::forward<Visitor>(visitor)(PixelTypes::Tag<unsigned short>{});
    case AttributeValue::TypeInt32List:
        return std::forward<Visitor>(visitor)(PixelTypes::Tag<int>{});
    case AttributeValue::TypeFloatList:
        return std::forward<Visitor>(visitor)(PixelTypes::Tag<float>{});
    case AttributeValue::TypeDoubleList:
        return std::forward<Visitor>(visitor)(PixelTypes::Tag<double>{});
    default:
        RTE::raise(RTE::NotImplemented(QStringLiteral("Unknown list type of attribute value.")));
    }
}

/// Calls `visitor` with the held list, by reference. A list kind always holds its list.
template <typename Visitor>
decltype(auto) visitList(AttributeValue::Type type, const QVariant& held, Visitor&& visitor)
{
    return visitListKind(type, [&]<typename T>(PixelTypes::Tag<T>) -> decltype(auto) {
        return std::forward<Visitor>(visitor)(*heldAs<std::vector<T>>(held));
    });
}

/// The double nearest to the shortest decimal text that reads back as this `float`: 0.1 for 0.1f.
[[nodiscard]] double decimalOf(float value);

/// The text of a scalar.
[[nodiscard]] QString scalarText(const QVariant& held);

} // namespace DataObjects::Private
