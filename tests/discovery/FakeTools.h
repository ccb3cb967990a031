// SPDX-License-Identifier: MIT
#pragma once

#include "ProcessFacts.h"
#include "ToolSource.h"

#include <QFile>
#include <QFileInfo>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace portolan {

/// Fake lsof and ps: shell scripts in a private directory that do what the test has set for each kind of
/// call, and record how they were called.
class FakeTools
{
public:
    FakeTools()
    {
        write(lsof(), "#!/bin/sh\n"
                      "cd \"${0%/*}\" || exit\n"
                      "echo \"$*\" >> lsof-calls\n"
                      "case $1 in\n"
                      "-nP) . ./listing ;;\n"
                      "-a) . \"./cwd-$3\" ;;\n"
                      "esac\n");
        write(ps(), "#!/bin/sh\n"
                    "cd \"${0%/*}\" || exit\n"
                    "echo \"$*\" >> ps-calls\n"
                    ". \"./ps-$4\"\n");
        setExecutable(lsof());
        setExecutable(ps());
    }

    [[nodiscard]] QString path(const QString &name) const { return m_directory.filePath(name); }
    [[nodiscard]] QString lsof() const { return path(QStringLiteral("lsof")); }
    [[nodiscard]] QString ps() const { return path(QStringLiteral("ps")); }

    /// The actions of the tools, as shell code, for the listeners, a working folder, and statistics.
    void onListing(const QByteArray &script) const { write(path(QStringLiteral("listing")), script + '\n'); }
    void onCwd(qint32 pid, const QByteArray &script) const
    {
        write(path(QStringLiteral("cwd-%1").arg(pid)), script + '\n');
    }
    void onPs(qint32 pid, const QByteArray &script) const
    {
        write(path(QStringLiteral("ps-%1").arg(pid)), script + '\n');
    }

    /// Lists a process on `port` and prepares valid answers about it.
    void addServer(qint32 pid, const QByteArray &command, const QByteArray &name, const QByteArray &folder)
    {
        m_listing += "echo p" + QByteArray::number(pid) + "; echo 'c" + command + "'; echo PTCP; echo 'n" +
                     name + "'\n";
        onListing(m_listing);
        onCwd(pid, "echo p" + QByteArray::number(pid) + "; echo 'n" + folder + "'");
        onPs(pid, "echo '   01:30  0.5  1024'");
    }

    [[nodiscard]] QStringList lsofCalls() const { return lines(path(QStringLiteral("lsof-calls"))); }
    [[nodiscard]] QStringList psCalls() const { return lines(path(QStringLiteral("ps-calls"))); }
    void forgetCalls() const
    {
        QFile::remove(path(QStringLiteral("lsof-calls")));
        QFile::remove(path(QStringLiteral("ps-calls")));
    }

    /// A source that uses these tools.
    [[nodiscard]] ToolSource::Options options() const
    {
        ToolSource::Options options;
        options.lsof = lsof();
        options.ps = ps();
        return options;
    }

    static void write(const QString &path, const QByteArray &bytes)
    {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(bytes);
    }
    static void setExecutable(const QString &path)
    {
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

private:
    static QStringList lines(const QString &path)
    {
        return QString::fromUtf8(contentsOf(path)).split(u'\n', Qt::SkipEmptyParts);
    }

    QTemporaryDir m_directory;
    QByteArray m_listing;
};

} // namespace portolan
