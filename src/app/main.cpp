// SPDX-License-Identifier: MIT
#include "DesktopProgram.h"

int main(int argc, char **argv)
{
    return portolan::DesktopProgram::run(argc, argv);
}
