// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QString>

#include <string>

namespace TestSupport
{

/// A file that another program made, see Tests/Buffer/golden/make_golden.py.
[[nodiscard]] QString goldenFile(const std::string& name);

/// All bytes of a file; a failed expectation when it cannot be read.
[[nodiscard]] QByteArray contentOf(const QString& path);
/// Makes or replaces a file; a failed expectation when that cannot be done.
void writeContent(const QString& path, const QByteArray& content);

} // namespace TestSupport
