// BenchFile.h - a file on tmpfs, where there is one, so that nobody waits for a disk.
#ifndef TV_BENCH_BENCH_FILE_H
#define TV_BENCH_BENCH_FILE_H

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <unistd.h>

// A file of `size` bytes of no pattern, removed at the end.
class BenchFile {
public:
    BenchFile(const char* name, std::size_t size)
    {
        const char* const folder = std::filesystem::exists("/dev/shm") ? "/dev/shm" : "/tmp";
        m_path = std::string(folder) + "/tvosbase-bench-" + std::to_string(getpid()) + "-" + name;
        std::vector<char> content(size);
        std::uint64_t random = 1;
        for (char& c : content) {
            random = random * 6364136223846793005u + 1442695040888963407u;
            c = static_cast<char>(random >> 56);
        }
        std::ofstream(m_path, std::ios::binary).write(content.data(), static_cast<std::streamsize>(size));
    }
    ~BenchFile() { std::filesystem::remove(m_path); }
    BenchFile(const BenchFile&) = delete;
    BenchFile& operator=(const BenchFile&) = delete;

    const char* path() const { return m_path.c_str(); }
    std::wstring wide() const { return {m_path.begin(), m_path.end()}; }

private:
    std::string m_path;
};

#endif
