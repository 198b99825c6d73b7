// A program that needs the library, and a module whose static object uses it.
#include "TvAlloc.h"

extern "C" void useTheModule();

constexpr int kFirstRequests = 8200;

int main()
{
    for (int i = 0; i < kFirstRequests; ++i) // from then on memory comes from the heap's range
        _tvFree(_tvMalloc(4096));
    useTheModule();
}
