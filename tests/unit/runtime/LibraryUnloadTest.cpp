// LibraryUnloadTest <library> <platform library> <module>: loading and unloading the libraries
// leaves the process as it was. The module is linked with them and uses every area; this program
// is not.
#include "CaseName.h"

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
std::string g_platformLibrary;
std::string g_module;

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

void expectNothingLoaded()
{
    for (const std::string& library : {g_library, g_platformLibrary, g_module})
        EXPECT_EQ(dlopen(library.c_str(), RTLD_NOW | RTLD_NOLOAD), nullptr) << library << " stayed loaded";
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
    expectNothingLoaded();
    return pooled;
}

// Every area of the library in a module that brings it along.
void loadModuleUseAllUnload()
{
    void* const module = dlopen(g_module.c_str(), RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(module, nullptr) << dlerror();
    const auto use = reinterpret_cast<const char* (*)()>(dlsym(module, "useEveryArea"));
    const char* const fault = use();
    EXPECT_EQ(fault, nullptr) << fault;
    dlclose(module);
    expectNothingLoaded();
}

void loadPlatformUseUnload()
{
    void* const library = dlopen(g_platformLibrary.c_str(), RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library, nullptr) << dlerror();
    EXPECT_NE(reinterpret_cast<unsigned int (*)()>(dlsym(library, "GetACP"))(), 0u);
    EXPECT_EQ(reinterpret_cast<int (*)(const wchar_t*)>(dlsym(library, "_wtoi"))(L"42"), 42);
    dlclose(library);
    expectNothingLoaded();
}

struct Round {
    const char* name;
    void (*run)();
};

const Round kRounds[] = {
    {"Library", [] { loadUseUnload(); }},
    {"PlatformLibrary", loadPlatformUseUnload},
    {"ModuleThatUsesAll", loadModuleUseAllUnload},
};

class LibraryUnload : public testing::TestWithParam<Round> {};

INSTANTIATE_TEST_SUITE_P(All, LibraryUnload, testing::ValuesIn(kRounds), nameOfCase<Round>);

TEST_P(LibraryUnload, AHundredRoundsLeaveTheMappingsAsTheyWere)
{
    GetParam().run();
    const auto before = mappings();
    for (int i = 0; i < 100; ++i)
        GetParam().run();
    EXPECT_EQ(mappings(), before);
}

std::ptrdiff_t openDescriptors()
{
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

TEST_P(LibraryUnload, AHundredRoundsLeaveNoDescriptorOpen)
{
    GetParam().run();
    const auto before = openDescriptors();
    for (int i = 0; i < 100; ++i)
        GetParam().run();
    EXPECT_EQ(openDescriptors(), before);
}

// The C library keeps some blocks of each size at hand and counts them as in use; ctest tells it
// not to. The smallest block that a round could lose takes 32 bytes.
TEST_P(LibraryUnload, AHundredRoundsLeaveNoMemoryInUse)
{
    for (int i = 0; i < 10; ++i)
        GetParam().run();
    const std::size_t before = mallinfo2().uordblks;
    for (int i = 0; i < 100; ++i)
        GetParam().run();
    EXPECT_LT(mallinfo2().uordblks, before + 100 * 32);
}

TEST(LibraryUnloadRange, IsReservedAgainAtTheSameAddress)
{
    EXPECT_TRUE(loadUseUnload());
    EXPECT_TRUE(loadUseUnload());
}

} // namespace

int main(int argc, char** argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    if (argc != 4)
        return 2;
    g_library = argv[1];
    g_platformLibrary = argv[2];
    g_module = argv[3];
    return RUN_ALL_TESTS();
}
