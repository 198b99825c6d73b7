// A C++ program that does nothing: what starting one costs. Built twice, once with the library.
#include "ColdStart.h"

int main()
{
    tellStart();
    return 0;
}
