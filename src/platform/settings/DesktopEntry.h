#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>

#include <optional>

namespace portolan {

/// What a desktop entry file says. Keys and values are those of the group [Desktop Entry], values as they
/// stand in the file.
class DesktopEntry
{
public:
    explicit DesktopEntry(const QByteArray &text);

    /// The value of `key`; of several lines with the same key the last one counts.
    [[nodiscard]] std::optional<QByteArray> value(const QByteArray &key) const;
    /// Whether the value of `key` is true.
    [[nodiscard]] bool isTrue(const QByteArray &key) const;
    /// The texts of a ";"-separated value.
    [[nodiscard]] QList<QByteArray> list(const QByteArray &key) const;

    /// `text` as the value of a key of type string, and back.
    [[nodiscard]] static QByteArray escaped(const QString &text);
    [[nodiscard]] static QString unescaped(QByteArrayView value);

    /// The value of Exec that runs `program` with `arguments`.
    [[nodiscard]] static QByteArray exec(const QString &program, const QStringList &arguments);
    /// The program that a value of Exec runs, or an empty text.
    [[nodiscard]] static QString programOf(QByteArrayView exec);

private:
    QHash<QByteArray, QByteArray> m_values;
};

} // namespace portolan
