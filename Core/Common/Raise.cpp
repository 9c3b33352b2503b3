// SPDX-License-Identifier: Apache-2.0
#include "Core/Common/Raise.h"

#include <algorithm>
#include <string_view>

namespace RTE::Private
{

namespace
{

QString sourceName(const char* path)
{
    std::string_view name(path);
    const std::string_view root = "Core/";
    auto start = name.rfind("/Core/");
    if (start != std::string_view::npos) {
        name.remove_prefix(start + 1);
    } else if (!name.starts_with(root)) {
        name.remove_prefix(name.rfind('/') + 1);
    }
    return QString::fromUtf8(name.data(), static_cast<qsizetype>(std::min(name.rfind('.'), name.size())));
}

} // namespace

void prepareToRaise(Exception& exception, SourceLocation location)
{
    exception.setLocation(sourceName(location.file()), location.line());
    exception.log();
}

void failVerification(const char* text, SourceLocation location)
{
    raise(VerificationFailed(QString::fromUtf8(text)), location);
}

void failIndex(const char* argument, SourceLocation location)
{
    raise(OutOfRangeError(QString::fromUtf8(argument)), location);
}

} // namespace RTE::Private
