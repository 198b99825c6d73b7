#include "TvAlloc.h"

#include "PooledHeap.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>
#include <tuple>

namespace {

class TvAlloc : public ::testing::Test {
protected:
    static void SetUpTestSuite() { s_pooled = runPageSearchDown(); }
    static inline bool s_pooled = false;
};

TEST_F(TvAlloc, AboveTwoGiBIsRefused) { EXPECT_EQ(_tvMalloc(0x80000001), nullptr); }

TEST_F(TvAlloc, ExactlyTwoGiBIsAllowed)
{
    void* const ptr = _tvMalloc(0x80000000);
    EXPECT_NE(ptr, nullptr);
    _tvFree(ptr);
}

TEST_F(TvAlloc, TheUncheckedEntryAsksTheCLibrary) { EXPECT_EQ(_tvAllocate(~std::size_t(0) / 2), nullptr); }

TEST_F(TvAlloc, NothingIsAnEightByteUnit)
{
    if (!s_pooled)
        GTEST_SKIP();
    void* const ptr = _tvMalloc(0);
    EXPECT_EQ(_tvMsize(ptr), 8u);
    _tvFree(ptr);
}

TEST_F(TvAlloc, ResizeToNothingKeepsThePointer)
{
    char* const ptr = static_cast<char*>(_tvMalloc(20));
    std::strcpy(ptr, "still here");
    EXPECT_EQ(_tvRealloc(ptr, 0), ptr);
    EXPECT_STREQ(ptr, "still here");
    _tvFree(ptr);
}

TEST_F(TvAlloc, NullIsAccepted)
{
    _tvFree(nullptr);
    EXPECT_EQ(_tvMsize(nullptr), 0u);
    _tvStrdupFree(nullptr);
    _tvFreeDbg(nullptr, nullptr, 0);
    _tvDeallocateDbg(nullptr, nullptr, 0);
    EXPECT_EQ(_tvMsizeDbg(nullptr), 0u);
    EXPECT_EQ(_tvRealloc(nullptr, 0), nullptr);
}

TEST_F(TvAlloc, AResizeOfNullIsTheCLibrarys)
{
    void* const ptr = _tvRealloc(nullptr, 20);
    ASSERT_NE(ptr, nullptr);
    EXPECT_FALSE(g_tvGlobalHeap.isResident(ptr));
    _tvFree(ptr);
}

TEST_F(TvAlloc, AllocatingDebugVariantsHaveNoMemory)
{
    for (std::size_t size : {0, 1, 20, 4096, 100000}) {
        EXPECT_EQ(_tvMallocDbg(size, "file", 1), nullptr);
        EXPECT_EQ(_tvAllocateDbg(size, nullptr, 0), nullptr);
        EXPECT_EQ(_tvReallocDbg(nullptr, size, "file", 1), nullptr);
    }
}

TEST_F(TvAlloc, ADebugResizeLeavesTheBlockAlone)
{
    char* const ptr = static_cast<char*>(_tvMalloc(20));
    std::strcpy(ptr, "still here");
    EXPECT_EQ(_tvReallocDbg(ptr, 40, nullptr, 0), nullptr);
    EXPECT_EQ(_tvReallocateDbg(ptr, 40, nullptr, 0), nullptr);
    EXPECT_STREQ(ptr, "still here");
    _tvFree(ptr);
}

TEST_F(TvAlloc, TheFreeingDebugVariantsFree)
{
    const long before = pooledUnitsInUse();
    _tvFreeDbg(_tvMalloc(20), "file", 1);
    _tvDeallocateDbg(_tvMalloc(20), "file", 1);
    EXPECT_EQ(pooledUnitsInUse(), before);
}

TEST_F(TvAlloc, TheSizeIsTheUnits)
{
    if (!s_pooled)
        GTEST_SKIP();
    void* const ptr = _tvMalloc(20);
    EXPECT_EQ(_tvMsize(ptr), 24u);
    EXPECT_EQ(_tvAllocSizeOf(ptr), 24u);
    EXPECT_EQ(_tvMsizeDbg(ptr), 24u);
    EXPECT_EQ(_tvAllocSizeOfDbg(ptr), 24u);
    _tvFree(ptr);
}

TEST_F(TvAlloc, TheSizeOfAMallocBlockIsAtLeastTheRequest)
{
    void* const ptr = _tvMalloc(300);
    EXPECT_GE(_tvMsize(ptr), 300u);
    _tvFree(ptr);
}

TEST_F(TvAlloc, StrdupCopiesTheTerminatorToo)
{
    const std::wstring text(100, L'\x4E2D');
    wchar_t* const copy = _tvStrdup(text.c_str());
    EXPECT_EQ(copy, text);
    _tvStrdupFree(copy);
    wchar_t* const empty = _tvStrdup(L"");
    EXPECT_EQ(empty[0], L'\0');
    _tvStrdupFree(empty);
}

TEST_F(TvAlloc, APageIsOneMiB)
{
    if (!s_pooled)
        GTEST_SKIP();
    char* const page = static_cast<char*>(tvAllocPage());
    EXPECT_EQ(_tvMsize(page), 0x100000u);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(page) % 0x100000, 0u);
    page[0xFFFFF] = 1;
    tvFreePage(page);
}

