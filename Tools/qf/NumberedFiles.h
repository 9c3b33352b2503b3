// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

namespace Qf
{

/// File names with a number, such as "frames/b-%04d.tif".
class NumberedFiles
{
public:
    /// True if the name, its folders aside, has a place for a number: %d or, with zeros in front, %04d.
    [[nodiscard]] static bool isPattern(const QString& path);

    /// \throws UsageError for two places
    explicit NumberedFiles(const QString& pattern);

    [[nodiscard]] QString name(unsigned int number) const;

private:
    QString m_before;
    QString m_after;
    int m_digits = 0;
};

} // namespace Qf
