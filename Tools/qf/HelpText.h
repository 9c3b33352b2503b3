// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string>

namespace CLI
{
class App;
class FormatterBase;
} // namespace CLI

namespace Qf
{

/// \name All that is told about commands and options, made from the parser's own table of them
/// An app keeps its examples in the footer.
/// @{

/// What `--help` shows: examples first, for they are what most readers look for.
[[nodiscard]] std::shared_ptr<CLI::FormatterBase> helpFormatter();

/// The page for section 1 of the manual.
[[nodiscard]] std::string manualPage(const CLI::App& app);

/// What bash reads to complete commands, options and the values that are known.
[[nodiscard]] std::string bashCompletion(const CLI::App& app);

/// @}

} // namespace Qf
