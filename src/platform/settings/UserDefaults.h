// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonObject>
#include <QList>
#include <QString>

#include <optional>

namespace portolan {

/// The user's settings: strings, booleans and lists of integers under string keys, in one JSON file.
///
/// Every write is saved at once by replacing the file atomically. It is merged into what the file holds at
/// that moment, so that changes by other programs and unknown keys are kept. A file that does not hold a JSON
/// object counts as empty and is renamed to "<name>.broken-<n>" before it is replaced. If the file cannot be
/// written, values stay in memory and are saved with the next write. Main thread only.
class UserDefaults
{
public:
    enum class Access : quint8 {
        ReadWrite,
        ReadOnly, ///< writes stay in memory and are never saved
    };

    /// Reads the file at the absolute path `path`, which need not exist.
    explicit UserDefaults(QString path = defaultPath(), Access access = Access::ReadWrite);

    /// $XDG_CONFIG_HOME/portolan/settings.json; in ~/.config if that variable is not an absolute path.
    [[nodiscard]] static QString defaultPath();

    /// The value stored under `key`; none if there is none of this type.
    [[nodiscard]] std::optional<QString> string(QStringView key) const;
    /// The same.
    [[nodiscard]] std::optional<bool> boolean(QStringView key) const;
    /// The same.
    [[nodiscard]] std::optional<QList<qint64>> integers(QStringView key) const;

    void setString(QStringView key, const QString &value);
    void setBoolean(QStringView key, bool value);
    void setIntegers(QStringView key, const QList<qint64> &value);

private:
    [[nodiscard]] QJsonValue value(QStringView key) const;
    void setValue(QStringView key, const QJsonValue &value);
    void save();

    QString m_path;
    Access m_access;
    QJsonObject m_stored;  ///< the content of the file when it was last read or written
    QJsonObject m_unsaved; ///< values that could not be saved yet
};

} // namespace portolan
