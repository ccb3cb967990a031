#pragma once

#include <QByteArray>
#include <QStringList>

#include <optional>

namespace portolan {

/// What a reader sees after `output` was written to an empty terminal: its lines without the space at their
/// ends, and without empty ones at the bottom. Lines break after `columns`, if given. Colours are ignored; an
/// unknown escape sequence shows as
/// "<?>".
[[nodiscard]] QStringList seenOnTerminal(const QByteArray &output, std::optional<int> columns = {});

} // namespace portolan
