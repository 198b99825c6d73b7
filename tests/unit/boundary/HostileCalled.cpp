// Where the functions go that have a name of the library's and are not the library's.
#include <cstdio>
#include <cstdlib>

extern "C" __attribute__((visibility("default"))) void hostileCalled(const char* name)
{
    std::fprintf(stderr, "The library called %s of another module.\n", name);
    std::_Exit(1);
}
