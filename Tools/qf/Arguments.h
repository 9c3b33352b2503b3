// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QRect>
#include <QSize>
#include <QStringList>

#include <charconv>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace CLI
{
class App;
class Option;
} // namespace CLI

namespace Qf
{

class Session;
struct FrameSlice;

/// A number that is all of the text.
template <typename Number>
[[nodiscard]] bool readWhole(std::string_view text, Number& number)
{
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    return result.ec == std::errc() && result.ptr == end;
}

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

/// Adds an option for the number of a frame or plane, which count from 0.
void addIndex(CLI::App& app, const std::string& name, const std::string& description, unsigned int& index);

/// \name Options that mean the same in every command
/// @{
void addForce(CLI::App& command, bool& force);
void addFrames(CLI::App& command, std::optional<FrameSlice>& frames);
void addJobs(CLI::App& command, unsigned int& jobs);
void addJson(CLI::App& command, bool& json);
/// Results, errors and the exit code stay.
void addQuiet(CLI::App& command);
/// @}

[[nodiscard]] QStringList toQt(const std::vector<std::string>& texts);
[[nodiscard]] std::vector<std::string> toStd(const QStringList& texts);

/// "1 frame", "2 frames".
[[nodiscard]] QString counted(unsigned long long count, const QString& noun);

/// Why there is no such frame.
[[nodiscard]] QString noFrameText(const QString& number, unsigned int frameCount);

/// A name that frames can be written to. \throws UsageError
void checkWritten(const QString& path);

/// Output and inputs are different files. \throws UsageError
void checkNotAnInput(const QString& output, const QStringList& inputs);

/// An input that is a file. \throws RTE::FileOpenError
void checkInput(const QString& path);

/// An output that may be written: its folder exists, and it does not, or `force` allows to replace it.
/// \throws RTE::FileWriteError
void checkOutput(const QString& path, bool force);

} // namespace Qf
