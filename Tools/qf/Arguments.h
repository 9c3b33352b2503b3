// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QRect>
#include <QSize>
#include <QStringList>

#include <functional>
#include <string>
#include <vector>

namespace CLI
{
class App;
class Option;
} // namespace CLI

namespace Qf
{

/// Values of options. Each reader gives an empty text, or what is wrong with `text` and what would be right.

/// "1280x1024": both at least 1, together at most 2^32 - 1 pixels.
[[nodiscard]] std::string readSize(const std::string& text, QSize& size);

/// "256x192+512+416": width, height, and the first column and row.
[[nodiscard]] std::string readRegion(const std::string& text, QRect& region);

/// "60:1500", the values in rising order.
[[nodiscard]] std::string readRange(const std::string& text, double& low, double& high);

/// "0.02mm" or "0.02 mm": a positive length and its unit.
[[nodiscard]] std::string readLength(const std::string& text, double& length, QString& unit);

/// Adds an option that `reader`, one of those above, reads. \param type what the help shows for the value
CLI::Option* addParsed(CLI::App& app, const std::string& name, const std::string& description,
                       const std::function<std::string(const std::string&)>& reader, const std::string& type);

[[nodiscard]] QStringList toQt(const std::vector<std::string>& texts);
[[nodiscard]] std::vector<std::string> toStd(const QStringList& texts);

/// "1 frame", "2 frames".
[[nodiscard]] QString counted(unsigned long long count, const QString& noun);

/// An input that is a file. \throws RTE::FileOpenError
void checkInput(const QString& path);

/// An output that may be written: its folder exists, and it does not, or `force` allows to replace it.
/// \throws RTE::FileWriteError
void checkOutput(const QString& path, bool force);

} // namespace Qf
