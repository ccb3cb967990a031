#pragma once

#include "ServiceActions.h"
#include "ServiceActionsFace.h"
#include "ServiceStore.h"

namespace portolan {

/// What the views ask for, done for real.
class SystemServiceActions final : public ServiceActionsFace
{
    Q_OBJECT

public:
    /// For the services of `store`, which must outlive this.
    explicit SystemServiceActions(const ServiceStore &store)
        : m_store(store)
    {}

    void stop(const Service &service) override { ServiceActions::stop(service, m_store.identityOf(service)); }
    void openInBrowser(const Service &service) override { ServiceActions::openInBrowser(service); }
    void copyURL(const Service &service) override { ServiceActions::copyURL(service); }
    void copyPort(const Service &service) override { ServiceActions::copyPort(service); }
    void revealInFinder(const Service &service) override { ServiceActions::revealInFinder(service); }
    void openInEditor(const Service &service) override { ServiceActions::openInEditor(service); }
    void openInTerminal(const Service &service) override { ServiceActions::openInTerminal(service); }

private:
    const ServiceStore &m_store;
};

} // namespace portolan
