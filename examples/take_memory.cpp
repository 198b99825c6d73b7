// Memory from the library: bytes, copies of text, pages, objects, and vectors that share.
#include <TvOsBase.h>

#include <cstdio>
#include <cwchar>

namespace {

struct Node : TvHeapOp { // `new Node` takes pooled memory and is null when there is none
    Node* next = nullptr;
};

} // namespace

int main()
{
    char* bytes = static_cast<char*>(_tvMalloc(20));
    if (!bytes)
        return 1;
    std::printf("at least 20: %s\n", _tvMsize(bytes) >= 20 ? "yes" : "no");
    if (void* larger = _tvRealloc(bytes, 400)) // null leaves the old memory as it is
        bytes = static_cast<char*>(larger);
    _tvFree(bytes);

    wchar_t* name = _tvStrdup(L"door");
    if (name)
        std::printf("%ls\n", name);
    _tvStrdupFree(name);

    void* page = tvAllocPageHeap(8192);
    tvFreePageHeap(page);

    Node* node = new Node;
    delete node;

    TvVector<int> layers;
    for (int i = 1; i <= 3; ++i)
        layers.append(i);
    TvVector<int> copy = layers; // shares the elements
    copy.at(0) = 100;            // now it has its own
    std::printf("%d %d\n", layers.at(0), copy.at(0));

    // begin() does not unshare: a writer asks for elements of its own first.
    TvVector<int> sorted = layers;
    sorted.copyBeforeWrite(0);
    *sorted.begin() = -1;
    std::printf("%d %d\n", layers.at(0), sorted.at(0));
}
