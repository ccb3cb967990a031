#pragma once

#include <QByteArray>

#include <optional>

namespace portolan {

/// What a key means to the living list.
enum class Key : quint8 { quit, up, down, pageUp, pageDown, home, end };

/// Makes keys of the characters that a terminal sends for them.
class KeyReader
{
public:
    /// The key that `character` completes. Nothing where more has to come, and for other keys.
    [[nodiscard]] std::optional<Key> read(char character);

private:
    QByteArray m_sequence; ///< what came from an Escape on
};

} // namespace portolan
