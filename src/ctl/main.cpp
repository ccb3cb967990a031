#include "Program.h"

int main(int argc, char **argv)
{
    return portolan::Program::run(argc, argv);
}
