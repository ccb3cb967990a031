#include "Program.h"

int main(int argc, char **argv)
{
    return Program::run(argc, argv);
}
