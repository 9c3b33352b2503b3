// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Tools/qf/BufferSummary.h"

namespace Qf
{

/// What `qf info` knows of a file; statistics and hash only when asked for.
struct FileInfo
{
    QString path;
    qint64 bytes = 0;
    /// As `qf formats` names it.
    QString format;
    BufferSummary buffer;
    std::vector<Statistics> statistics;
    QString hash;
};

/// One aligned line for each file, below it what `verbose` and the statistics add.
[[nodiscard]] QString infoText(const std::vector<FileInfo>& infos, bool verbose);

/// A JSON array with one object for each file. Numbers that JSON does not know (NaN) are null.
[[nodiscard]] QString infoJson(const std::vector<FileInfo>& infos);

} // namespace Qf
