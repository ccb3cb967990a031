// SPDX-License-Identifier: MIT
#pragma once

#include "HomeFolder.h"
#include "Printers.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace portolan {

/// Runs the real portolanctl, without a display and with private settings. The test's servers count as
/// development servers because they run in a folder in the home folder.
class PortolanctlTest : public testing::Test
{
protected:
    struct Outcome
    {
        int status = -1; ///< -1: it crashed, or did not end
        QByteArray output;
        QByteArray error;
    };

    PortolanctlTest()
    {
        EXPECT_TRUE(m_folder.isValid());
        EXPECT_TRUE(QDir(m_folder.path()).mkdir(QStringLiteral("shop")));
        EXPECT_TRUE(QDir(m_folder.path()).mkdir(QStringLiteral("config")));
    }

    /// The folder of the servers, which are named "shop" after it.
    [[nodiscard]] QString folder() const { return m_folder.filePath(QStringLiteral("shop")); }
    [[nodiscard]] QString configFolder() const { return m_folder.filePath(QStringLiteral("config")); }

    /// The arguments that exclude other servers of the machine.
    [[nodiscard]] QStringList ownOnly() const
    {
        return {QStringLiteral("--search"), QFileInfo(m_folder.path()).fileName()};
    }

    void prepare(QProcess &process) const
    {
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), configFolder());
        environment.remove(QStringLiteral("DISPLAY"));
        environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
        process.setProcessEnvironment(environment);
    }

    [[nodiscard]] Outcome run(const QStringList &arguments) const
    {
        QProcess process;
        prepare(process);
        process.start(program, arguments);
        return finished(process);
    }

    /// Runs a script of the shell in which "$1" is portolanctl.
    [[nodiscard]] Outcome runInShell(const QString &script) const
    {
        QProcess process;
        prepare(process);
        process.start(QStringLiteral("/bin/sh"),
                      {QStringLiteral("-c"), script, QStringLiteral("sh"), program});
        return finished(process);
    }

    [[nodiscard]] static Outcome finished(QProcess &process)
    {
        if (!process.waitForFinished(60'000) || process.exitStatus() != QProcess::NormalExit)
            return {};
        return {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
    }

    const QString program = QStringLiteral(PORTOLANCTL);

private:
    QTemporaryDir m_folder{HomeFolder::path() + QStringLiteral("/portolan-test-XXXXXX")};
};

} // namespace portolan
