// Appends one element at a time, and copies: TvVector beside std::vector and QVector.
#include "TvVector.h"

#include "FirstRequests.h"

#include <QVector>
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <vector>

namespace {

template<class T>
void append(TvVector<T>& v, T value)
{
    v.append(value);
}

template<class T>
void append(QVector<T>& v, T value)
{
    v.append(value);
}

template<class T>
void append(std::vector<T>& v, T value)
{
    v.push_back(value);
}

int lengthOf(const TvVector<int>& v) { return v.length(); }
int lengthOf(const TvVector<char>& v) { return v.length(); }
template<class Vector>
int lengthOf(const Vector& v)
{
    return static_cast<int>(v.size());
}

// The time is that of one whole vector of `count` elements; items are elements.
template<class Vector, class T, int count, bool reserved = false>
void BM_append(benchmark::State& state)
{
    for (auto _ : state) {
        Vector v;
        if (reserved)
            v.reserve(count);
        for (int i = 0; i < count; ++i)
            append(v, static_cast<T>(i));
        benchmark::DoNotOptimize(v.begin());
        if (lengthOf(v) != count || *(v.end() - 1) != static_cast<T>(count - 1))
            std::abort();
    }
    state.SetItemsProcessed(state.iterations() * count);
}

template<class Vector>
void BM_copy(benchmark::State& state)
{
    Vector v;
    for (int i = 0; i < 100; ++i)
        append(v, i);
    for (auto _ : state) {
        Vector copy(v);
        benchmark::DoNotOptimize(copy);
    }
    state.SetItemsProcessed(state.iterations());
}

#define TV_ALL(row, ...)                                                                                     \
    BENCHMARK_TEMPLATE(BM_append, TvVector < __VA_ARGS__)->Name("append/" row "/tv");                        \
    BENCHMARK_TEMPLATE(BM_append, std::vector < __VA_ARGS__)->Name("append/" row "/std_vector");             \
    BENCHMARK_TEMPLATE(BM_append, QVector < __VA_ARGS__)->Name("append/" row "/QVector")

TV_ALL("int_8", int >, int, 8);
TV_ALL("int_100", int >, int, 100);
TV_ALL("int_10000", int >, int, 10000);
TV_ALL("int_1000000", int >, int, 1000000);
TV_ALL("int_reserved_10000", int >, int, 10000, true);
TV_ALL("byte_10000", char >, char, 10000);
BENCHMARK_TEMPLATE(BM_copy, TvVector<int>)->Name("vector_copy/int100/tv");
BENCHMARK_TEMPLATE(BM_copy, std::vector<int>)->Name("vector_copy/int100/std_vector");
BENCHMARK_TEMPLATE(BM_copy, QVector<int>)->Name("vector_copy/int100/QVector");

} // namespace

int main(int argc, char** argv)
{
    passTheFirstRequests();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
