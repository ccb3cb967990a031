#pragma once

namespace portolan {

class LoginItemFace;
class ServiceActionsFace;
class ServiceStore;

/// What the views show and act on: the same for every window.
struct RootContent
{
    ServiceStore &store;
    ServiceActionsFace &actions;
    LoginItemFace &loginItem;
};

} // namespace portolan
