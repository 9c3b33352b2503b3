// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Tools/qf/Session.h"

namespace CLI
{
class App;
}

namespace Qf
{

/// `qf dump`: the values of a plane as text, CSV, JSON or bytes. The work is done by `job`, once the line is
/// parsed.
void addDumpCommand(CLI::App& app, Session& session, Job& job);

} // namespace Qf
