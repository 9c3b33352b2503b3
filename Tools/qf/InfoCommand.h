// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Tools/qf/Session.h"

namespace CLI
{
class App;
}

namespace Qf
{

/// `qf info`: what files hold. The work is done by `job`, once the line is parsed.
void addInfoCommand(CLI::App& app, Session& session, Job& job);

} // namespace Qf
