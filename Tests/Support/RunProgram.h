// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QStringList>

namespace TestSupport
{

/// What a program left behind.
struct ProgramRun
{
    /// -1 when it did not start, crashed or hung.
    int exitCode = -1;
    QString out;
    QString err;
};

/// Runs a program to its end, at most a minute.
[[nodiscard]] ProgramRun runProgram(const QString& program, const QStringList& arguments,
                                    const QString& folder);

/// The most resident memory in KiB that a program took in a run to its end; -1 unless it ended with success.
[[nodiscard]] long long peakMemory(const QString& program, const QStringList& arguments,
                                   const QString& folder);

} // namespace TestSupport
