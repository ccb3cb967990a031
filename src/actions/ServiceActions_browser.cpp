#include "ServiceActions.h"

#include "XdgOpen.h"

namespace portolan {

void ServiceActions::openInBrowser(const Service &service)
{
    XdgOpen::address(service.url());
}

} // namespace portolan
