// SPDX-License-Identifier: MIT
// Real terminal emulators on a display of their own, with a fake shell.
#include "FakePrograms.h"
#include "Printers.h"
#include "ScopedEnvironment.h"
#include "ServiceActions.h"
#include "VirtualDisplay.h"

#include <QStandardPaths>

#include <gtest/gtest.h>

namespace portolan {

using namespace Qt::StringLiterals;

class RealTerminal : public testing::TestWithParam<const char *>
{
protected:
    void SetUp() override
    {
        if (QStandardPaths::findExecutable(QString::fromLatin1(GetParam())).isEmpty())
            GTEST_SKIP() << GetParam() << " is not installed";
        if (m_display.name().isEmpty())
            GTEST_SKIP() << "Xvfb is not installed";
    }

    /// The working folder of the shell in the window that is opened for `folder`.
    [[nodiscard]] QString shellFolder(const QString &folder)
    {
        FakePrograms recorders;
        const ScopedEnvironment terminal("TERMINAL", GetParam());
        const ScopedEnvironment shell("SHELL", QFile::encodeName(recorders.install(u"bob's $hell"_s)));
        Service service;
        service.folderPath = folder;
        ServiceActions().openInTerminal(service);
        return recorders.record(u"bob's $hell"_s).folder;
    }

private:
    const VirtualDisplay m_display;
    const ScopedEnvironment m_displayVariable{"DISPLAY", m_display.name().toLocal8Bit()};
    const ScopedEnvironment m_wayland{"WAYLAND_DISPLAY", std::nullopt};
    // Without a bus, so that no running instance of the emulator opens the window.
    const ScopedEnvironment m_bus{"DBUS_SESSION_BUS_ADDRESS", "unix:path=/no/such/bus"};
};

TEST_P(RealTerminal, OpensInFoldersOfAnyName)
{
    const QTemporaryDir parent;
    for (const QString &name : {u"plain"_s, u"bob's \"dir\" \\x"_s, u"two\nlines"_s, u"größe 🦊"_s,
                                u"-dash"_s, u"$HOME `id`; exit"_s, u"100% *"_s}) {
        const QString folder = parent.filePath(name);
        ASSERT_TRUE(QDir().mkdir(folder));
        EXPECT_EQ(shellFolder(folder), folder);
    }
}

INSTANTIATE_TEST_SUITE_P(Emulators, RealTerminal, testing::Values("xterm", "xfce4-terminal"),
                         [](const auto &row) {
                             std::string name = row.param;
                             std::erase(name, '-');
                             return name;
                         });

} // namespace portolan
