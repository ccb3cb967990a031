#include "StatusIconTheme.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <QStandardPaths>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

// The path of the icon in a folder of icon themes.
QString symbolicIcon(const QString &themes)
{
    return themes + "/hicolor/symbolic/apps/"_L1 + StatusIconTheme::IconName + ".svg"_L1;
}

bool holds(const QString &file, const QByteArray &content)
{
    QFile existing(file);
    return existing.open(QIODevice::ReadOnly) && existing.size() == content.size() &&
           existing.readAll() == content;
}

bool write(const QString &file, const QByteArray &content)
{
    if (!QDir().mkpath(QFileInfo(file).path()))
        return false;
    QSaveFile out(file);
    return out.open(QIODevice::WriteOnly) && out.write(content) == content.size() && out.commit();
}

} // namespace

QString StatusIconTheme::pathWithIcon(const QByteArray &svg)
{
    const QString installed = QDir::cleanPath(QCoreApplication::applicationDirPath() + "/../share/icons"_L1);
    if (QFile::exists(symbolicIcon(installed)))
        return installed;

    const QString runtime = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    if (runtime.isEmpty() || svg.isEmpty())
        return {};
    const QString extracted = runtime + "/portolan/icons"_L1;
    const QString file = symbolicIcon(extracted);
    return holds(file, svg) || write(file, svg) ? extracted : QString();
}

} // namespace portolan
