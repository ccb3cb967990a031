#include "ServiceActions.h"

#include "Pasteboard.h"

namespace portolan {

using namespace Qt::StringLiterals;

void ServiceActions::copyURL(const Service &service)
{
    Pasteboard::setText(u"http://localhost:"_s + QString::number(service.port));
}

void ServiceActions::copyPort(const Service &service)
{
    Pasteboard::setText(QString::number(service.port));
}

} // namespace portolan
