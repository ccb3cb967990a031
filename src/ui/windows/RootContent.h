#pragma once

namespace portolan {

class LoginItemFace;
class ServiceActionsFace;
class ServiceStore;

/// The objects that the views of every window show and call.
struct RootContent
{
    ServiceStore &store;
    ServiceActionsFace &actions;
    LoginItemFace &loginItem;
};

} // namespace portolan
