// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/Exception.h"
#include "Core/Common/SourceLocation.h"

#include <QString>

namespace RTE
{

namespace Private
{

/// Sets the location, cut to the path from "Core/" on without extension, and writes the log.
DATAOBJECTS_COMMON_EXPORT void prepareToRaise(Exception& exception, SourceLocation location);

[[noreturn]] DATAOBJECTS_COMMON_EXPORT void failVerification(const char* text, SourceLocation location);
[[noreturn]] DATAOBJECTS_COMMON_EXPORT void failIndex(const char* argument, SourceLocation location);

} // namespace Private

/// The one way to raise an error: locates it, logs it, throws a copy.
///
/// A helper that fails on behalf of its caller takes the location as its own defaulted last parameter and
/// hands it on.
template <typename E>
[[noreturn]] void raise(E exception, SourceLocation location = SourceLocation::current())
{
    Private::prepareToRaise(exception, location);
    throw E(exception);
}

/// Raises RTE::VerificationFailed with `text` unless `holds`.
inline void verify(bool holds, const char* text, SourceLocation location = SourceLocation::current())
{
    if (!holds) [[unlikely]] {
        Private::failVerification(text, location);
    }
}

/// Raises RTE::OutOfRangeError with the argument's name unless `index` is below `count`.
inline void verifyIndex(unsigned long long index, unsigned long long count, const char* argument,
                        SourceLocation location = SourceLocation::current())
{
    if (index >= count) [[unlikely]] {
        Private::failIndex(argument, location);
    }
}

} // namespace RTE
