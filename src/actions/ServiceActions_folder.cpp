#include "ServiceActions_p.h"

#include "FileManager.h"
#include "Launches.h"
#include "Terminal.h"

#include <QFileInfo>

#include <algorithm>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

bool isExecutableFile(const QString &path)
{
    const QFileInfo file(path);
    return file.isFile() && file.isExecutable();
}

} // namespace

QStringList ServiceActions::editorCandidates()
{
    return {
        u"/usr/local/bin/code"_s,
        u"/opt/homebrew/bin/code"_s,
        u"/usr/local/bin/cursor"_s,
        u"/opt/homebrew/bin/cursor"_s,
    };
}

void ServiceActions::revealInFinder(const Service &service)
{
    if (service.folderPath)
        FileManager::show(*service.folderPath);
}

void ServiceActions::openInEditor(const Service &service, const QStringList &candidates)
{
    if (!service.folderPath)
        return;
    const auto editor = std::ranges::find_if(candidates, isExecutableFile);
    if (editor == candidates.end())
        return revealInFinder(service);
    // Most launchers hand the folder over and end. Some are the editor itself, which must neither hold up the
    // panel nor end with it.
    static Launches launches;
    launches.start(*editor, {*service.folderPath});
}

void ServiceActions::openInEditor(const Service &service)
{
    openInEditor(service, editorCandidates());
}

void ServiceActions::openInTerminal(const Service &service)
{
    if (service.folderPath)
        Terminal::open(*service.folderPath);
}

} // namespace portolan
