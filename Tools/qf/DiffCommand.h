// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Tools/qf/Session.h"

namespace CLI
{
class App;
}

namespace Qf
{

/// `qf diff`: what differs between two files. The work is done by `job`, once the line is parsed.
void addDiffCommand(CLI::App& app, Session& session, Job& job);

} // namespace Qf
