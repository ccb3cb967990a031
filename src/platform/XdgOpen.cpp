#include "XdgOpen.h"

#include "DetachedProgram.h"

using namespace Qt::StringLiterals;

namespace {

QString opener()
{
    return DetachedProgram::find(u"xdg-open"_s);
}

void open(const QString &target)
{
    if (const QString program = opener(); !program.isEmpty())
        DetachedProgram::start(program, {target});
}

} // namespace

bool XdgOpen::isInstalled()
{
    return !opener().isEmpty();
}

void XdgOpen::address(const QUrl &url)
{
    const bool isWeb = url.scheme() == u"http"_s || url.scheme() == u"https"_s;
    if (isWeb && url.isValid() && !url.host().isEmpty())
        open(QString::fromLatin1(url.toEncoded()));
}

void XdgOpen::folder(const QString &folder)
{
    open(folder);
}
