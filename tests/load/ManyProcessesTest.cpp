// Many processes open one file, change it and are killed at random, through the library's
// exclusive opens: for a second and a half, with TV_TEST_SCALE=40 for the minute of
// ctest --preset long. TV_TEST_SEED makes another run of it.
#include "TvFileStreamBuf.h"

#include "FileStreams.h"
#include "TestFiles.h"
#include "TestScale.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <new>
#include <random>
#include <string>
#include <utility>

#include <sys/mman.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

namespace {

constexpr int kWorkers = 6;
constexpr int kRecords = 16;
constexpr long kTooMany = 100000;          // kills without a start: something hangs
constexpr std::uint32_t kRecordSize = 512; // never across pages: the system writes all of it or nothing

struct Record {
    std::uint64_t number; // how often the file was changed before
    std::uint64_t writer;
    unsigned char text[kRecordSize - 3 * sizeof(std::uint64_t)];
    std::uint64_t sum;
};
static_assert(sizeof(Record) == kRecordSize);

std::uint64_t sumOf(const Record& record)
{
    std::uint64_t sum = 0xCBF29CE484222325 ^ record.number ^ record.writer;
    for (const unsigned char byte : record.text)
        sum = (sum ^ byte) * 0x100000001B3;
    return sum;
}

Record makeRecord(std::uint64_t number, std::uint64_t writer)
{
    Record record{};
    record.number = number;
    record.writer = writer;
    std::memset(record.text, static_cast<int>(number % 256), sizeof record.text);
    record.sum = sumOf(record);
    return record;
}

// What all processes see.
struct Shared {
    std::atomic<pid_t> holder{0};          // who has the file open exclusively; may be dead
    std::atomic<pid_t> doomed{0};          // who is being killed
    std::atomic<std::uint64_t> changes{0}; // of the file, as far as they were told of
    std::atomic<long> opened{0}, refused{0}, read{0};
    std::atomic<long> killedHolders{0};
    std::atomic<long> secondHolders{0}, tornRecords{0}, overwritten{0}, lostChanges{0}, staleNames{0},
        otherFailures{0};
};

class SharedMemory {
public:
    SharedMemory()
        : m_shared(new (mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1,
                             0)) Shared)
    {
    }
    ~SharedMemory() { munmap(m_shared, sizeof(Shared)); }
    SharedMemory(const SharedMemory&) = delete;
    SharedMemory& operator=(const SharedMemory&) = delete;
    Shared* operator->() const { return m_shared; }
    Shared& operator*() const { return *m_shared; }

private:
    Shared* m_shared;
};

// One process's work on the file, until it is killed.
class Worker {
public:
    Worker(Shared& shared, const std::wstring& name, std::uint64_t seed)
        : m_shared(shared), m_name(name), m_random(seed)
    {
    }

    [[noreturn]] void run()
    {
        for (;;) {
            if (m_random() % 16 == 0)
                readAlong();
            else
                change();
            pauseUpTo(kPause); // who comes without a pause is always in the others' way
        }
    }

private:
    static constexpr std::uint64_t kPause = 4000000; // nanoseconds
    static constexpr std::uint64_t kShortPause = 300000;

    void pauseUpTo(std::uint64_t nanoseconds)
    {
        const timespec pause = {0, static_cast<long>(m_random() % nanoseconds)};
        nanosleep(&pause, nullptr);
    }

    // A reader keeps exclusive opens away as long as it is there.
    void readAlong()
    {
        const auto file = openIn(m_name);
        if (file.status != Orna::eOk || read(*file, 16).size() != 16)
            ++m_shared.otherFailures;
        pauseUpTo(kShortPause);
        ++m_shared.read;
    }

    void change()
    {
        const auto file = openExclusively(m_name);
        if (file.status == Orna::eFileLocked)
            ++m_shared.refused;
        else if (file.status != Orna::eOk || !hasFile(*file))
            ++m_shared.otherFailures;
        const bool isOpen = file.status == Orna::eOk;
        if (TvFileStreamBufImpl::m_cstrAlreadyOpenFiles.size() != (isOpen ? 1u : 0u))
            ++m_shared.staleNames;
        if (!isOpen)
            return;
        ++m_shared.opened;
        enter();
        changeRecord(*file);
        m_shared.holder = 0; // before the lock goes
        file->close();
    }

    // Another holder may only be one that is killed, whose locks the system has taken away.
    void enter()
    {
        const pid_t other = m_shared.holder.exchange(::getpid());
        if (other == 0)
            return;
        if (other == m_shared.doomed)
            ++m_shared.killedHolders;
        else
            ++m_shared.secondHolders;
    }

