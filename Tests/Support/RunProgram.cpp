// SPDX-License-Identifier: Apache-2.0
#include "Tests/Support/RunProgram.h"

#include <QProcess>

#include <vector>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

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

long long peakMemory(const QString& program, const QStringList& arguments, const QString& folder)
{
    std::vector<QByteArray> texts{program.toLocal8Bit()};
    for (const QString& argument : arguments) {
        texts.push_back(argument.toLocal8Bit());
    }
    std::vector<char*> pointers;
    for (QByteArray& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    const QByteArray directory = folder.toLocal8Bit();
    const pid_t child = fork();
    if (child == 0) {
        const bool isThere = chdir(directory.constData()) == 0;
        execv(isThere ? pointers.front() : "", pointers.data());
        _exit(127);
    }
    int status = -1;
    rusage usage{};
    const bool ended = child > 0 && wait4(child, &status, 0, &usage) == child;
    return ended && WIFEXITED(status) && WEXITSTATUS(status) == 0 ? usage.ru_maxrss : -1;
}

} // namespace TestSupport
