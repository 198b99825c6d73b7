/* The two conversion functions, called from C. */
#include "TvPlatformText.h"

int platformTextWideFromC(const char* text, wchar_t* dst, int dstLen);
int platformTextBytesFromC(const wchar_t* text, char* dst, int dstLen);

int platformTextWideFromC(const char* text, wchar_t* dst, int dstLen)
{
    return MultiByteToWideChar(1252, 0, text, -1, dst, dstLen);
}

int platformTextBytesFromC(const wchar_t* text, char* dst, int dstLen)
{
    return WideCharToMultiByte(1252, 0, text, -1, dst, dstLen, NULL, NULL);
}
