// SPDX-License-Identifier: MIT
#pragma once

#include "Eventually.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>
#include <QTemporaryDir>

namespace portolan {

/// How a fake program was started.
struct StartRecord
{
    QStringList arguments;
    QStringList environment;
    QJsonObject descriptors; ///< the target of each open descriptor, by number
    QString folder;
    int process = 0;
    int session = 0;
    QString ignoredSignals; ///< a hexadecimal mask, as in /proc/PID/status
    QString blockedSignals;
};

/// A folder of fake programs, each of which records how it was started.
class FakePrograms
{
public:
    [[nodiscard]] QString folder() const { return m_folder.path(); }
    [[nodiscard]] QString path(const QString &name) const { return m_folder.filePath(name); }

    /// Adds a fake program called `name` and returns its path.
    QString install(const QString &name)
    {
        QDir().mkpath(QFileInfo(path(name)).path());
        if (!QFile::copy(QStringLiteral(PORTOLAN_FAKE_PROGRAM), path(name)))
            qFatal("the fake program cannot be copied");
        return path(name);
    }

    [[nodiscard]] bool wasStarted(const QString &name) const
    {
        return QFile::exists(path(name) + QStringLiteral(".json"));
    }

    /// Waits for the record of `name`; an empty one if it was not started within 30 seconds.
    [[nodiscard]] StartRecord record(const QString &name) const
    {
        QFile file(path(name) + QStringLiteral(".json"));
        if (!eventually([&] { return file.exists(); }) || !file.open(QIODevice::ReadOnly))
            return {};
        const QJsonObject json = QJsonDocument::fromJson(file.readAll()).object();
        return {
            .arguments = texts(json, "arguments"),
            .environment = texts(json, "environment"),
            .descriptors = json.value(QStringLiteral("descriptors")).toObject(),
            .folder = json.value(QStringLiteral("folder")).toString(),
            .process = json.value(QStringLiteral("process")).toInt(),
            .session = json.value(QStringLiteral("session")).toInt(),
            .ignoredSignals = json.value(QStringLiteral("ignoredSignals")).toString(),
            .blockedSignals = json.value(QStringLiteral("blockedSignals")).toString(),
        };
    }

private:
    static QStringList texts(const QJsonObject &json, const char *key)
    {
        QStringList list;
        for (const auto &text : json.value(QLatin1StringView(key)).toArray())
            list.append(text.toString());
        return list;
    }

    QTemporaryDir m_folder;
};

} // namespace portolan
