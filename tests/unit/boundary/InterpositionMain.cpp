// InterpositionMain MODULE: loads a module that uses every area of the library. The functions
// that this program, or a library before the others, has under the library's names are not to
// be called. The module's own calls go to what it is linked with.
#include <cstdio>

#include <dlfcn.h>

int main(int, char** argv)
{
    // The library's calls were bound when the program started; the module's are bound now.
    void* const module = dlopen(argv[1], RTLD_NOW | RTLD_DEEPBIND);
    if (module == nullptr) {
        std::fprintf(stderr, "%s\n", dlerror());
        return 1;
    }
    const auto use = reinterpret_cast<const char* (*)()>(dlsym(module, "useEveryArea"));
    const char* const fault = use();
    if (fault != nullptr)
        std::fprintf(stderr, "fails at %s\n", fault);
    return fault != nullptr;
}
