// A week of drawing sessions in one process: the results are the same whichever way they are
// computed, and the memory in use at the end of a day does not grow.
//
// TV_TEST_SCALE makes the days longer; ctest --preset long works through millions of operations.
#include "DrawingSession.h"

#include "OpenDescriptors.h"
#include "PooledHeap.h"
#include "TestScale.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include <malloc.h>
#include <unistd.h>

namespace {

constexpr int kDays = 7;

// What the process holds at the end of a day.
struct Footprint {
    long units;        ///< of the pooled heap
    std::size_t bytes; ///< of malloc
    long residentKilobytes;
    long descriptors;
};

Footprint footprint()
{
    long pages = 0;
    long resident = 0;
    std::ifstream("/proc/self/statm") >> pages >> resident;
    return {pooledUnitsInUse(), mallinfo2().uordblks, resident * (sysconf(_SC_PAGESIZE) / 1024),
            openDescriptors()};
}

// Works a week; the hash of each day, and the footprint at its end.
struct Week {
    std::vector<std::uint64_t> hashes;
    std::vector<Footprint> footprints;
};

Week workOneWeek(const SessionWays& ways, long stepsADay)
{
    Week week;
    week.footprints.reserve(kDays);
    week.hashes.reserve(kDays);
    DrawingSession session(ways, testSeed(20261121));
    for (int day = 0; day < kDays; ++day) {
        week.hashes.push_back(session.workOneDay(stepsADay));
        EXPECT_EQ(session.wrong(), "") << ways.name << ", day " << day;
        week.footprints.push_back(footprint());
    }
    return week;
}

long stepsADay() { return scaled(4000); }

std::vector<SessionWays> allWays()
{
    std::vector<SessionWays> ways;
    const TvDetail::KernelList list = TvDetail::runnableKernels();
    for (int i = 0; i < list.count; ++i)
        ways.push_back({list.sets[i]->name, list.sets[i], i == 0});
    return ways;
}

TEST(Session, ResultsAreTheSameWhicheverWayTheyAreComputed)
{
    const std::vector<SessionWays> ways = allWays();
    std::vector<std::uint64_t> plain;
    for (const SessionWays& way : ways) {
        const std::vector<std::uint64_t> hashes = workOneWeek(way, stepsADay()).hashes;
        if (plain.empty())
            plain = hashes;
        EXPECT_EQ(hashes, plain) << way.name;
    }
}

TEST(Session, MemoryAtTheEndOfADayDoesNotGrow)
{
    const bool hasRange = runPageSearchDown();
    const auto begin = std::chrono::steady_clock::now();
    const Week week = workOneWeek(allWays().back(), stepsADay());
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begin;
    const Footprint& first = week.footprints[1]; // what is made once is there by then
    const Footprint& last = week.footprints.back();
    std::printf(
        "%ld operations in %.1f s; at the end of day 2 and 7: %ld and %ld units, %zu and %zu bytes of "
        "malloc, %ld and %ld KiB resident\n",
        kDays * stepsADay(), took.count(), first.units, last.units, first.bytes, last.bytes,
        first.residentKilobytes, last.residentKilobytes);
    if (hasRange) {
        EXPECT_EQ(last.units, first.units);
    }
    EXPECT_EQ(last.descriptors, first.descriptors);
#ifndef __SANITIZE_ADDRESS__ // which keeps what was freed
    EXPECT_LE(last.bytes, first.bytes + 65536);
    EXPECT_LE(last.residentKilobytes, first.residentKilobytes + 8192);
#endif
}

} // namespace
