/* Prints what the environment makes of the system's code page and language; asks once
   more after the environment has changed. Also the proof that the header is C. */
#define _POSIX_C_SOURCE 200809L
#include "TvPlatformBase.h"

#include <stdio.h>
#include <stdlib.h>

int main(void)
{
    const unsigned int codePage = GetACP();
    const unsigned int lcid = GetSystemDefaultLCID();
    setenv("LC_ALL", "ko_KR.UTF-8", 1);
    if (GetACP() != codePage || GetSystemDefaultLCID() != lcid)
        return 1;
    printf("%u %04X\n", codePage, lcid);
    return 0;
}
