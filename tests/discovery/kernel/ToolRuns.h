#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace portolan {

/// The three invocations, as discovery makes them.
struct Invocation
{
    QString path;
    QStringList arguments;

    [[nodiscard]] static Invocation listeners();
    [[nodiscard]] static Invocation workingDirectory(int pid);
    [[nodiscard]] static Invocation stats(int pid);
};

/// Who asks.
enum class User { self, nobody };

/// What the real tool prints, in the locale that discovery runs it in.
[[nodiscard]] QByteArray realAnswer(const Invocation &invocation, User user = User::self);
/// What the built-in one prints; as another user, that of a fresh process.
[[nodiscard]] QByteArray builtinAnswer(const Invocation &invocation, User user = User::self);

} // namespace portolan
