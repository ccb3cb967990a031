// Names of servers as the terminal program prints them: nothing may reach the terminal but text.
#include "Require.h"
#include "ServiceJson.h"
#include "ServiceTable.h"
#include "TerminalText.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

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
    if (size == 0)
        return 0;
    const int columns = data[0];
    const QString text = QString::fromUtf8(QByteArrayView(data + 1, qsizetype(size - 1)));
    const QString harmless = TerminalText::harmless(text);
    require(isHarmless(harmless));
    require(TerminalText::harmless(harmless) == harmless);
    require(TerminalText::width(TerminalText::elided(harmless, columns)) <= columns);
    require(TerminalText::width(TerminalText::elidedInTheMiddle(harmless, columns)) <= columns);

    const Service service{.pid = 1, .port = 3000, .command = text, .folderPath = text, .displayName = text};
    const QList<ListedService> services{{.service = service, .host = text}};
    const QList<StyledLine> table = ServiceTable::of(services, {.hasHosts = true});
    require(table.size() == 2);
    for (const StyledLine &line : table)
        for (const StyledText &part : line)
            require(isHarmless(part.text));
    const QByteArray json = ServiceJson::of(services, ServiceJson::Layout::oneLine);
    require(isHarmless(QString::fromUtf8(json.chopped(1))));
    const QJsonValue name = QJsonDocument::fromJson(json).array().first()[QStringLiteral("displayName")];
    require(name.isString());
    return 0;
}

} // namespace portolan
