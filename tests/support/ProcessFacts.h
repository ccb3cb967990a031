// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QList>
#include <QString>

#include <chrono>
#include <functional>
#include <thread>

#include <sys/types.h>
#include <sys/wait.h>

namespace portolan {

// Facts about processes in /proc.

/// Blocks until `condition` is true; returns false if it is not within 30 seconds.
inline bool waitUntil(const std::function<bool()> &condition)
{
    const QDeadlineTimer deadline(std::chrono::seconds(30));
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

/// The state of a process in /proc/PID/stat ('Z': exited but not reaped); '\0' if there is no such process.
inline char processState(pid_t pid)
{
    QFile file(QStringLiteral("/proc/%1/stat").arg(pid));
    if (!file.open(QIODevice::ReadOnly))
        return '\0';
    const QByteArray facts = file.readAll();
    const qsizetype nameEnd = facts.lastIndexOf(')');
    return facts.size() > nameEnd + 2 ? facts[nameEnd + 2] : '\0';
}

inline bool isRunning(pid_t pid)
{
    const char state = processState(pid);
    return state != '\0' && state != 'Z';
}

inline qsizetype entryCount(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::System).size();
}

inline qsizetype openDescriptors()
{
    return entryCount(QStringLiteral("/proc/self/fd"));
}

inline qsizetype threads()
{
    return entryCount(QStringLiteral("/proc/self/task"));
}

/// The children of this process, including zombies.
inline QList<pid_t> children()
{
    QList<pid_t> children;
    for (const QString &thread :
         QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile file(QStringLiteral("/proc/self/task/%1/children").arg(thread));
        if (!file.open(QIODevice::ReadOnly))
            continue;
        for (const QByteArray &pid : file.readAll().simplified().split(' ')) {
            if (!pid.isEmpty())
                children.append(pid.toInt());
        }
    }
    return children;
}

/// Reaps the children that earlier tests have left.
inline void collectChildren()
{
    waitUntil([] { return waitpid(-1, nullptr, WNOHANG) < 0; });
}

inline QByteArray contentsOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace portolan
