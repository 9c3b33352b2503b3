// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/Export.h"

#include <QString>

#include <exception>
#include <string>

class QIODevice;

namespace RTE
{

/// Base of all failures of the library: a message, and the place in the source where it was raised.
///
/// Raise through RTE::raise (Raise.h), which sets the location and writes the log.
class DATAOBJECTS_COMMON_EXPORT Exception : public std::exception
{
public:
    explicit Exception(const QString& message);
    Exception(const Exception&) = default;
    Exception(Exception&&) noexcept = default;
    Exception& operator=(const Exception&) = default;
    Exception& operator=(Exception&&) noexcept = default;
    ~Exception() override;

    /// The text alone, without the location.
    [[nodiscard]] QString message() const { return m_message; }
    /// Message and location as UTF-8.
    [[nodiscard]] const char* what() const noexcept override { return m_what.c_str(); }

    /// Source path from `Core/` on without extension, such as "Core/DataObjects/ImageData"; empty before it
    /// is set.
    [[nodiscard]] QString locationFile() const { return m_file; }
    [[nodiscard]] unsigned int locationLine() const noexcept { return m_line; }
    void setLocation(const QString& file, unsigned int line);

    /// Writes the failure to Qt's log, category "rte.exception" at warning level.
    void log() const;

private:
    QString m_message;
    QString m_file;
    unsigned int m_line = 0;
    std::string m_what;
};

/// A violated assertion about arguments or state.
class DATAOBJECTS_COMMON_EXPORT VerificationFailed : public Exception
{
public:
    VerificationFailed();
    using Exception::Exception;
};

/// A bad argument.
class DATAOBJECTS_COMMON_EXPORT InvalidArgumentError : public Exception
{
public:
    InvalidArgumentError();
    using Exception::Exception;
};

/// An index outside its range; the text names the argument.
class DATAOBJECTS_COMMON_EXPORT OutOfRangeError : public Exception
{
public:
    using Exception::Exception;
};

/// An internal contradiction.
class DATAOBJECTS_COMMON_EXPORT LogicError : public Exception
{
public:
    using Exception::Exception;
};

/// An operation that this class does not offer.
class DATAOBJECTS_COMMON_EXPORT NotImplemented : public Exception
{
public:
    using Exception::Exception;
};

/// A precondition of a call is not met.
class DATAOBJECTS_COMMON_EXPORT PreconditionFailed : public Exception
{
public:
    using Exception::Exception;
};

/// A request that cannot be served in this state.
class DATAOBJECTS_COMMON_EXPORT InvalidRequest : public Exception
{
public:
    using Exception::Exception;
};

/// A text that cannot be read; lines and columns count as the reader counts them.
class DATAOBJECTS_COMMON_EXPORT ParseError : public Exception
{
public:
    ParseError(const QString& message, int line, int column);
    explicit ParseError(const QString& message) : ParseError(message, 0, 0) {}

    [[nodiscard]] int line() const noexcept { return m_line; }
    [[nodiscard]] int column() const noexcept { return m_column; }

private:
    int m_line;
    int m_column;
};

/// A file operation failed. Not a FileError.
class DATAOBJECTS_COMMON_EXPORT FileIOError : public Exception
{
public:
    using Exception::Exception;
};

/// Common base of the failures of opening, reading and writing a file.
class DATAOBJECTS_COMMON_EXPORT FileError : public Exception
{
public:
    using Exception::Exception;
};

class DATAOBJECTS_COMMON_EXPORT FileOpenError : public FileError
{
public:
    using FileError::FileError;
};

class DATAOBJECTS_COMMON_EXPORT FileReadError : public FileError
{
public:
    using FileError::FileError;
};

class DATAOBJECTS_COMMON_EXPORT FileWriteError : public FileError
{
public:
    using FileError::FileError;
    /// The message is followed by the device's own error text, where it has one.
    FileWriteError(const QIODevice& device, const QString& message);
};

} // namespace RTE
