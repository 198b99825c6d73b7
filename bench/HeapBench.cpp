// Pooled allocation beside the C library's, jemalloc, mimalloc and tcmalloc.
//
// One item is one allocation and its free, the first word written. Sizes are 8 to 256
// bytes, most of them 16 to 64; 2000 other objects are alive, but in pair_empty_heap. The
// heap's page search is run down first, since its first requests are not its usual ones.
// The peers are loaded beside the C library and replace nothing.
//
//     HeapBench --benchmark_enable_random_interleaving=true --benchmark_repetitions=5
#include "FirstRequests.h"

#include "TvAlloc.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include <dlfcn.h>

namespace {

using Take = void* (*)(std::size_t);
using Give = void (*)(void*);

struct Allocator {
    std::string name;
    Take take;
    Give give;
};

constexpr std::size_t kOthers = 2000;
constexpr std::size_t kSizes = 4096; // a power of two
constexpr std::size_t kSizeMask = kSizes - 1;

std::vector<std::size_t> makeSizes()
{
    std::mt19937 random(12345);
    std::vector<std::size_t> sizes(kSizes);
    for (std::size_t& size : sizes)
        size = random() % 10 < 8 ? 16 + random() % 49 : 8 + random() % 249;
    return sizes;
}
const std::vector<std::size_t> g_sizes = makeSizes();

void* takeWritten(const Allocator& a, std::size_t i)
{
    void* const object = a.take(g_sizes[i & kSizeMask]);
    *static_cast<std::uint64_t*>(object) = i;
    return object;
}

class Others {
public:
    explicit Others(const Allocator& a) : m_allocator(a)
    {
        for (std::size_t i = 0; i < kOthers; ++i)
            m_objects.push_back(takeWritten(a, i));
    }
    ~Others()
    {
        for (std::size_t i = 0; i < kOthers; ++i) {
            if (*static_cast<std::uint64_t*>(m_objects[i]) != i)
                std::abort(); // somebody else wrote into a living object
            m_allocator.give(m_objects[i]);
        }
    }

private:
    const Allocator& m_allocator;
    std::vector<void*> m_objects;
};

void pairInEmptyHeap(benchmark::State& state, const Allocator& a)
{
    std::size_t i = 0;
    for (auto _ : state)
        a.give(takeWritten(a, i++));
    state.SetItemsProcessed(state.iterations());
}

void pair(benchmark::State& state, const Allocator& a)
{
    Others others(a);
    pairInEmptyHeap(state, a);
}

void lifo32(benchmark::State& state, const Allocator& a)
{
    Others others(a);
    void* objects[32];
    std::size_t i = 0;
    for (auto _ : state) {
        for (void*& object : objects)
            object = takeWritten(a, i++);
        for (std::size_t k = 32; k-- > 0;)
            a.give(objects[k]);
    }
    state.SetItemsProcessed(state.iterations() * 32);
}

void fifo(benchmark::State& state, const Allocator& a, std::size_t count)
{
    Others others(a);
    std::vector<void*> objects(count);
    std::size_t i = 0;
    for (void*& object : objects)
        object = takeWritten(a, i++);
    std::size_t oldest = 0;
    for (auto _ : state) {
        a.give(objects[oldest]);
        objects[oldest] = takeWritten(a, i++);
        oldest = oldest + 1 == count ? 0 : oldest + 1;
    }
    state.SetItemsProcessed(state.iterations());
    for (void* object : objects)
        a.give(object);
}

void randomly(benchmark::State& state, const Allocator& a, std::size_t count)
{
    Others others(a);
    std::vector<void*> objects(count);
    std::size_t i = 0;
    for (void*& object : objects)
        object = takeWritten(a, i++);
    std::uint64_t bits = 88172645463325252u;
    for (auto _ : state) {
        bits ^= bits << 13;
        bits ^= bits >> 7;
        bits ^= bits << 17;
        void*& object = objects[static_cast<std::size_t>(((bits >> 32) * count) >> 32)];
        a.give(object);
        object = takeWritten(a, i++);
    }
    state.SetItemsProcessed(state.iterations());
    for (void* object : objects)
        a.give(object);
}

void batch(benchmark::State& state, const Allocator& a, std::size_t count)
{
    Others others(a);
    std::vector<void*> objects(count);
    for (auto _ : state) {
        for (std::size_t i = 0; i < count; ++i)
            objects[i] = takeWritten(a, i);
        for (void* object : objects)
            a.give(object);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(count));
}

void addPeer(std::vector<Allocator>& all, const char* name, const char* library, const char* take,
             const char* give)
{
    void* const handle = dlopen(library, RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) {
        std::fprintf(stderr, "no %s: %s\n", name, dlerror());
        return;
    }
    all.push_back(
        {name, reinterpret_cast<Take>(dlsym(handle, take)), reinterpret_cast<Give>(dlsym(handle, give))});
}

std::vector<Allocator> allocators()
{
    std::vector<Allocator> all = {{"tv", _tvMalloc, _tvFree}, {"glibc", std::malloc, std::free}};
    addPeer(all, "jemalloc", "libjemalloc.so.2", "malloc", "free");
    addPeer(all, "mimalloc", "libmimalloc.so.2", "mi_malloc", "mi_free");
    addPeer(all, "tcmalloc", "libtcmalloc_minimal.so.4", "tc_malloc", "tc_free");
    return all;
}

} // namespace

int main(int argc, char** argv)
{
    passTheFirstRequests();
    const std::vector<Allocator> all = allocators();
    const auto add = [&](const char* row, auto run) {
        for (const Allocator& a : all)
            benchmark::RegisterBenchmark((std::string("alloc/") + row + "/" + a.name).c_str(),
                                         [run, &a](benchmark::State& state) { run(state, a); });
    };
    add("pair", pair);
    add("pair_empty_heap", pairInEmptyHeap);
    add("lifo32", lifo32);
    add("fifo_1e3", [](auto& state, const Allocator& a) { fifo(state, a, 1000); });
    add("random_1e3", [](auto& state, const Allocator& a) { randomly(state, a, 1000); });
    add("random_1e5", [](auto& state, const Allocator& a) { randomly(state, a, 100000); });
    add("batch_1e3", [](auto& state, const Allocator& a) { batch(state, a, 1000); });
    add("batch_1e5", [](auto& state, const Allocator& a) { batch(state, a, 100000); });
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
