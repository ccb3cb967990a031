#include "DesktopProgram.h"

int main(int argc, char **argv)
{
    return DesktopProgram::run(argc, argv);
}
