#include "XdgOpen.h"

#include "DetachedProgram.h"

using namespace Qt::StringLiterals;

namespace {

void open(const QString &target)
{
    const QString opener = DetachedProgram::find(u"xdg-open"_s);
    if (!opener.isEmpty())
        DetachedProgram::start(opener, {target});
}

} // namespace

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
