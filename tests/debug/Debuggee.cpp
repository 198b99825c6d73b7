// Debuggee: values for a debugger to show; stops in show() with all of them in reach.
#include <TvOsBase.h>

#include <cstdint>
#include <cstdlib>

#include <sys/mman.h>

namespace {

struct Values {
    TvVector<int> empty;
    TvVector<int> three;
    TvVector<wchar_t> wide;
    TvStringA noText;
    TvStringA latin;
    TvStringA japanese;
    TvStringA shared;
    TvStringA damaged;
    CStdStr<wchar_t> title;
    Orna::ErrorStatus missing = Orna::eFileNotFound;
    Orna::ErrorStatus hosts = static_cast<Orna::ErrorStatus>(4711);
    std::uintptr_t garbage = 16;
    void* unit = nullptr;
    void* freedUnit = nullptr;
    void* pages = nullptr;
    void* foreign = nullptr;
};

TvStringA tagged(const char* text, int codepage)
{
    TvStringA string(text);
    string.setCodepage(codepage);
    return string;
}

// The heap's first requests for a page fall back to the C library; this goes past them.
void* pooled(void* (*take)(std::size_t), std::size_t size)
{
    for (int i = 0; i < 20000; ++i) {
        void* const ptr = take(size);
        if (g_tvGlobalHeap.isResident(ptr))
            return ptr;
        std::free(ptr);
    }
    return nullptr;
}

} // namespace

extern "C" [[gnu::noinline]] void show(const Values& values)
{
    __asm__ volatile("" : : "r"(&values) : "memory");
}

int main()
{
    Values values;
    for (int i = 1; i <= 3; ++i)
        values.three.append(i * 10);
    TvVector<int> alias(values.three);
    for (const wchar_t unit : {L'\u00D8', wchar_t(0xD83D), wchar_t(0xDE00), wchar_t(0xD800), L'\0'})
        values.wide.append(unit);
    values.latin = tagged("\xD8 30 \"x\"", 1252);
    values.japanese = tagged("\x95\xBD\x96\xCA\x90\x7D", 932);
    values.shared = values.latin;
    values.damaged = tagged("a\x81", 1252);
    values.title = L"Plan \u00D8\n";
    values.unit = pooled(_tvMalloc, 20);
    values.freedUnit = _tvMalloc(20);
    void* const behind = _tvMalloc(20); // so that free units form a list, not a run
    values.foreign = std::malloc(20);
    values.pages = pooled(tvAllocPageHeap, 8192);
    _tvFree(values.freedUnit);
    // gdb would write all of the reserved range to a core file.
    madvise(TvHeapConfigurator::pStartAddress, std::size_t(8000) << 20, MADV_DONTDUMP);
    show(values);
    std::free(values.foreign);
    _tvFree(behind);
    return values.unit && values.pages ? 0 : 1;
}
