#include "ToolPaths.h"

#include "ToolQuestions.h"

#include <QFileInfo>

#include <algorithm>

namespace portolan {

namespace {

bool isExecutableFile(const QString &path)
{
    const QFileInfo file(path);
    return file.isFile() && file.isExecutable();
}

} // namespace

QString ToolPaths::lsof()
{
    return firstExecutable(ToolQuestions::lsofPaths());
}

QString ToolPaths::ps()
{
    return firstExecutable(ToolQuestions::psPaths());
}

QString ToolPaths::firstExecutable(const QStringList &candidates)
{
    const auto found = std::ranges::find_if(candidates, isExecutableFile);
    return found == candidates.end() ? candidates.first() : *found;
}

} // namespace portolan
