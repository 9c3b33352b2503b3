// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Tools/qf/Session.h"

namespace Qf
{

/// Runs one command line from parsing to the last output. Gives the exit code.
[[nodiscard]] int runCommandLine(int argc, const char* const* argv);

} // namespace Qf
