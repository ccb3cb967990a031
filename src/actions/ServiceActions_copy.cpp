#include "ServiceActions.h"

#include "Clipboard.h"

namespace portolan {

using namespace Qt::StringLiterals;

void ServiceActions::copyURL(const Service &service)
{
    Clipboard::setText(u"http://localhost:"_s + QString::number(service.port));
}

void ServiceActions::copyPort(const Service &service)
{
    Clipboard::setText(QString::number(service.port));
}

} // namespace portolan
