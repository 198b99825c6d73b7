// Any bytes as a BIGFONT.INI, against the model.
#include "TvBigFont.h"

#include "BigFontIniModel.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include <sys/mman.h>
#include <unistd.h>

namespace {

void require(bool condition)
{
    if (!condition)
        std::abort();
}

// A file in memory that can be opened by its name.
class MemoryFile {
public:
    explicit MemoryFile(const std::string& content) : m_file(memfd_create("BIGFONT.INI", 0))
    {
        require(m_file >= 0);
        require(write(m_file, content.data(), content.size()) == static_cast<ssize_t>(content.size()));
    }
    ~MemoryFile() { close(m_file); }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    std::wstring path() const { return L"/proc/self/fd/" + std::to_wstring(m_file); }

private:
    int m_file;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string content(reinterpret_cast<const char*>(data), size);
    const MemoryFile file(content);
    g_mapCP2Bigfont.clear();
    require(ReadBigfontIni(file.path().c_str()));
    require(g_mapCP2Bigfont == BigFontIniModel::read(content));
    return 0;
}