struct Node : TvHeapOp {
    long value[3];
};

TEST_F(TvAlloc, ObjectsOfTvHeapOpComeFromThePools)
{
    if (!s_pooled)
        GTEST_SKIP();
    Node* const node = new Node;
    EXPECT_TRUE(g_tvGlobalHeap.isResident(node));
    EXPECT_EQ(_tvMsize(node), 24u);
    delete node;
}

struct Huge : TvHeapOp {
    char bytes[0x80000001];
};

TEST_F(TvAlloc, AnObjectThatFindsNoMemoryIsNull) { EXPECT_EQ(new Huge, nullptr); }

TEST_F(TvAlloc, PlacementNewOfATvHeapOpClassStandsWhereItIsTold)
{
    alignas(Node) unsigned char room[sizeof(Node)];
    EXPECT_EQ(static_cast<void*>(new (room) Node), room);
}

// --- Any pointer may go to any function ---------------------------------------------

using Take = void* (*)();
using Give = void (*)(void*);

struct TakeCase {
    const char* name;
    Take take;
};
struct GiveCase {
    const char* name;
    Give give;
};

const TakeCase kTakes[] = {
    {"Small", [] { return _tvMalloc(20); }},
    {"Block", [] { return _tvMalloc(4096); }},
    {"Malloc", [] { return _tvMalloc(5000); }},
    {"Page", [] { return tvAllocPage(); }},
    {"PageUnit", [] { return tvAllocPageHeap(4096); }},
    {"PageMalloc", [] { return tvAllocPageHeap(5000); }},
    {"Realloc", [] { return _tvRealloc(nullptr, 20); }},
    {"Strdup", [] { return static_cast<void*>(_tvStrdup(L"text")); }},
};

const GiveCase kGives[] = {
    {"Free", _tvFree},
    {"Deallocate", _tvDeallocate},
    {"StrdupFree", [](void* p) { _tvStrdupFree(p); }},
    {"FreeDbg", [](void* p) { _tvFreeDbg(p, nullptr, 0); }},
    {"DeallocateDbg", [](void* p) { _tvDeallocateDbg(p, nullptr, 0); }},
    {"FreePage", tvFreePage},
    {"FreePageHeap", tvFreePageHeap},
    {"ResizedSmaller", [](void* p) { _tvFree(_tvRealloc(p, 1)); }},
    {"ResizedLarger", [](void* p) { tvFreePage(_tvRealloc(p, 2000000)); }},
};

class TvAllocPairs : public ::testing::TestWithParam<std::tuple<TakeCase, GiveCase>> {};

