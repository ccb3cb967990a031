#include "ServiceActions.h"

#include "XdgOpen.h"

void ServiceActions::openInBrowser(const Service &service)
{
    XdgOpen::address(service.url());
}
