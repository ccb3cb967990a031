// Prints what the built-in tools answer: builtin_tool PATH ARGUMENT...
// Lets a test ask them as another user and with another environment. Exits with 3 where they do not answer.
#include "BuiltinTools.h"

#include <cstdio>

int main(int argc, char **argv)
{
    using namespace portolan;
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromUtf8(argv[i]));
    if (arguments.isEmpty())
        return 2;
    const auto answer = BuiltinTools::answer(arguments.takeFirst(), arguments);
    if (!answer)
        return 3;
    std::fputs(answer->toUtf8().constData(), stdout);
    return 0;
}
