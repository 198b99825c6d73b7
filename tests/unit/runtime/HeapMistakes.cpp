// Makes one deliberate mistake with pooled memory, named by the argument; a memory tool
// is expected to stop it. Exit status 0 means that nobody saw it, 77 that there is no
// pooled memory to make mistakes with.
#include "PooledHeap.h"

#include <cstdio>
#include <cstring>
#include <string>

namespace {

char* volatile g_sink;

void overrunPage()
{
    g_sink = static_cast<char*>(tvAllocPageHeap(4096));
    g_sink[4096] = 1;
}

int make(const std::string& mistake)
{
    char* const unit = static_cast<char*>(_tvMalloc(20));
    g_sink = unit;
    if (mistake == "none")
        std::memset(g_sink, 1, 20);
    else if (mistake == "whole-unit") // what _tvMsize answers may be used
        std::memset(g_sink, 1, _tvMsize(unit));
    else if (mistake == "overrun")
        g_sink[20] = 1;
    else if (mistake == "underrun")
        g_sink[-1] = 1;
    else if (mistake == "page-overrun")
        overrunPage();
    if (mistake == "leak") {
        g_sink = nullptr;
        return 0;
    }
    _tvFree(unit);
    if (mistake == "use-after-free")
        g_sink[0] = 1;
    if (mistake == "use-after-resize") {
        char* const old = static_cast<char*>(_tvMalloc(20));
        g_sink = old;
        void* const moved = _tvRealloc(old, 200);
        g_sink[1] = 1;
        _tvFree(moved);
    }
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    if (!runPageSearchDown())
        return 77;
    // Others in use, so that the page and its block stay open.
    void* const neighbours[] = {_tvMalloc(20), _tvMalloc(20), _tvMalloc(200), tvAllocPageHeap(4096)};
    const long before = pooledUnitsInUse();
    make(argc > 1 ? argv[1] : "none");
    const long left = pooledUnitsInUse() - before;
    for (void* ptr : neighbours)
        _tvFree(ptr);
    if (left != 0) {
        std::fprintf(stderr, "%ld pooled units leaked\n", left);
        return 9;
    }
    return 0;
}
