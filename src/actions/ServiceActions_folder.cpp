#include "ServiceActions_p.h"

#include "FileManager.h"
#include "Launches.h"
#include "PrintedName.h"
#include "Terminal.h"

#include <QFileInfo>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

bool isExecutableFile(const QString &path)
{
    const QFileInfo file(path);
    return file.isFile() && file.isExecutable();
}

/// The folder of `service` as the system knows it. Discovery hands names on as they were printed. Only a name
/// with a backslash is looked up here, which could take long on a mount that does not answer.
std::optional<QString> folderOf(const Service &service)
{
    const auto &printed = service.folderPath;
    const bool mayBeEscaped = printed && printed->contains(u'\\') && !QFileInfo::exists(*printed);
    return mayBeEscaped ? std::optional(PrintedName::plain(*printed)) : printed;
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
    if (const auto folder = folderOf(service))
        FileManager::show(*folder);
}

void ServiceActions::openInEditor(const Service &service, const QStringList &candidates)
{
    const auto folder = folderOf(service);
    if (!folder)
        return;
    const auto editor = std::ranges::find_if(candidates, isExecutableFile);
    if (editor == candidates.end())
        return revealInFinder(service);
    // Most launchers hand the folder over and end. Some are the editor itself, which must neither hold up the
    // panel nor end with it.
    static Launches launches;
    launches.start(*editor, {*folder});
}

void ServiceActions::openInEditor(const Service &service)
{
    openInEditor(service, editorCandidates());
}

void ServiceActions::openInTerminal(const Service &service)
{
    if (const auto folder = folderOf(service))
        Terminal::open(*folder);
}
