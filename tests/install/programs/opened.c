/* opened LIBRARY: uses a library that it opens while running, and that is gone afterwards. */
#include <dlfcn.h>
#include <stddef.h>
#include <stdio.h>
#include <string.h>

typedef void* (*Take)(size_t);
typedef void (*Give)(void*);
typedef int (*Widen)(unsigned, unsigned, const char*, int, wchar_t*, int);

int main(int argc, char** argv)
{
    int round;
    if (argc != 2)
        return 2;
    for (round = 0; round < 3; ++round) {
        void* const library = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
        Take take;
        Give give;
        Widen widen;
        wchar_t wide[4];
        void* memory;

        if (library == NULL) {
            fprintf(stderr, "%s\n", dlerror());
            return 3;
        }
        *(void**)&take = dlsym(library, "_tvMalloc");
        *(void**)&give = dlsym(library, "_tvFree");
        *(void**)&widen = dlsym(library, "MultiByteToWideChar");
        if (take == NULL || give == NULL || widen == NULL)
            return 4;
        memory = take(24);
        if (memory == NULL)
            return 5;
        memset(memory, 1, 24);
        give(memory);
        if (widen(1252, 0, "\xE9", -1, wide, 4) != 2 || wide[0] != 0xE9)
            return 6;
        if (dlclose(library) != 0)
            return 7;
    }
    if (dlopen(argv[1], RTLD_NOW | RTLD_NOLOAD) != NULL)
        return 8;
    puts("dlopen");
    return 0;
}
