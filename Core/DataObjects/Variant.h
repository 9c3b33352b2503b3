// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/Export.h"
#include "Core/DataObjects/GlobalAndFrameAttributes.h"

#include <QString>

#include <memory>

namespace DataObjects
{

/// Root of the top-level data objects, that is, of whatever can be the content of a whole buffer.
///
/// Images and volumes are no variants: only a whole buffer of data travels as one object.
class DATAOBJECTS_DATAOBJECTS_EXPORT Variant
{
public:
    Variant() noexcept;
    Variant(const Variant&) noexcept;
    Variant& operator=(const Variant&) noexcept;
    virtual ~Variant();

    /// Names the kind of object, such as "ImageBufferVariant".
    [[nodiscard]] virtual QString getTypeIdentifier() const = 0;
    /// Copies of the global attributes, and of the attributes and scales of each frame.
    [[nodiscard]] virtual GlobalAndFrameAttributes getAllAttributes() const = 0;
    /// A deep copy of the same class.
    [[nodiscard]] virtual std::unique_ptr<Variant> createCopy() const = 0;
};

} // namespace DataObjects
