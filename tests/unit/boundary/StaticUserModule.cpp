// A module with a static object that uses the library.
#include "StaticUser.h"

namespace {

StaticUser g_user("module");

} // namespace

extern "C" __attribute__((visibility("default"))) void useTheModule() { g_user.lookAtAll("main"); }
