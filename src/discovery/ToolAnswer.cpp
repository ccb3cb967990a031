#include "ToolAnswer.h"

#include "BuiltinTools.h"

#include <optional>
#include <utility>

namespace portolan {

Shell::Result ToolAnswer::to(const QString &path, const QStringList &arguments, const Shell::Limits &limits)
{
    if (std::optional<QString> answer = BuiltinTools::answer(path, arguments))
        return {.output = std::move(*answer)};
    return Shell::run(path, arguments, limits);
}

bool ToolAnswer::isImmediate(const QString &path)
{
    return BuiltinTools::standInFor(path);
}

} // namespace portolan
