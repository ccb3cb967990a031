// SPDX-License-Identifier: MIT
#include "Autostart.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>

#include <algorithm>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

const QString fileName = u"portolan.desktop"_s;
constexpr qint64 maxEntrySize = 1024 * 1024;

std::optional<DesktopEntry> read(const QString &path)
{
    QFile file(path);
    // Reading a pipe or a device could block, and a huge file is not an entry.
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        return std::nullopt;
    return DesktopEntry(file.read(maxEntrySize));
}

bool isExecutable(const QString &program)
{
    return (QDir::isAbsolutePath(program) || !program.contains(u'/')) &&
           !QStandardPaths::findExecutable(program).isEmpty();
}

/// Whether the program that the entry starts still exists.
bool hasProgram(const DesktopEntry &entry)
{
    const auto exec = entry.value("Exec");
    const auto tryExec = entry.value("TryExec");
    return exec && isExecutable(DesktopEntry::programOf(*exec)) &&
           (!tryExec || isExecutable(DesktopEntry::unescaped(*tryExec)));
}

QStringList autostartFolders(QStringList configurationFolders)
{
    for (QString &folder : configurationFolders)
        folder += u"/autostart"_s;
    return configurationFolders;
}

/// The program to start at the next login. An AppImage runs from a temporary mount, so this is the image file
/// itself; $APPIMAGE counts only if this program is in $APPDIR, since both may be inherited from another one.
QString programToStart()
{
    const QString program = QCoreApplication::applicationFilePath();
    const QString mount = qEnvironmentVariable("APPDIR");
    const QString image = qEnvironmentVariable("APPIMAGE");
    const bool isOwnImage = !image.isEmpty() && !mount.isEmpty() && program.startsWith(mount + u'/');
    return isOwnImage ? image : program;
}

} // namespace

Autostart::Autostart(Session session)
    : m_session(std::move(session))
{}

Autostart Autostart::ofThisProgram()
{
    QStringList folders =
        autostartFolders(QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation));
    QString userFolder = folders.takeFirst();
    if (qEnvironmentVariableIsEmpty("XDG_CONFIG_HOME") && qEnvironmentVariableIsEmpty("HOME"))
        userFolder.clear();
    return Autostart({.userFolder = userFolder,
                      .systemFolders = folders,
                      .desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':', Qt::SkipEmptyParts),
                      .program = programToStart()});
}

QString Autostart::userFile() const
{
    return m_session.userFolder + u'/' + fileName;
}

std::optional<DesktopEntry> Autostart::systemEntry() const
{
    for (const QString &folder : m_session.systemFolders) {
        if (auto entry = read(folder + u'/' + fileName))
            return entry;
    }
    return std::nullopt;
}

bool Autostart::isEnabled() const
{
    if (m_session.userFolder.isEmpty() || m_session.program.isEmpty())
        return false;
    auto entry = read(userFile());
    if (!entry)
        entry = systemEntry();
    return entry && hasProgram(*entry) && !isTurnedOff(*entry);
}

/// Desktops disable an entry in different ways without removing it.
bool Autostart::isTurnedOff(const DesktopEntry &entry) const
{
    const auto namesThisDesktop = [this](const QList<QByteArray> &desktops) {
        return std::ranges::any_of(desktops, [this](const QByteArray &desktop) {
            return m_session.desktops.contains(QString::fromUtf8(desktop));
        });
    };
    return entry.value("Hidden") == "true" || entry.value("X-GNOME-Autostart-enabled") == "false" ||
           entry.value("X-MATE-Autostart-enabled") == "false" ||
           (entry.value("OnlyShowIn") && !namesThisDesktop(entry.list("OnlyShowIn"))) ||
           namesThisDesktop(entry.list("NotShowIn"));
}

bool Autostart::writeEntry(const QByteArray &lastLine) const
{
    if (!QDir().mkpath(m_session.userFolder))
        return false;
    QSaveFile file(userFile());
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther);
    file.write("[Desktop Entry]\n"
               "Type=Application\n"
               "Name=Portolan\n"
               "Comment=Development servers in the system tray\n"
               "Exec=" +
               DesktopEntry::exec(m_session.program, {u"--background"_s}) +
               "\n"
               "TryExec=" +
               DesktopEntry::escaped(m_session.program) +
               "\n"
               "Icon=portolan\n"
               "Terminal=false\n"
               "StartupNotify=false\n" +
               lastLine + '\n');
    return file.commit();
}

bool Autostart::add() const
{
    if (m_session.userFolder.isEmpty() || m_session.program.isEmpty())
        return false;
    return writeEntry("X-GNOME-Autostart-enabled=true");
}

bool Autostart::remove() const
{
    // A system-wide entry can only be overridden by one in the user's folder.
    return systemEntry() ? writeEntry("Hidden=true") : QFile::remove(userFile());
}

} // namespace portolan
