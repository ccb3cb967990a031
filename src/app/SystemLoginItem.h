#pragma once

#include "LoginItem.h"
#include "LoginItemFace.h"

namespace portolan {

/// The desktop's own login item, shown to the views.
class SystemLoginItem final : public LoginItemFace
{
    Q_OBJECT

public:
    using LoginItemFace::LoginItemFace;

    [[nodiscard]] bool isEnabled() const override
    {
        return LoginItem::status() == LoginItem::Status::enabled;
    }
    bool setEnabled(bool enabled) override { return LoginItem::setEnabled(enabled); }
};

} // namespace portolan
