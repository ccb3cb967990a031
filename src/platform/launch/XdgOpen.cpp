// SPDX-License-Identifier: MIT
#include "XdgOpen.h"

#include "DetachedProgram.h"

#include <QStandardPaths>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

QString opener()
{
    return QStandardPaths::findExecutable(u"xdg-open"_s);
}

/// `url` encoded for the command line; empty if it is not an http or https address with a host.
QString webAddress(const QUrl &url)
{
    const bool isWeb = url.scheme() == u"http"_s || url.scheme() == u"https"_s;
    return isWeb && url.isValid() && !url.host().isEmpty() ? QString::fromLatin1(url.toEncoded()) : QString();
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
    if (const QString address = webAddress(url); !address.isEmpty())
        open(address);
}

bool XdgOpen::addressWatched(const QUrl &url, std::chrono::milliseconds timeout)
{
    const QString program = opener();
    const QString address = webAddress(url);
    if (program.isEmpty() || address.isEmpty())
        return false;
    return DetachedProgram::startAndWatch(program, {address}, timeout).value_or(0) == 0;
}

void XdgOpen::folder(const QString &folder)
{
    open(folder);
}

} // namespace portolan
