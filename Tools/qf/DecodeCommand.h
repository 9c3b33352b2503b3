// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Tools/qf/Session.h"

namespace CLI
{
class App;
}

namespace Qf
{

/// `qf decode`: raw camera bytes to a file of frames. The work is done by `job`, once the line is parsed.
void addDecodeCommand(CLI::App& app, Session& session, Job& job);

} // namespace Qf
