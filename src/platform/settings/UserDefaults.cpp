// SPDX-License-Identifier: MIT
#include "UserDefaults.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QMetaType>
#include <QSaveFile>

#include <algorithm>
#include <utility>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

/// Settings are a few hundred bytes; a larger file is not one of ours.
constexpr qint64 maxSize = qint64(1) << 20;
constexpr QFile::Permissions ownerOnly = QFile::ReadOwner | QFile::WriteOwner;

/// The JSON object in the file at `path`; an empty one if there is no file, no value if the file holds
/// anything else.
std::optional<QJsonObject> readObject(const QString &path)
{
    const QFileInfo info(path);
    if (!info.exists())
        return QJsonObject();
    // Opening a pipe would block until it has a writer.
    if (!info.isFile() || info.size() > maxSize)
        return std::nullopt;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QJsonDocument document = QJsonDocument::fromJson(file.read(maxSize));
    if (!document.isObject())
        return std::nullopt;
    return document.object();
}

/// Renames the file to the first free "<path>.broken-<n>"; false if that cannot be done.
bool moveAside(const QString &path)
{
    for (int n = 1;; ++n) {
        const QString aside = path + u".broken-"_s + QString::number(n);
        if (QFile::rename(path, aside))
            return true;
        if (!QFileInfo::exists(aside))
            return false;
    }
}

bool makeFolder(const QString &folder)
{
    if (QFileInfo::exists(folder))
        return true;
    return QDir().mkpath(folder) && QFile::setPermissions(folder, ownerOnly | QFile::ExeOwner);
}

bool writeObject(const QString &path, const QJsonObject &object)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.setPermissions(ownerOnly);
    file.write(QJsonDocument(object).toJson());
    return file.commit();
}

QJsonObject merged(QJsonObject below, const QJsonObject &above)
{
    for (auto entry = above.begin(); entry != above.end(); ++entry)
        below.insert(entry.key(), entry.value());
    return below;
}

bool isInteger(const QJsonValue &value)
{
    return value.toVariant().metaType() == QMetaType::fromType<qlonglong>();
}

} // namespace

UserDefaults::UserDefaults(QString path, Access access)
    : m_path(std::move(path))
    , m_access(access)
    , m_stored(readObject(m_path).value_or(QJsonObject()))
{}

QString UserDefaults::defaultPath()
{
    QString folder = qEnvironmentVariable("XDG_CONFIG_HOME");
    if (!QDir::isAbsolutePath(folder))
        folder = QDir::homePath() + u"/.config"_s;
    return folder + u"/portolan/settings.json"_s;
}

std::optional<QString> UserDefaults::string(QStringView key) const
{
    const QJsonValue stored = value(key);
    return stored.isString() ? std::optional(stored.toString()) : std::nullopt;
}

std::optional<bool> UserDefaults::boolean(QStringView key) const
{
    const QJsonValue stored = value(key);
    return stored.isBool() ? std::optional(stored.toBool()) : std::nullopt;
}

std::optional<QList<qint64>> UserDefaults::integers(QStringView key) const
{
    const QJsonValue stored = value(key);
    const QJsonArray array = stored.toArray();
    if (!stored.isArray() || !std::all_of(array.begin(), array.end(), isInteger))
        return std::nullopt;
    QList<qint64> integers;
    for (const auto element : array)
        integers.append(element.toInteger());
    return integers;
}

void UserDefaults::setString(QStringView key, const QString &value)
{
    setValue(key, value);
}

void UserDefaults::setBoolean(QStringView key, bool value)
{
    setValue(key, value);
}

void UserDefaults::setIntegers(QStringView key, const QList<qint64> &value)
{
    QJsonArray array;
    for (const qint64 integer : value)
        array.append(integer);
    setValue(key, array);
}

QJsonValue UserDefaults::value(QStringView key) const
{
    return m_unsaved.contains(key) ? m_unsaved.value(key) : m_stored.value(key);
}

void UserDefaults::setValue(QStringView key, const QJsonValue &value)
{
    m_unsaved.insert(key, value);
    if (m_access == Access::ReadWrite)
        save();
}

void UserDefaults::save()
{
    if (!makeFolder(QFileInfo(m_path).absolutePath()))
        return;
    const std::optional<QJsonObject> onDisk = readObject(m_path);
    const QJsonObject wanted = merged(onDisk.value_or(QJsonObject()), m_unsaved);
    // Loading the settings sets all of them again, so an unchanged file must not be rewritten.
    const bool saved = onDisk == wanted || ((onDisk || moveAside(m_path)) && writeObject(m_path, wanted));
    if (!saved)
        return;
    m_stored = wanted;
    m_unsaved = {};
}

} // namespace portolan
