// SPDX-License-Identifier: Apache-2.0
#include "Tests/Support/InChild.h"

#include "Core/Common/Exception.h"

#include <QByteArray>
#include <QLoggingCategory>

#include <array>
#include <csignal>
#include <cstdlib>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace TestSupport
{

namespace
{

/// Prints what the call raises; standard output is the pipe.
void report(const std::function<void()>& call)
{
    const auto print = [](const char* kind, const QString& message) {
        const QByteArray text = kind + QByteArray(": ") + message.toUtf8();
        static_cast<void>(write(STDOUT_FILENO, text.constData(), static_cast<std::size_t>(text.size())));
    };
    try {
        call();
    } catch (const RTE::FileOpenError& error) {
        print("FileOpenError", error.message());
    } catch (const RTE::FileReadError& error) {
        print("FileReadError", error.message());
    } catch (const RTE::FileWriteError& error) {
        print("FileWriteError", error.message());
    } catch (const RTE::ParseError& error) {
        print("ParseError", error.message());
    } catch (const RTE::Exception& error) {
        print("Exception", error.message());
    } catch (const std::exception& error) {
        print("std::exception", QString::fromUtf8(error.what()));
    }
}

[[noreturn]] void runChild(int pipe, const std::function<void()>& call)
{
    dup2(pipe, STDOUT_FILENO);
    dup2(pipe, STDERR_FILENO);
    close(pipe);
    QLoggingCategory::setFilterRules(QStringLiteral("rte.exception=false"));
    report(call);
    // With all that libraries do when a process ends.
    std::exit(0);
}

void limit(__rlimit_resource resource, unsigned long long bytes)
{
    rlimit limits{};
    getrlimit(resource, &limits);
    limits.rlim_cur = bytes;
    setrlimit(resource, &limits);
}

} // namespace

QString inChild(const std::function<void()>& call)
{
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) {
        return QStringLiteral("no pipe");
    }
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        close(ends[0]);
        runChild(ends[1], call);
    }
    close(ends[1]);
    QByteArray output;
    std::array<char, 4096> part{};
    for (ssize_t count = 0; (count = read(ends[0], part.data(), part.size())) > 0;) {
        output.append(part.data(), count);
    }
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    if (WIFSIGNALED(status)) {
        output += " signal " + QByteArray::number(WTERMSIG(status));
    }
    return QString::fromUtf8(output);
}

void limitFileSize(unsigned long long bytes)
{
    std::signal(SIGXFSZ, SIG_IGN);
    limit(RLIMIT_FSIZE, bytes);
}

void limitMemory([[maybe_unused]] unsigned long long bytes)
{
#ifndef DATAOBJECTS_SANITIZED
    limit(RLIMIT_AS, bytes);
#endif
}

void becomeOrdinaryUser()
{
    constexpr uid_t nobody = 65534;
    if (geteuid() == 0 &&
        (setresgid(nobody, nobody, nobody) != 0 || setresuid(nobody, nobody, nobody) != 0)) {
        std::abort();
    }
}

} // namespace TestSupport
