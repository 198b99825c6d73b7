// A program that uses the library before any constructor of a library has run, in its own
// static objects, and after the last of them.
#include "StaticUser.h"

#include <memory>
#include <new>

namespace {

alignas(StaticUser) unsigned char g_room[sizeof(StaticUser)];
StaticUser* g_first;

void late() { g_first->~StaticUser(); }

void early()
{
    g_first = new (g_room) StaticUser("first");
    std::atexit(late);
}

__attribute__((section(".preinit_array"), used)) void (*const g_early)() = early;

StaticUser g_own("program");

} // namespace

int main()
{
    if (!g_tvGlobalHeap.isResident(std::unique_ptr<void, decltype(&_tvFree)>(_tvMalloc(64), _tvFree).get()))
        return 1; // nothing below would say anything of the heap's range
    g_first->lookAtAll("main");
    g_own.lookAtAll("main");
    checkAreas("program", "main");
    g_first->lookAtAll("main"); // the map file was named anew
}
