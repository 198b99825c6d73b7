// GuardPage.h - arrays that end where readable memory ends.
#ifndef TV_TEST_GUARD_PAGE_H
#define TV_TEST_GUARD_PAGE_H

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <vector>

// Holds up to `capacity` elements, placed so that the last one is the last readable one: a
// read behind it is a crash.
template<class T>
class GuardedArray {
public:
    explicit GuardedArray(std::size_t capacity)
    {
        const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
        m_bytes = (capacity * sizeof(T) + page - 1) / page * page;
        m_size = m_bytes + page;
        m_base = static_cast<unsigned char*>(
            mmap(nullptr, m_size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
        if (m_base == MAP_FAILED || mprotect(m_base + m_bytes, page, PROT_NONE) != 0)
            std::abort();
    }
    GuardedArray(const GuardedArray&) = delete;
    GuardedArray& operator=(const GuardedArray&) = delete;
    ~GuardedArray() { munmap(m_base, m_size); }

    // The elements, ending at the guard.
    const T* hold(const T* text, std::size_t count)
    {
        unsigned char* at = m_base + m_bytes - count * sizeof(T);
        if (count != 0)
            std::memcpy(at, text, count * sizeof(T));
        return reinterpret_cast<const T*>(at);
    }
    const T* hold(const std::vector<T>& text) { return hold(text.data(), text.size()); }

private:
    unsigned char* m_base;
    std::size_t m_bytes;
    std::size_t m_size;
};

#endif
