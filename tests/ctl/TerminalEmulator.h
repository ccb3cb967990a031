#pragma once

#include <QByteArray>
#include <QStringList>

/// What a reader sees after `output` was written to an empty terminal: its lines without the space at their
/// ends, and without empty ones at the bottom. Colours are ignored; an unknown escape sequence shows as
/// "<?>".
[[nodiscard]] QStringList seenOnTerminal(const QByteArray &output);
