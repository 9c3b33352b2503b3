// SPDX-License-Identifier: Apache-2.0
#include "Tools/qf/CommandLine.h"

#include <cstdlib>

int main(int argc, char** argv)
{
    Qf::Session::listenToInterrupts();
    const int code = Qf::runCommandLine(argc, argv);
    // All is written and closed; HDF5's own exit handler would only complain on stderr after a damaged file.
    std::quick_exit(code);
}
