// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/Export.h"

#include <QString>
#include <QStringList>

namespace RTE
{

/// A place in a tree of topics, from the root down, such as "Camera/Sensor/Size". Parts are compared with
/// case.
class DATAOBJECTS_COMMON_EXPORT HierarchyPath
{
public:
    /// The root, without parts.
    HierarchyPath() = default;
    /// Splits `text` at each `separator`; empty parts are dropped. An empty separator leaves the text whole.
    HierarchyPath(const QString& text, const QString& separator);

    /// Goes down by one part in place; the part may hold any sign. An empty part changes nothing.
    void AddChild(const QString& part);

    /// The parts joined with "/".
    [[nodiscard]] QString AsString() const;
    /// Number of parts.
    [[nodiscard]] unsigned int GetDepth() const noexcept;
    /// The path without its last part; the root is its own parent.
    [[nodiscard]] HierarchyPath GetParent() const;
    /// The last part; empty for the root.
    [[nodiscard]] QString Last() const;

    /// True when this path is `other` or lies under it.
    [[nodiscard]] bool StartsWith(const HierarchyPath& other) const;
    /// The path without the leading parts that it shares with `other`, as many as are the same.
    [[nodiscard]] HierarchyPath TrimParents(const HierarchyPath& other) const;

    friend bool operator==(const HierarchyPath&, const HierarchyPath&) = default;

private:
    [[nodiscard]] qsizetype sharedParts(const HierarchyPath& other) const;

    QStringList m_parts;
};

} // namespace RTE
