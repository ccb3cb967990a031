#include "StartOptions.h"

#include <algorithm>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

// What was typed may be anything, and a terminal may obey it.
QString printable(QString text)
{
    std::ranges::replace_if(
        text, [](QChar character) { return !character.isPrint(); }, u'?');
    return text;
}

} // namespace

std::variant<StartOptions, StartOptions::Error> StartOptions::parse(const QStringList &arguments)
{
    StartOptions options;
    for (const QString &argument : arguments) {
        if (argument == "--help"_L1 || argument == "-h"_L1) {
            options.purpose = Purpose::PrintHelp;
            break;
        }
        if (argument == "--version"_L1) {
            options.purpose = Purpose::PrintVersion;
            break;
        }
        const bool window = argument == "--window"_L1;
        if (!window && argument != "--background"_L1)
            return Error{u"unknown option '%1'"_s.arg(printable(argument))};
        const StartRequest request = window ? StartRequest::Window : StartRequest::None;
        if (options.request != StartRequest::Open && options.request != request)
            return Error{u"'--background' and '--window' exclude each other"_s};
        options.request = request;
    }
    return options;
}

QString StartOptions::helpText()
{
    return u"Shows the dev servers of this machine in the desktop's status area.\n\n"
           "Usage: portolan [OPTION]\n\n"
           "  --background    start silently, as at login\n"
           "  --window        open the list in a window\n"
           "  --help, -h      print this and exit\n"
           "  --version       print the version and exit\n"_s;
}

} // namespace portolan
