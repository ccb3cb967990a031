// SPDX-License-Identifier: MIT
// Names of servers as the terminal program prints them: only plain text may reach the terminal. Also lists
// from another machine.
#include "Require.h"
#include "ServiceJson.h"
#include "ServiceTable.h"
#include "TerminalText.h"

#include <algorithm>
#include <clocale>

namespace portolan {

static bool isHarmless(QStringView text)
{
    return std::ranges::none_of(text, [](QChar character) {
        const char16_t code = character.unicode();
        return code < 0x20 || (code >= 0x7f && code < 0xa0) || (code >= 0x202a && code <= 0x202e) ||
               (code >= 0x2066 && code <= 0x2069);
    });
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    static const bool isUtf8 = std::setlocale(LC_CTYPE, "C.UTF-8"); // which widths depend on
    if (size == 0 || !isUtf8)
        return 0;
    const int columns = data[0];
    const QString text = QString::fromUtf8(QByteArrayView(data + 1, qsizetype(size - 1)));
    const QString harmless = TerminalText::harmless(text);
    require(isHarmless(harmless));
    require(TerminalText::harmless(harmless) == harmless);
    require(TerminalText::width(TerminalText::elided(harmless, columns)) <= columns);
    require(TerminalText::width(TerminalText::elidedInTheMiddle(harmless, columns)) <= columns);

    const ListedService listed{
        .service = {.pid = 1, .port = 3000, .command = text, .folderPath = text, .displayName = text}};
    for (const auto &shown : {std::optional<int>(), std::optional(columns)}) {
        const QList<StyledLine> table = ServiceTable::of({listed}, {.columns = shown});
        require(table.size() == 2);
        for (const StyledText &part : table.first() + table.last())
            require(isHarmless(part.text));
    }
    const QByteArray json = ServiceJson::of({listed}, QJsonDocument::Compact);
    require(isHarmless(QString::fromUtf8(json.chopped(1))));
    const auto read = ServiceJson::read(json, QStringLiteral("host"));
    require(read && read->size() == 1);
    (void)ServiceJson::read(QByteArray(reinterpret_cast<const char *>(data), qsizetype(size)),
                            QStringLiteral("host")); // as from another machine
    return 0;
}

} // namespace portolan
