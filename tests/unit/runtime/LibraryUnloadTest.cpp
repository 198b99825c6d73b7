// LibraryUnloadTest <library>: loading and unloading it leaves the process as it was.
// Not linked to the library.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

#include <dlfcn.h>
#include <malloc.h>

namespace {

std::string g_library;

#ifdef TV_HEAP_FIRST_ADDRESS
constexpr std::uintptr_t kFirstAddress = TV_HEAP_FIRST_ADDRESS;
#else
constexpr std::uintptr_t kFirstAddress = 0x1000000000;
#endif

// Mapped ranges but those of stack and C heap, which grow on their own.
std::multiset<std::string> mappings()
{
    std::multiset<std::string> result;
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);)
        if (line.find("[heap]") == std::string::npos && line.find("[stack]") == std::string::npos)
            result.insert(line);
    return result;
}

// A round of real use; true when memory came from the library's range.
bool loadUseUnload()
{
    void* const library = dlopen(g_library.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        ADD_FAILURE() << dlerror();
        return false;
    }
    using Take = void* (*)(std::size_t);
    using Give = void (*)(void*);
    const auto take = reinterpret_cast<Take>(dlsym(library, "_tvMalloc"));
    const auto give = reinterpret_cast<Give>(dlsym(library, "_tvFree"));
    bool pooled = false;
    for (int i = 0; i < 8200; ++i) {
        void* const ptr = take(4096);
        const auto address = reinterpret_cast<std::uintptr_t>(ptr);
        pooled |= address % 4096 == 0 && address >> 33 == kFirstAddress >> 33;
        give(ptr);
    }
    static_cast<void>(take(20)); // in use at unload: goes with the range
    dlclose(library);
    EXPECT_EQ(dlopen(g_library.c_str(), RTLD_NOW | RTLD_NOLOAD), nullptr) << "it stayed loaded";
    return pooled;
}

TEST(LibraryUnload, AHundredRoundsLeaveTheMappingsAsTheyWere)
{
    loadUseUnload();
    const auto before = mappings();
    for (int i = 0; i < 100; ++i)
        loadUseUnload();
    EXPECT_EQ(mappings(), before);
}

std::ptrdiff_t openDescriptors()
{
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

TEST(LibraryUnload, AHundredRoundsLeaveNoDescriptorOpen)
{
    loadUseUnload();
    const auto before = openDescriptors();
    for (int i = 0; i < 100; ++i)
        loadUseUnload();
    EXPECT_EQ(openDescriptors(), before);
}

// The C library keeps some blocks of each size at hand and counts them as in use: it has
// enough of them after a few rounds. The smallest block that a round could lose takes 32 bytes.
TEST(LibraryUnload, AHundredRoundsLeaveNoMemoryInUse)
{
    for (int i = 0; i < 50; ++i)
        loadUseUnload();
    const std::size_t before = mallinfo2().uordblks;
    for (int i = 0; i < 100; ++i)
        loadUseUnload();
    EXPECT_LT(mallinfo2().uordblks, before + 100 * 32);
}

TEST(LibraryUnload, TheRangeIsReservedAgainAtTheSameAddress)
{
    EXPECT_TRUE(loadUseUnload());
    EXPECT_TRUE(loadUseUnload());
}

} // namespace

int main(int argc, char** argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    g_library = argc > 1 ? argv[1] : "";
    return RUN_ALL_TESTS();
}
