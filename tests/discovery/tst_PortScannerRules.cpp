// SPDX-License-Identifier: MIT
// The rules for what is a development server.
#include "PortScanner_p.h"
#include "Printers.h"

#include <gtest/gtest.h>

namespace portolan {

using namespace Qt::StringLiterals;
using PortScanner::isDevServer;

struct DevServerCase
{
    QString command;
    std::optional<QString> folder;
    bool accepted;
};

class DevServer : public testing::TestWithParam<DevServerCase>
{};

TEST_P(DevServer, IsToldByCommandThenFolder)
{
    EXPECT_EQ(isDevServer(GetParam().command, GetParam().folder, {u"/home/al"_s}), GetParam().accepted);
}

static const auto inHome = std::optional(u"/home/al/code"_s);
static const auto elsewhere = std::optional(u"/srv/code"_s);
static const auto nowhere = std::optional<QString>();

INSTANTIATE_TEST_SUITE_P(
    Order, DevServer,
    testing::Values(
        DevServerCase{u"ControlCenter"_s, inHome, false}, DevServerCase{u"controlcenter"_s, inHome, true},
        DevServerCase{u"controlcenter"_s, elsewhere, false}, DevServerCase{u"ControlCenter "_s, inHome, true},
        DevServerCase{u"sshd"_s, inHome, false}, DevServerCase{u"SSHD"_s, inHome, true},
        DevServerCase{u"go"_s, nowhere, true}, DevServerCase{u"Go"_s, nowhere, true},
        DevServerCase{u"GO"_s, nowhere, true}, DevServerCase{u"ng"_s, nowhere, true},
        DevServerCase{u"golang"_s, nowhere, false}, DevServerCase{u"golang"_s, inHome, true},
        DevServerCase{u"nginx"_s, nowhere, false}, DevServerCase{u"Python3.12"_s, nowhere, true},
        DevServerCase{u"NodeJS"_s, nowhere, true}, DevServerCase{u"Rails"_s, nowhere, true},
        DevServerCase{u"nodemon"_s, nowhere, true}, DevServerCase{u"node-dev"_s, nowhere, true},
        DevServerCase{u"airportd"_s, nowhere, true}, DevServerCase{u"xnode"_s, nowhere, false},
        DevServerCase{u" node"_s, elsewhere, false}, DevServerCase{u"myserver"_s, inHome, true},
        DevServerCase{u"myserver"_s, elsewhere, false}, DevServerCase{u"myserver"_s, nowhere, false},
        DevServerCase{u"myserver"_s, u""_s, false}, DevServerCase{u"myserver"_s, u"/home/al"_s, true},
        DevServerCase{u"myserver"_s, u"/home/alex/app"_s, true},
        DevServerCase{u"myserver"_s, u"/home/a"_s, false},
        DevServerCase{u"myserver"_s, u"/x/home/al"_s, false}, DevServerCase{u""_s, inHome, true},
        DevServerCase{u""_s, nowhere, false}));

TEST(DevServerCommands, EverySystemCommandIsDropped)
{
    for (const char *command :
         {"ControlCe",     "ControlCenter",     "rapportd",  "sharingd",  "AirPlayXPCHelper",
          "identityse",    "identityservicesd", "cloudd",    "trustd",    "apsd",
          "nsurlsessiond", "remoted",           "launchd",   "mDNSRespo", "mDNSResponder",
          "rpcbind",       "systemstats",       "com.apple", "sshd",      "distnoted",
          "syslogd",       "coreaudiod",        "netbiosd"})
        EXPECT_FALSE(isDevServer(QString::fromLatin1(command), inHome, {u"/home/al"_s})) << command;
}

TEST(DevServerCommands, EveryDevelopmentPrefixIsAccepted)
{
    for (const char *command :
         {"node",    "deno",   "bun",  "python", "ruby",    "php",   "cargo",    "air",
          "java",    "dotnet", "next", "vite",   "webpack", "rails", "puma",     "gunicorn",
          "uvicorn", "flask",  "hugo", "jekyll", "esbuild", "turbo", "watchman", "rustc"}) {
        const QString name = QString::fromLatin1(command);
        EXPECT_TRUE(isDevServer(name, nowhere, {u"/home/al"_s})) << command;
        EXPECT_TRUE(isDevServer(name.toUpper() + u"-x"_s, nowhere, {u"/home/al"_s})) << command;
        EXPECT_FALSE(isDevServer(name.chopped(1), nowhere, {u"/home/al"_s})) << command;
    }
}

TEST(DevServerHome, WithoutAHomeFolderNoFolderIsInIt)
{
    EXPECT_FALSE(isDevServer(u"myserver"_s, elsewhere, {QString()}));
}

} // namespace portolan
