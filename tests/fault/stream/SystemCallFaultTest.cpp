// Each system call that a piece of work on files makes fails once in turn, below the C library
// and with each error that a disk has, or does half of what it was asked for. The caller is then
// told, or has what he asked for; no descriptor, no mapping, no memory and no name is left behind.

#include "FailNth.h"
#include "FailingSystemCalls.h"
#include "FileWorks.h"
#include "PooledHeap.h"
#include "Recorder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <sstream>
#include <string>
#include <tuple>

#include <unistd.h>

namespace {

struct Fault {
    const char* name;
    FailingSystemCalls::Kind kind;
    int error;
};

const Fault kFaults[] = {
    {"Eio", FailingSystemCalls::kFiles, EIO},
    {"Enospc", FailingSystemCalls::kFiles, ENOSPC},
    {"Eintr", FailingSystemCalls::kFiles, EINTR},
    {"Emfile", FailingSystemCalls::kFiles, EMFILE},
    {"Eacces", FailingSystemCalls::kFiles, EACCES},
    {"HalfOfIt", FailingSystemCalls::kFiles, FailingSystemCalls::kShort},
    {"NoMemory", FailingSystemCalls::kMemory, ENOMEM},
};

void PrintTo(const Fault& fault, std::ostream* out) { *out << fault.name; }

// How many mappings there are of files in the folder of `place`.
int mappingsOf(const Place& place)
{
    const std::string folder = std::filesystem::path(place.files.path("file")).parent_path().string();
    std::ifstream maps("/proc/self/maps");
    int count = 0;
    for (std::string line; std::getline(maps, line);)
        count += line.find(folder) != std::string::npos;
    return count;
}

// How many record locks this process holds, on whatever files.
int recordLocks()
{
    std::ifstream locks("/proc/locks");
    int count = 0;
    for (std::string line; std::getline(locks, line);) { // 1: POSIX ADVISORY READ 4711 08:01:99 0 EOF
        std::istringstream fields(line);
        std::string number, kind, strictness, access;
        long holder = 0;
        count += (fields >> number >> kind >> strictness >> access >> holder) && holder == getpid();
    }
    return count;
}

class SystemCallFault : public testing::TestWithParam<std::tuple<Work, Fault>> {
protected:
    void SetUp() override
    {
        if (!FailingSystemCalls::areAvailable())
            GTEST_SKIP() << "system calls cannot be caught here";
        runPageSearchDown();
        Place place; // what is made once and kept is made here
        Recorder recorder;
        ASSERT_FALSE(work().isTold(place));
        ASSERT_TRUE(work().isRight(place));
        ASSERT_EQ(mappingsOf(place), 0);
        ASSERT_EQ(openExclusively(place.name).status, Orna::eOk);
        ASSERT_EQ(recordLocks(), 0);
        openDescriptors();
    }

    static const Work& work()
    {
        static Work current;
        return current = std::get<0>(GetParam());
    }

    // One run in which the nth call fails; false when there was no such call.
    static bool run(const Fault& fault, int nth)
    {
        const HeapBalance balance;
        const long units = pooledUnitsInUse();
        const long descriptors = openDescriptors();
        bool fired = false;
        {
            Place place;
            Recorder recorder;
            bool told = false;
            {
                const FailingSystemCalls::Armed armed(fault.kind, fault.error, nth);
                told = work().isTold(place);
            }
            fired = FailingSystemCalls::haveFired();
            const long which = FailingSystemCalls::which();
            EXPECT_TRUE(told || work().isRight(place)) << nth << ", system call " << which;
            EXPECT_TRUE(!told || fired) << "told of a failure that was none";
            EXPECT_EQ(mappingsOf(place), 0) << nth << ", system call " << which;
            EXPECT_EQ(recordLocks(), 0) << nth << ", system call " << which;
            EXPECT_TRUE(TvFileStreamBufImpl::m_cstrAlreadyOpenFiles.empty()) << nth;
            EXPECT_EQ(openExclusively(place.name).status, Orna::eOk) << nth << ", system call " << which;
        }
        EXPECT_EQ(openDescriptors(), descriptors) << nth;
        EXPECT_EQ(pooledUnitsInUse(), units) << nth;
        return fired;
    }
};

TEST_P(SystemCallFault, IsToldOrMadeGoodAndLeavesNothing)
{
    int nth = 1;
    while (nth < 10000 && run(std::get<1>(GetParam()), nth) && !HasFailure())
        ++nth;
    RecordProperty("failed_calls", nth - 1);
    EXPECT_LT(nth, 10000);
    if (std::get<1>(GetParam()).error == EIO) {
        EXPECT_GT(nth, 2) << "no call was caught";
    }
}

INSTANTIATE_TEST_SUITE_P(Works, SystemCallFault,
                         testing::Combine(testing::ValuesIn(kWorks), testing::ValuesIn(kFaults)),
                         [](const auto& test) {
                             return std::string(std::get<0>(test.param).name) + std::get<1>(test.param).name;
                         });

} // namespace
