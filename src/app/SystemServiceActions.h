#pragma once

#include "ServiceActions.h"
#include "ServiceActionsFace.h"

namespace portolan {

/// What the views ask for, done for real.
class SystemServiceActions final : public ServiceActionsFace
{
    Q_OBJECT

public:
    using ServiceActionsFace::ServiceActionsFace;

    void stop(const Service &service) override { ServiceActions::stop(service); }
    void openInBrowser(const Service &service) override { ServiceActions::openInBrowser(service); }
    void copyURL(const Service &service) override { ServiceActions::copyURL(service); }
    void copyPort(const Service &service) override { ServiceActions::copyPort(service); }
    void revealInFinder(const Service &service) override { ServiceActions::revealInFinder(service); }
    void openInEditor(const Service &service) override { ServiceActions::openInEditor(service); }
    void openInTerminal(const Service &service) override { ServiceActions::openInTerminal(service); }
};

} // namespace portolan
