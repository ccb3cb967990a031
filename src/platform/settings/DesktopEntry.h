#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

namespace portolan {

/// The text of a desktop entry file. What is not changed stays as it is, to the byte: other groups, comments,
/// keys that nobody here knows. Keys and values are those of the group [Desktop Entry], values as in the
/// file.
class DesktopEntry
{
public:
    explicit DesktopEntry(const QByteArray &text = {});

    /// The value of `key`; of several lines with the same key the last one counts.
    [[nodiscard]] std::optional<QByteArray> value(QByteArrayView key) const;
    /// Whether the value of `key` is true.
    [[nodiscard]] bool isTrue(QByteArrayView key) const;
    /// The texts of a ";"-separated value.
    [[nodiscard]] QList<QByteArray> list(QByteArrayView key) const;

    void set(QByteArrayView key, const QByteArray &value);
    void remove(QByteArrayView key);

    [[nodiscard]] QByteArray text() const;

    /// `text` as the value of a key of type string, and back.
    [[nodiscard]] static QByteArray escaped(const QString &text);
    [[nodiscard]] static QString unescaped(QByteArrayView value);

    /// The value of Exec that runs `program` with `arguments`.
    [[nodiscard]] static QByteArray exec(const QString &program, const QStringList &arguments);
    /// The program that a value of Exec runs, or an empty text.
    [[nodiscard]] static QString programOf(QByteArrayView exec);

private:
    [[nodiscard]] QList<qsizetype> linesWith(QByteArrayView key) const;
    [[nodiscard]] qsizetype endOfGroup();

    QList<QByteArray> m_lines;
};

} // namespace portolan
