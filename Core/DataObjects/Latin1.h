// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

#include <string>

/// Names of attributes are byte strings in containers and QString at outer interfaces.
namespace DataObjects::Private
{

[[nodiscard]] inline QString fromLatin1(const std::string& text)
{
    return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
}

/// A sign beyond Latin-1 becomes "?".
[[nodiscard]] inline std::string toLatin1(const QString& text)
{
    return text.toLatin1().toStdString();
}

} // namespace DataObjects::Private