TEST_P(TvAllocPairs, FreeingGivesTheUnitBack)
{
    runPageSearchDown();
    const auto& [take, give] = GetParam();
    const long before = pooledUnitsInUse();
    void* const ptr = take.take();
    ASSERT_NE(ptr, nullptr);
    EXPECT_GE(_tvMsize(ptr), 20u);
    give.give(ptr);
    EXPECT_EQ(pooledUnitsInUse(), before);
}

INSTANTIATE_TEST_SUITE_P(Any, TvAllocPairs,
                         ::testing::Combine(::testing::ValuesIn(kTakes), ::testing::ValuesIn(kGives)),
                         [](const auto& test) {
                             return std::string(std::get<0>(test.param).name) + "To" +
                                    std::get<1>(test.param).name;
                         });

// --- Resizing ---------------------------------------------------------------------------

struct ResizeCase {
    const char* name;
    std::size_t from;
    std::size_t to;
};

const ResizeCase kResizes[] = {
    {"WithinTheUnit", 20, 21}, {"Shrinking", 200, 10}, {"ToABlock", 100, 4096},
    {"FromABlock", 4096, 100}, {"ToMalloc", 100, 300}, {"ToManyPages", 100, 100000},
    {"ToOneByte", 64, 1},      {"SameSize", 64, 64},
};

class TvAllocResize : public ::testing::TestWithParam<ResizeCase> {};

TEST_P(TvAllocResize, APooledUnitMovesWithItsContent)
{
    if (!runPageSearchDown())
        GTEST_SKIP();
    const auto [name, from, to] = GetParam();
    auto* const ptr = static_cast<unsigned char*>(_tvMalloc(from));
    for (std::size_t i = 0; i < from; ++i)
        ptr[i] = static_cast<unsigned char>(i * 7 + 1);
    auto* const moved = static_cast<unsigned char*>(_tvRealloc(ptr, to));
    EXPECT_NE(moved, ptr);
    for (std::size_t i = 0; i < std::min(from, to); ++i)
        ASSERT_EQ(moved[i], static_cast<unsigned char>(i * 7 + 1)) << i;
    _tvFree(moved);
}

INSTANTIATE_TEST_SUITE_P(Sizes, TvAllocResize, ::testing::ValuesIn(kResizes),
                         [](const auto& test) { return test.param.name; });

TEST_F(TvAlloc, APageUnitResizesWithAllItsContent)
{
    if (!s_pooled)
        GTEST_SKIP();
    auto* const unit = static_cast<unsigned char*>(tvAllocPageHeap(8192));
    for (int i = 0; i < 8192; ++i)
        unit[i] = static_cast<unsigned char>(i * 7);
    auto* const moved = static_cast<unsigned char*>(_tvRealloc(unit, 10000));
    for (int i = 0; i < 8192; ++i)
        ASSERT_EQ(moved[i], static_cast<unsigned char>(i * 7)) << i;
    _tvFree(moved);
}

TEST_F(TvAlloc, AResizeThatFailsKeepsTheUnit)
{
    char* const ptr = static_cast<char*>(_tvMalloc(20));
    std::strcpy(ptr, "still here");
    EXPECT_EQ(_tvReallocate(ptr, ~std::size_t(0) / 2), nullptr);
    EXPECT_STREQ(ptr, "still here");
    _tvFree(ptr);
}

TEST_F(TvAlloc, WhileFreesAreDisabledPooledUnitsStay)
{
    if (!s_pooled)
        GTEST_SKIP();
    void* const unit = _tvMalloc(20);
    void* const page = tvAllocPage();
    const long before = pooledUnitsInUse();
    g_tvGlobalHeap.m_freeDisabled = true;
    _tvFree(unit);
    tvFreePage(page);
    EXPECT_EQ(pooledUnitsInUse(), before);
    _tvFree(_tvMalloc(5000));                 // from malloc: freed
    void* const moved = _tvRealloc(unit, 30); // a resize frees the old unit all the same
    EXPECT_EQ(pooledUnitsInUse(), before);
    g_tvGlobalHeap.m_freeDisabled = false;
    _tvFree(moved);
    tvFreePage(page);
    EXPECT_EQ(pooledUnitsInUse(), before - 2);
}

} // namespace
