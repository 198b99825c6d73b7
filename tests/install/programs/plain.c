/* A C program as a user would write it: memory, text, numbers, file names. */
#include <TvAlloc.h>
#include <TvPlatformBase.h>
#include <TvPlatformText.h>

#include <stdio.h>
#include <string.h>

int main(void)
{
    char* bytes = _tvMalloc(100);
    wchar_t* copy = _tvStrdup(L"text");
    wchar_t wide[8];
    char back[8];
    wchar_t name[16];

    if (bytes == NULL || _tvMsize(bytes) < 100 || copy == NULL || wcscmp(copy, L"text") != 0)
        return 1;
    memset(bytes, 1, 100);
    _tvFree(bytes);
    _tvStrdupFree(copy);

    if (MultiByteToWideChar(1252, 0, "\xE9", -1, wide, 8) != 2 || wide[0] != 0xE9)
        return 2;
    if (WideCharToMultiByte(65001, 0, wide, -1, back, 8, NULL, NULL) != 3 || strcmp(back, "\xC3\xA9") != 0)
        return 3;
    if (_wtoi(L" -12 mm") != -12)
        return 4;
    if (_wsplitpath_s(L"/plans/hall.dwg", NULL, 0, NULL, 0, name, 16, NULL, 0) != 0 ||
        wcscmp(name, L"hall") != 0)
        return 5;
    puts("C");
    return 0;
}
