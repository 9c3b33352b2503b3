// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Tools/qf/NumberedFiles.h"

#include <QTemporaryDir>

#include <optional>
#include <vector>

namespace Qf
{

/// Numbered files of which all appear or none: they are made in a folder beside the target, which disappears
/// with the object, and renamed once all are complete.
class FileSeries
{
public:
    /// \throws UsageError for two places of the number
    explicit FileSeries(const QString& pattern);

    [[nodiscard]] QString name(unsigned int number) const { return m_names.name(number); }

    /// \throws RTE::FileWriteError when the folder cannot be made
    void begin();
    /// Where to write a file before `commit`.
    [[nodiscard]] QString part(unsigned int number) const;
    /// Replaces what stands there. \throws RTE::FileWriteError
    void commit(const std::vector<unsigned int>& numbers) const;

private:
    NumberedFiles m_names;
    QString m_folder;
    std::optional<QTemporaryDir> m_parts;
};

} // namespace Qf
