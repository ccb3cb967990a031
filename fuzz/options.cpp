// SPDX-License-Identifier: MIT
// The command lines of both programs, one argument a line.
#include "CommandLine.h"
#include "Require.h"
#include "StartOptions.h"

#include <QByteArray>
#include <QList>

#include <algorithm>
#include <vector>

namespace portolan {

static void requireOneLine(const QString &text)
{
    require(!text.isEmpty() && !text.trimmed().contains(u'\n') && !text.contains(u'\x1b'));
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    QList<QByteArray> words{"program"};
    words += bytes.split('\n');
    std::vector<const char *> arguments;
    for (const QByteArray &word : words)
        arguments.push_back(word.constData());
    arguments.push_back(nullptr);
    const int count = int(words.size());

    const auto line = CommandLine::parse(count, arguments.data());
    if (const auto *reply = std::get_if<CommandLine::Reply>(&line); reply && reply->isError)
        requireOneLine(reply->text);
    const auto start = StartOptions::parse(count, arguments.data());
    if (const auto *reply = std::get_if<StartOptions::Reply>(&start); reply && reply->isError)
        requireOneLine(reply->text);
    return 0;
}

} // namespace portolan
