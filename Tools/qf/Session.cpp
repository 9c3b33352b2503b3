// SPDX-License-Identifier: Apache-2.0
#include "Tools/qf/Session.h"

#include "Core/Common/Raise.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <new>

namespace Qf
{

namespace
{

volatile std::sig_atomic_t stopRequested = 0;
bool quiet = false;

bool writeTo(std::FILE* stream, std::string_view bytes)
{
    return std::fwrite(bytes.data(), 1, bytes.size(), stream) == bytes.size() && std::fflush(stream) == 0;
}

} // namespace

void Session::listenToInterrupts()
{
    struct sigaction action = {};
    action.sa_handler = [](int) { stopRequested = 1; };
    // The second signal finds the default action, so that a hanging device or network cannot hold the user
    // up.
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
    // The terminal is gone, which `nohup` had made of no account.
    struct sigaction before = {};
    sigaction(SIGHUP, nullptr, &before);
    if (before.sa_handler != SIG_IGN) {
        sigaction(SIGHUP, &action, nullptr);
    }
    // A limit on the size of files then is an error like a full disk, after which nothing half stays.
    std::signal(SIGXFSZ, SIG_IGN);
}

bool Session::isStopRequested() noexcept
{
    return stopRequested != 0;
}

void Session::stopIfRequested()
{
    if (isStopRequested()) {
        RTE::raise(InterruptedError(QStringLiteral("interrupted")));
    }
}

int Session::attempt(const Job& work) const noexcept
{
    try {
        return work();
    } catch (const InterruptedError& interrupted) {
        reportError(interrupted.message());
        return Interrupted;
    } catch (const PipeClosedError&) {
        return PipeClosed;
    } catch (const UsageError& error) {
        reportError(error.message());
        return Usage;
    } catch (const RTE::Exception& error) {
        reportError(error.message());
    } catch (const std::bad_alloc&) {
        reportError(QStringLiteral("not enough memory; use smaller or fewer files"));
    } catch (const std::exception& error) {
        reportError(QString::fromUtf8(error.what()));
    }
    return Trouble;
}

void Session::reportError(const QString& message) const
{
    const bool named = m_subject.isEmpty() || message.contains(m_subject);
    say(QStringLiteral("%1: %2%3\n")
            .arg(m_command, named ? QString() : printable(m_subject) + QStringLiteral(": "),
                 printable(message)));
}

void Session::print(const QString& text)
{
    write(text.toStdString());
}

void Session::write(std::string_view bytes)
{
    if (writeTo(stdout, bytes)) {
        return;
    }
    const int error = errno;
    const QString reason = QString::fromLocal8Bit(std::strerror(error));
    if (error == EPIPE) {
        RTE::raise(PipeClosedError(reason));
    }
    RTE::raise(RTE::FileWriteError(QStringLiteral("cannot write the results: %1").arg(reason)));
}

void Session::say(const QString& text)
{
    // Where not even talk can be written, there is nobody to tell.
    static_cast<void>(writeTo(stderr, text.toStdString()));
}

void Session::remark(const QString& text)
{
    if (!quiet) {
        say(text);
    }
}

void Session::beQuiet() noexcept
{
    quiet = true;
}

bool Session::isQuiet() noexcept
{
    return quiet;
}

QString printable(const QString& text)
{
    QString result;
    result.reserve(text.size());
    for (const QChar character : text) {
        if (character.category() == QChar::Other_Control) {
            result += QStringLiteral("\\x%1").arg(character.unicode(), 2, 16, QLatin1Char('0'));
        } else {
            result += character;
        }
    }
    return result;
}

} // namespace Qf
