#include "EveryArea.h"

extern "C" __attribute__((visibility("default"))) const char* useEveryArea()
{
    return EveryArea::firstFault();
}
