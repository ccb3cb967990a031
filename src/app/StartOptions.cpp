// SPDX-License-Identifier: MIT
#include "StartOptions.h"

#include "HelpFormatter.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <memory>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

// Control characters in the arguments must not reach the terminal.
StartOptions::Reply refusal(QString message)
{
    std::ranges::replace_if(
        message, [](QChar character) { return !character.isPrint(); }, u'?');
    return {.text = message, .isError = true};
}

} // namespace

std::variant<StartRequest, StartOptions::Reply> StartOptions::parse(int argc, const char *const *argv)
{
    CLI::App app("Shows the dev servers of this machine in the desktop's status area.", "portolan");
    app.formatter(std::make_shared<HelpFormatter>());
    app.set_help_flag("-h,--help", "print this and exit");
    app.set_version_flag("--version", "portolan " PORTOLAN_VERSION, "print the version and exit");
    bool background = false;
    bool window = false;
    CLI::Option *backgroundFlag = app.add_flag("--background", background, "start silently, as at login");
    app.add_flag("--window", window, "open the list in a window")->excludes(backgroundFlag);
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp &) {
        return Reply{.text = QString::fromStdString(app.help())};
    } catch (const CLI::CallForVersion &version) {
        return Reply{.text = QString::fromUtf8(version.what()) + u'\n'};
    } catch (const CLI::ExtrasError &) {
        return refusal(u"unknown option '%1'"_s.arg(QString::fromStdString(app.remaining().front())));
    } catch (const CLI::ParseError &error) {
        return refusal(QString::fromUtf8(error.what()));
    }
    if (background)
        return StartRequest::None;
    return window ? StartRequest::Window : StartRequest::Open;
}

} // namespace portolan
