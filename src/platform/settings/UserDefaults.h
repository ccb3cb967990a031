#pragma once

#include <QJsonObject>
#include <QList>
#include <QString>

namespace portolan {

/// The user's settings: texts, booleans and lists of integers under string keys, in one JSON file.
///
/// Every write goes to the file at once and replaces it as a whole, so that a reader and a crash find either
/// the old file or the new one. It is laid over what the file holds at that moment: other programs' changes
/// and keys that nobody here knows stay. A file that cannot be read as a JSON object counts as empty and is
/// renamed to "<name>.broken-<n>" before it is replaced. Where the file cannot be written, values live in
/// memory and are tried again with the next write. Main thread only.
class UserDefaults
{
public:
    enum class Access : quint8 {
        readWrite,
        readOnly, ///< writes stay in memory; the disk is never touched
    };

    enum class Presence : quint8 {
        absent, ///< no such key, or null
        wrongType,
        present,
    };

    /// What is stored under a key, if it is of the type asked for.
    template <typename T>
    struct Reading
    {
        Presence presence = Presence::absent;
        T value{}; ///< means something only when present

        explicit operator bool() const { return presence == Presence::present; }
        friend bool operator==(const Reading &, const Reading &) = default;
    };

    /// Reads the file at the absolute `path`, which need not exist, and keeps its content.
    explicit UserDefaults(QString path = defaultPath(), Access access = Access::readWrite);

    /// $XDG_CONFIG_HOME/portolan/settings.json, in ~/.config where that variable holds no absolute path.
    [[nodiscard]] static QString defaultPath();

    [[nodiscard]] Reading<QString> string(QStringView key) const;
    [[nodiscard]] Reading<bool> boolean(QStringView key) const;
    /// One element that is no whole number makes the whole list `wrongType`.
    [[nodiscard]] Reading<QList<qint64>> integers(QStringView key) const;

    void setString(QStringView key, const QString &value);
    void setBoolean(QStringView key, bool value);
    void setIntegers(QStringView key, const QList<qint64> &value);

private:
    [[nodiscard]] QJsonValue value(QStringView key) const;
    void setValue(QStringView key, const QJsonValue &value);
    void save();

    QString m_path;
    Access m_access;
    QJsonObject m_stored;  ///< the file, as last seen
    QJsonObject m_unsaved; ///< what was set and is not in the file
};

} // namespace portolan
