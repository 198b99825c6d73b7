// MemoryFile.h - a file in memory that can be opened by its name.
#ifndef TV_FUZZ_MEMORY_FILE_H
#define TV_FUZZ_MEMORY_FILE_H

#include "FuzzInput.h"

#include <string>

#include <sys/mman.h>
#include <unistd.h>

class MemoryFile {
public:
    explicit MemoryFile(const std::string& content = {}) : m_file(memfd_create("fuzz", 0))
    {
        require(m_file >= 0);
        require(write(m_file, content.data(), content.size()) == static_cast<ssize_t>(content.size()));
    }
    ~MemoryFile() { close(m_file); }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    std::wstring path() const { return L"/proc/self/fd/" + std::to_wstring(m_file); }

    /// What is in it now.
    std::string content() const
    {
        const off_t size = lseek(m_file, 0, SEEK_END);
        std::string result(static_cast<std::size_t>(size), '\0');
        require(pread(m_file, result.data(), result.size(), 0) == size);
        return result;
    }

private:
    int m_file;
};

#endif
