#pragma once

#include <QByteArray>

#include <optional>

namespace portolan {

/// What a key means to the live view.
enum class Key : quint8 { quit, up, down, pageUp, pageDown, home, end };

/// Reads keys from the characters and escape sequences that a terminal sends for them.
class KeyReader
{
public:
    /// The key that `character` completes. Nothing where the sequence is incomplete, and for other keys.
    [[nodiscard]] std::optional<Key> read(char character);

private:
    QByteArray m_sequence; ///< the escape sequence read so far, from its Escape on
};

} // namespace portolan
