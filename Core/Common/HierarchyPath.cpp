// SPDX-License-Identifier: Apache-2.0
#include "Core/Common/HierarchyPath.h"

#include <algorithm>

namespace RTE
{

HierarchyPath::HierarchyPath(const QString& text, const QString& separator)
    : m_parts(separator.isEmpty() ? QStringList(text) : text.split(separator))
{
    m_parts.removeAll(QString());
}

void HierarchyPath::AddChild(const QString& part)
{
    if (!part.isEmpty()) {
        m_parts.append(part);
    }
}

QString HierarchyPath::AsString() const
{
    return m_parts.join(QLatin1Char('/'));
}

unsigned int HierarchyPath::GetDepth() const noexcept
{
    return static_cast<unsigned int>(m_parts.size());
}

HierarchyPath HierarchyPath::GetParent() const
{
    HierarchyPath parent;
    parent.m_parts = m_parts.mid(0, std::max<qsizetype>(m_parts.size() - 1, 0));
    return parent;
}

QString HierarchyPath::Last() const
{
    return m_parts.isEmpty() ? QString() : m_parts.last();
}

bool HierarchyPath::StartsWith(const HierarchyPath& other) const
{
    return sharedParts(other) == other.m_parts.size();
}

HierarchyPath HierarchyPath::TrimParents(const HierarchyPath& other) const
{
    HierarchyPath trimmed;
    trimmed.m_parts = m_parts.mid(sharedParts(other));
    return trimmed;
}

qsizetype HierarchyPath::sharedParts(const HierarchyPath& other) const
{
    const auto end =
        std::mismatch(m_parts.begin(), m_parts.end(), other.m_parts.begin(), other.m_parts.end());
    return end.first - m_parts.begin();
}

} // namespace RTE
