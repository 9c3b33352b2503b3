// SPDX-License-Identifier: Apache-2.0
#include "Tools/qf/CommandLine.h"

int main(int argc, char** argv)
{
    Qf::Session::listenToInterrupts();
    return Qf::runCommandLine(argc, argv);
}
