// A program that needs the library, and a module whose static object uses it.
#include "EveryArea.h"

extern "C" void useTheModule();

int main()
{
    EveryArea::comeToTheRange();
    useTheModule();
}
