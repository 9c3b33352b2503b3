// SPDX-License-Identifier: Apache-2.0
#include "Tests/Support/RunProgram.h"

#include <QProcess>

namespace TestSupport
{

ProgramRun runProgram(const QString& program, const QStringList& arguments, const QString& folder)
{
    const int timeoutMs = 60000;
    QProcess process;
    process.setWorkingDirectory(folder);
    process.start(program, arguments);
    const bool ended = process.waitForFinished(timeoutMs) && process.exitStatus() == QProcess::NormalExit;
    return {ended ? process.exitCode() : -1, QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

} // namespace TestSupport
