// SPDX-License-Identifier: MIT
#pragma once

namespace portolan {

class LoginItem;
class ServiceActions;
class ServiceStore;

/// The objects that the views of every window show and call.
struct RootContent
{
    ServiceStore &store;
    ServiceActions &actions;
    LoginItem &loginItem;
};

} // namespace portolan
