// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/Exception.h"

#include <QString>

#include <functional>
#include <string_view>

namespace Qf
{

/// What `qf` returns to the shell.
enum ExitCode
{
    Success = 0,
    Trouble = 1,
    Usage = 2,
    Interrupted = 130,
    /// Nobody reads the results any more, as after `| head`.
    PipeClosed = 141
};

/// What a command does once its line is parsed; gives the exit code.
using Job = std::function<int()>;

/// A command line that is well-formed but makes no sense.
class UsageError : public RTE::InvalidArgumentError
{
public:
    using InvalidArgumentError::InvalidArgumentError;
};

/// The user asked to stop.
class InterruptedError : public RTE::Exception
{
public:
    using Exception::Exception;
};

/// Whoever read the results has stopped to.
class PipeClosedError : public RTE::Exception
{
public:
    using Exception::Exception;
};

/// One run of `qf`: the only place where its failures are caught, and where the user's wish to stop arrives.
class Session
{
public:
    /// From now on SIGINT, SIGTERM and SIGHUP ask to stop; a second one ends the process at once.
    /// Files that grow beyond a limit are errors.
    static void listenToInterrupts();
    [[nodiscard]] static bool isStopRequested() noexcept;
    /// \throws InterruptedError when the user asked to stop
    static void stopIfRequested();

    /// The file or thing at hand; a failure is reported with it.
    void workOn(const QString& subject) { m_subject = subject; }
    /// The command's name, which begins each message.
    void setCommand(const QString& command) { m_command = command; }

    /// Does the work and gives its exit code; a failure goes to stderr as one message and gives its own.
    [[nodiscard]] int attempt(const Job& work) const noexcept;
    void reportError(const QString& message) const;

    /// Results, as UTF-8 on stdout. \throws RTE::FileWriteError when they cannot be written; PipeClosedError
    static void print(const QString& text);
    /// The same of bytes.
    static void write(std::string_view bytes);
    /// On stderr.
    static void say(const QString& text);
    /// Talk on stderr that a quiet session drops.
    static void remark(const QString& text);
    /// From now on only errors go to stderr.
    static void beQuiet() noexcept;
    [[nodiscard]] static bool isQuiet() noexcept;

private:
    QString m_command = QStringLiteral("qf");
    QString m_subject;
};

/// The text with control characters made visible, so that a file cannot steer the terminal.
[[nodiscard]] QString printable(const QString& text);

} // namespace Qf
