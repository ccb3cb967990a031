// SPDX-License-Identifier: MIT
#include "DetachedProgram.h"
#include "FakePrograms.h"
#include "Printers.h"
#include "ScopedEnvironment.h"
#include "ServiceActions.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>

#include <sys/wait.h>
#include <unistd.h>

namespace portolan {

using namespace Qt::StringLiterals;

/// A session without a bus, with fake programs only.
class Open : public testing::Test
{
protected:
    Open() { m_service.port = 5173; }

    void openInEditor(const QStringList &editors) const
    {
        ServiceActions({}, editors).openInEditor(m_service);
    }

    Service m_service;
    FakePrograms m_recorders;

private:
    ScopedEnvironment m_path{"PATH", m_recorders.folder().toLocal8Bit()};
    ScopedEnvironment m_bus{"DBUS_SESSION_BUS_ADDRESS", "unix:path=/no/such/bus"};
    ScopedEnvironment m_terminal{"TERMINAL", std::nullopt};
    ScopedEnvironment m_desktop{"XDG_CURRENT_DESKTOP", std::nullopt};
};

TEST_F(Open, ShowsTheAddressInTheBrowser)
{
    m_recorders.install(u"xdg-open"_s);
    ServiceActions().openInBrowser(m_service);
    EXPECT_EQ(m_recorders.record(u"xdg-open"_s).arguments, QStringList{u"http://localhost:5173"_s});
}

TEST_F(Open, ShowsTheFolderInTheFileManager)
{
    m_recorders.install(u"xdg-open"_s);
    m_service.folderPath = u"/tmp/my shop"_s;
    ServiceActions().revealInFinder(m_service);
    EXPECT_EQ(m_recorders.record(u"xdg-open"_s).arguments, QStringList{u"/tmp/my shop"_s});
}

TEST_F(Open, TakesTheFirstEditorThatIsInstalled)
{
    m_recorders.install(u"code"_s);
    m_recorders.install(u"cursor"_s);
    m_service.folderPath = u"/tmp/bob's \"dir\" \\x -- %s\nö"_s;
    openInEditor({m_recorders.path(u"gone"_s), m_recorders.path(u"code"_s), m_recorders.path(u"cursor"_s)});
    const StartRecord record = m_recorders.record(u"code"_s);
    EXPECT_EQ(record.arguments, QStringList{*m_service.folderPath});
    EXPECT_EQ(record.descriptors,
              QJsonObject({{u"0"_s, u"/dev/null"_s}, {u"1"_s, u"/dev/null"_s}, {u"2"_s, u"/dev/null"_s}}));
    EXPECT_FALSE(m_recorders.wasStarted(u"cursor"_s));
}

TEST_F(Open, WaitsForNoEditorThatIsItsOwnLauncher)
{
    const QString editor = m_recorders.path(u"code"_s);
    const QString sign = m_recorders.path(u"sign"_s);
    QFile script(editor);
    ASSERT_TRUE(script.open(QFile::WriteOnly));
    script.write("#!/bin/sh\necho $$ >> '" + QFile::encodeName(sign) + "'\nexec /bin/sleep 1000\n");
    script.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
    script.close();
    m_service.folderPath = u"/tmp"_s;

    const auto editors = [&] {
        QFile file(sign);
        return file.open(QFile::ReadOnly) ? file.readAll().trimmed().split('\n') : QList<QByteArray>();
    };
    openInEditor({editor});
    openInEditor({editor});
    ASSERT_TRUE(eventually([&] { return editors().size() == 2; }));
    for (const QByteArray &pid : editors())
        EXPECT_EQ(kill(pid.toInt(), SIGKILL), 0);
    // None of them remains as a zombie.
    EXPECT_TRUE(eventually([] { return waitpid(-1, nullptr, WNOHANG) == -1 && errno == ECHILD; }));
}

TEST_F(Open, PassesOverWhatCannotBeExecuted)
{
    m_recorders.install(u"code"_s);
    ASSERT_TRUE(QFile::setPermissions(m_recorders.path(u"code"_s), QFile::ReadOwner));
    ASSERT_TRUE(QDir().mkpath(m_recorders.path(u"folder"_s)));
    m_recorders.install(u"cursor"_s);
    m_service.folderPath = u"/tmp"_s;
    openInEditor({m_recorders.path(u"code"_s), m_recorders.path(u"folder"_s), m_recorders.path(u"cursor"_s)});
    EXPECT_EQ(m_recorders.record(u"cursor"_s).arguments, QStringList{u"/tmp"_s});
}

TEST_F(Open, ShowsTheFolderWhereNoEditorIsInstalled)
{
    m_recorders.install(u"xdg-open"_s);
    m_service.folderPath = u"/tmp"_s;
    openInEditor({m_recorders.path(u"gone"_s)});
    EXPECT_EQ(m_recorders.record(u"xdg-open"_s).arguments, QStringList{u"/tmp"_s});
}

TEST_F(Open, LooksForTwoEditorsWherePackagesPutThem)
{
    EXPECT_EQ(ServiceActions::usualEditors(u"/home/ada"_s),
              (QStringList{
                  u"/usr/local/bin/code"_s,
                  u"/opt/homebrew/bin/code"_s,
                  u"/usr/bin/code"_s,
                  u"/usr/share/code/bin/code"_s,
                  u"/snap/bin/code"_s,
                  u"/var/lib/flatpak/exports/bin/com.visualstudio.code"_s,
                  u"/home/ada/.local/share/flatpak/exports/bin/com.visualstudio.code"_s,
                  u"/home/linuxbrew/.linuxbrew/bin/code"_s,
                  u"/home/ada/.local/bin/code"_s,
                  u"/usr/local/bin/cursor"_s,
                  u"/opt/homebrew/bin/cursor"_s,
                  u"/usr/bin/cursor"_s,
                  u"/usr/share/cursor/bin/cursor"_s,
                  u"/snap/bin/cursor"_s,
                  u"/var/lib/flatpak/exports/bin/co.anysphere.cursor"_s,
                  u"/home/ada/.local/share/flatpak/exports/bin/co.anysphere.cursor"_s,
                  u"/home/linuxbrew/.linuxbrew/bin/cursor"_s,
                  u"/home/ada/.local/bin/cursor"_s,
              }));
}

TEST_F(Open, OpensATerminalInTheFolder)
{
    m_recorders.install(u"xterm"_s);
    m_service.folderPath = u"/tmp/bob's app"_s;
    ServiceActions().openInTerminal(m_service);
    const QStringList arguments = m_recorders.record(u"xterm"_s).arguments;
    ASSERT_EQ(arguments.size(), 4);
    EXPECT_TRUE(arguments.last().startsWith(uR"(cd '/tmp/bob'\''s app';)"_s))
        << arguments.last().toStdString();
}

TEST_F(Open, DoesNothingWithoutAFolder)
{
    for (const QString &name : {u"xdg-open"_s, u"xterm"_s, u"code"_s})
        m_recorders.install(name);
    ServiceActions().revealInFinder(m_service);
    ServiceActions().openInTerminal(m_service);
    openInEditor({m_recorders.path(u"code"_s)});
    // If any of that were still pending, it would happen before this.
    DetachedProgram::start(m_recorders.install(u"last"_s), {});
    EXPECT_GT(m_recorders.record(u"last"_s).process, 0);
    EXPECT_FALSE(m_recorders.wasStarted(u"xdg-open"_s));
    EXPECT_FALSE(m_recorders.wasStarted(u"xterm"_s));
    EXPECT_FALSE(m_recorders.wasStarted(u"code"_s));
}

} // namespace portolan
