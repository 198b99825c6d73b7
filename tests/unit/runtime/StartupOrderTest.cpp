// In which order the built library constructs its static objects: the functions that the
// loader calls, in the order of the library's table, with the names that the compiler gave
// them (step and source file).
#include "TvAlloc.h"
#include "runtime/TvStartup.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#include <elf.h>
#include <link.h>

namespace {

struct Constructors {
    int step; // 0: none was given
    std::string file;
};

struct Library {
    std::string path;
    std::uintptr_t base;
    std::vector<std::uintptr_t> called;     // by the loader, in order
    std::vector<std::uintptr_t> calledLast; // by the loader at the end, from the last to the first
};

std::vector<std::uintptr_t> functionsOf(std::uintptr_t base, const ElfW(Dyn) * entry, int array,
                                        int arraySize)
{
    const std::uintptr_t* functions = nullptr;
    std::size_t size = 0;
    for (; entry != nullptr && entry->d_tag != DT_NULL; ++entry) {
        if (entry->d_tag == array)
            functions = reinterpret_cast<const std::uintptr_t*>(base + entry->d_un.d_ptr);
        else if (entry->d_tag == arraySize)
            size = entry->d_un.d_val / sizeof(std::uintptr_t);
    }
    return {functions, functions + size};
}

int findLibrary(dl_phdr_info* object, std::size_t, void* found)
{
    if (std::strstr(object->dlpi_name, "libTvOsBase.so") == nullptr)
        return 0;
    auto& library = *static_cast<Library*>(found);
    library.path = object->dlpi_name;
    library.base = object->dlpi_addr;
    const ElfW(Dyn)* entry = nullptr;
    for (int i = 0; i < object->dlpi_phnum; ++i)
        if (object->dlpi_phdr[i].p_type == PT_DYNAMIC)
            entry = reinterpret_cast<const ElfW(Dyn)*>(library.base + object->dlpi_phdr[i].p_vaddr);
    library.called = functionsOf(library.base, entry, DT_INIT_ARRAY, DT_INIT_ARRAYSZ);
    library.calledLast = functionsOf(library.base, entry, DT_FINI_ARRAY, DT_FINI_ARRAYSZ);
    return 1;
}

template<class Record>
Record recordAt(const std::string& file, std::size_t offset)
{
    Record record{};
    if (offset + sizeof record <= file.size())
        std::memcpy(&record, file.data() + offset, sizeof record);
    return record;
}

// Names of the library's functions, local ones too, by address.
std::map<std::uintptr_t, std::string> functionNames(const std::string& path)
{
    std::ifstream stream(path, std::ios::binary);
    const std::string file((std::istreambuf_iterator<char>(stream)), std::istreambuf_iterator<char>());
    const auto header = recordAt<ElfW(Ehdr)>(file, 0);
    const auto section = [&](std::size_t i) {
        return recordAt<ElfW(Shdr)>(file, header.e_shoff + i * header.e_shentsize);
    };
    std::map<std::uintptr_t, std::string> names;
    for (std::size_t i = 0; i < header.e_shnum; ++i) {
        const auto symbols = section(i);
        if (symbols.sh_type != SHT_SYMTAB)
            continue;
        const auto texts = section(symbols.sh_link);
        for (std::size_t at = 0; at < symbols.sh_size; at += sizeof(ElfW(Sym))) {
            const auto symbol = recordAt<ElfW(Sym)>(file, symbols.sh_offset + at);
            if (ELF64_ST_TYPE(symbol.st_info) == STT_FUNC)
                names[symbol.st_value] = file.c_str() + texts.sh_offset + symbol.st_name;
        }
    }
    return names;
}

std::vector<Constructors> readConstructors()
{
    Library library{};
    dl_iterate_phdr(findLibrary, &library);
    const auto names = functionNames(library.path);
    const std::string prefix = "_GLOBAL__sub_I"; // others are the compiler's and the tools'
    std::vector<Constructors> result;
    for (const std::uintptr_t function : library.called) {
        const auto found = names.find(function - library.base);
        if (found == names.end() || found->second.compare(0, prefix.size(), prefix) != 0)
            continue;
        const std::string name = found->second.substr(prefix.size()); // ".00240_File.cpp" or "_File.cpp"
        const int step = name[0] == '.' ? std::atoi(name.c_str() + 1) : 0;
        result.push_back({step, name.substr(name.find('_') + 1)});
    }
    return result;
}

const std::vector<Constructors>& constructorsInOrder()
{
    static const std::vector<Constructors> order = readConstructors();
    return order;
}

class StartupOrder : public ::testing::Test {
protected:
    void SetUp() override
    {
        _tvFree(_tvMalloc(1)); // the program needs the library
        if (m_order.empty())
            GTEST_SKIP() << "the library has no symbol table";
    }
    const std::vector<Constructors>& m_order = constructorsInOrder();
};

TEST(StartupSteps, AreDistinctAndAscending)
{
    EXPECT_TRUE(std::is_sorted(std::begin(TvStartup::kSteps), std::end(TvStartup::kSteps),
                               [](int a, int b) { return a <= b; }));
}

TEST(StartupSteps, LieAboveThoseOfTheImplementation) { EXPECT_GT(TvStartup::kSteps[0], 100); }

TEST_F(StartupOrder, EveryStaticObjectHasANamedStep)
{
    for (const Constructors& c : m_order)
        EXPECT_NE(std::find(std::begin(TvStartup::kSteps), std::end(TvStartup::kSteps), c.step),
                  std::end(TvStartup::kSteps))
            << c.file << " " << c.step;
}

TEST_F(StartupOrder, TheLoaderCallsThemInTheOrderOfTheSteps)
{
    EXPECT_TRUE(std::is_sorted(m_order.begin(), m_order.end(),
                               [](const Constructors& a, const Constructors& b) { return a.step < b.step; }));
}

TEST_F(StartupOrder, TheHeapIsLast)
{
    EXPECT_EQ(m_order.back().step, TvStartup::kGlobalHeap);
    EXPECT_EQ(m_order.back().file, "TvHeap.cpp");
}

TEST_F(StartupOrder, WhatUnmapsTheRangeIsCalledLast)
{
    Library library{};
    dl_iterate_phdr(findLibrary, &library);
    const auto names = functionNames(library.path);
    std::vector<std::string> ends;
    for (const std::uintptr_t function : library.calledLast) {
        const auto name = names.find(function - library.base);
        if (name != names.end() && name->second.compare(0, 6, "_sub_D") != 0) // the tools'
            ends.push_back(name->second);
    }
    ASSERT_FALSE(ends.empty());
    EXPECT_NE(ends.front().find("unmapRange"), std::string::npos) << ends.front();
}

struct FileCase {
    const char* name;
    const char* file;
    int step;
};

const FileCase kFileCases[] = {
    {"UserDefinedTable", "OrCodePageUserDefined.cpp", TvStartup::kUserDefinedTable},
    {"CharCategories", "TvCharCategory.cpp", TvStartup::kCharCategories},
    {"CodePageRegistry", "EkCodepages.cpp", TvStartup::kCodePageRegistry},
    {"MapFileName", "TvCharMapper.cpp", TvStartup::kMapFileName},
    {"BigFonts", "BigFont.cpp", TvStartup::kBigFonts},
    {"BigNumbers", "TvFCvtAllocator.cpp", TvStartup::kBigNumbers},
    {"OpenFiles", "TvFileRegistry.cpp", TvStartup::kOpenFiles},
};

class StartupFile : public ::testing::TestWithParam<FileCase> {};

TEST_P(StartupFile, TakesItsStep)
{
    const auto& order = constructorsInOrder();
    if (order.empty())
        GTEST_SKIP() << "the library has no symbol table";
    EXPECT_EQ(std::count_if(order.begin(), order.end(),
                            [](const Constructors& c) {
                                return c.file == GetParam().file && c.step == GetParam().step;
                            }),
              1);
}

INSTANTIATE_TEST_SUITE_P(All, StartupFile, ::testing::ValuesIn(kFileCases),
                         [](const auto& test) { return test.param.name; });

} // namespace
