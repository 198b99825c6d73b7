#include <TvOsBase.h>

#include <cstdio>

int main()
{
    TvLock* lock = createTvLock();
    lock->lock();
    lock->unlock();
    delete lock;
    std::puts("linked and ran");
}
