// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Tools/qf/Session.h"

namespace CLI
{
class App;
}

namespace Qf
{

/// `qf formats`: what files are read and written. The work is done by `job`, once the line is parsed.
void addFormatsCommand(CLI::App& app, Session& session, Job& job);

} // namespace Qf
