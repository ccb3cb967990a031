// SPDX-License-Identifier: MIT
#include "StatusIconTheme.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <QStandardPaths>

#include <algorithm>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

// The path of the icon in a folder of icon themes.
QString symbolicIcon(const QString &themes)
{
    return themes + "/hicolor/symbolic/apps/"_L1 + StatusIconTheme::iconName + ".svg"_L1;
}

bool holds(const QString &file, const QByteArray &content)
{
    QFile existing(file);
    return existing.open(QIODevice::ReadOnly) && existing.size() == content.size() &&
           existing.readAll() == content;
}

/// Writes a file for this user alone below the folder `root`, and the folders down to it.
bool write(const QString &root, const QString &file, const QByteArray &content)
{
    constexpr QFile::Permissions ownerOnly = QFile::ReadOwner | QFile::WriteOwner;
    QString folder = QFileInfo(file).path();
    if (!QDir().mkpath(folder))
        return false;
    for (; folder.size() > root.size(); folder = QFileInfo(folder).path())
        QFile::setPermissions(folder, ownerOnly | QFile::ExeOwner);
    QSaveFile out(file);
    return out.open(QIODevice::WriteOnly) && out.setPermissions(ownerOnly) &&
           out.write(content) == content.size() && out.commit();
}

} // namespace

bool StatusIconTheme::isRecoloured()
{
    const QStringList desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':');
    return std::ranges::any_of(desktops, [](const QString &desktop) {
        return desktop == "GNOME"_L1 || desktop == "KDE"_L1 || desktop == "MATE"_L1 || desktop == "XFCE"_L1;
    });
}

QString StatusIconTheme::pathWithIcon(const QByteArray &svg)
{
    QString installed = QDir::cleanPath(QCoreApplication::applicationDirPath() + "/../share/icons"_L1);
    if (QFile::exists(symbolicIcon(installed)))
        return installed;

    const QString runtime = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    if (runtime.isEmpty() || svg.isEmpty())
        return {};
    const QString extracted = runtime + "/portolan/icons"_L1;
    const QString file = symbolicIcon(extracted);
    return holds(file, svg) || write(runtime, file, svg) ? extracted : QString();
}

} // namespace portolan