    void changeRecord(TvFileStreamBuf& file)
    {
        std::uint64_t changes = 0;
        for (std::uint64_t i = 0; i < kRecords; ++i) {
            const Record record = get(file, i);
            if (record.sum != sumOf(record))
                ++m_shared.tornRecords;
            changes = std::max(changes, record.number);
        }
        if (changes < m_shared.changes)
            ++m_shared.lostChanges;
        const std::uint64_t at = m_random() % kRecords;
        const Record record = makeRecord(changes + 1, static_cast<std::uint64_t>(::getpid()));
        file.setBytes(at * kRecordSize, reinterpret_cast<const unsigned char*>(&record), kRecordSize);
        if (m_random() % 2 == 0)
            pauseUpTo(kShortPause);
        const Record again = get(file, at); // which also hands it to the system
        if (std::memcmp(&again, &record, kRecordSize) != 0)
            ++m_shared.overwritten;
        m_shared.changes = changes + 1;
    }

    static Record get(TvFileStreamBuf& file, std::uint64_t at)
    {
        Record record{};
        file.getBytes(at * kRecordSize, reinterpret_cast<unsigned char*>(&record), kRecordSize);
        return record;
    }

    Shared& m_shared;
    const std::wstring& m_name;
    std::mt19937_64 m_random;
};

class Crowd {
public:
    Crowd(Shared& shared, std::wstring name, std::uint64_t seed)
        : m_shared(shared), m_name(std::move(name)), m_random(seed)
    {
        for (pid_t& worker : m_workers)
            worker = start();
    }
    ~Crowd()
    {
        for (const pid_t worker : m_workers)
            end(worker);
    }
    Crowd(const Crowd&) = delete;
    Crowd& operator=(const Crowd&) = delete;

    // Kills one of them wherever it stands, and puts another in its place.
    void killOne()
    {
        const timespec pause = {0, static_cast<long>(m_random() % 4000000)};
        nanosleep(&pause, nullptr);
        pid_t& worker = m_workers[m_random() % kWorkers];
        end(worker);
        worker = start();
    }

private:
    pid_t start()
    {
        const std::uint64_t seed = m_random();
        const pid_t worker = fork();
        if (worker == 0)
            Worker(m_shared, m_name, seed).run();
        return worker;
    }

    void end(pid_t worker)
    {
        m_shared.doomed = worker;
        kill(worker, SIGKILL);
        int status = 0;
        waitpid(worker, &status, 0);
        if (m_shared.holder.compare_exchange_strong(worker, 0)) // nobody has opened the file since
            ++m_shared.killedHolders;
        EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL) << "a process ended by itself";
    }

    Shared& m_shared;
    std::wstring m_name;
    std::mt19937_64 m_random;
    pid_t m_workers[kWorkers] = {};
};

TEST(ManyProcesses, KilledAtRandomTheyNeverShareTheFileNorTearIt)
{
    const TestFiles files;
    std::string content;
    for (std::uint64_t i = 0; i < kRecords; ++i) {
        const Record record = makeRecord(0, i);
        content.append(reinterpret_cast<const char*>(&record), kRecordSize);
    }
    const std::wstring name = files.put("shared", content);
    const SharedMemory shared;
    const std::uint64_t seed = testSeed(6);
    long kills = 0;
    {
        Crowd crowd(*shared, name, seed);
        const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(scaled(1500));
        const auto hasBegun = [&] { return shared->opened > 0 && shared->refused > 0; };
        for (; std::chrono::steady_clock::now() < end || (!hasBegun() && kills < kTooMany); ++kills)
            crowd.killOne();
    }
    std::printf(
        "seed %llu: %ld killed, %ld of them with the file, %ld exclusive opens, %ld refused, %ld reads, "
        "%llu changes\n",
        static_cast<unsigned long long>(seed), kills + kWorkers, shared->killedHolders.load(),
        shared->opened.load(), shared->refused.load(), shared->read.load(),
        static_cast<unsigned long long>(shared->changes));

    EXPECT_EQ(shared->secondHolders, 0) << "two processes had the file at once";
    EXPECT_EQ(shared->tornRecords, 0);
    EXPECT_EQ(shared->overwritten, 0);
    EXPECT_EQ(shared->lostChanges, 0);
    EXPECT_EQ(shared->staleNames, 0) << "the registry had names of files that were not open";
    EXPECT_EQ(shared->otherFailures, 0);
    EXPECT_GT(shared->opened, 0);
    EXPECT_GT(shared->refused, 0);

    // The locks of the dead are gone.
    EXPECT_EQ(openExclusively(name).status, Orna::eOk);
    EXPECT_TRUE(TvFileStreamBufImpl::m_cstrAlreadyOpenFiles.empty());
}

} // namespace
