// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>

#include <optional>

namespace portolan {

/// The keys and raw values of the group [Desktop Entry] of a desktop entry file.
class DesktopEntry
{
public:
    explicit DesktopEntry(const QByteArray &text);

    /// The raw value of `key`; the last one if it occurs several times.
    [[nodiscard]] std::optional<QByteArray> value(const QByteArray &key) const;
    /// The elements of a ";"-separated value.
    [[nodiscard]] QList<QByteArray> list(const QByteArray &key) const;

    /// Escapes and unescapes a value of type string.
    [[nodiscard]] static QByteArray escaped(const QString &text);
    [[nodiscard]] static QString unescaped(QByteArrayView value);

    /// A value of Exec that runs `program` with `arguments`.
    [[nodiscard]] static QByteArray exec(const QString &program, const QStringList &arguments);
    /// The program in a value of Exec; empty if there is none.
    [[nodiscard]] static QString programOf(QByteArrayView exec);

private:
    QHash<QByteArray, QByteArray> m_values;
};

} // namespace portolan
