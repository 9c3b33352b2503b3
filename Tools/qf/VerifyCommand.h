// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Tools/qf/Session.h"

namespace CLI
{
class App;
}

namespace Qf
{

/// `qf verify`: reads everything in files and tells what is damaged. The work is done by `job`, once the line
/// is parsed.
void addVerifyCommand(CLI::App& app, Session& session, Job& job);

} // namespace Qf
