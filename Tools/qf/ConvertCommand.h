// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Tools/qf/Session.h"

namespace CLI
{
class App;
}

namespace Qf
{

/// `qf convert`: frames of any files into a file of another kind. The work is done by `job`, once the line is
/// parsed.
void addConvertCommand(CLI::App& app, Session& session, Job& job);

} // namespace Qf
