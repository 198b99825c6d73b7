// TempDir.h - a folder that goes away with the test.
#ifndef TV_TEST_TEMP_DIR_H
#define TV_TEST_TEMP_DIR_H

#include <filesystem>
#include <stdexcept>
#include <stdlib.h>
#include <string>

/// A fresh empty folder below the system's temporary one; removed with all it holds.
class TempDir {
public:
    TempDir()
    {
        std::string name = (std::filesystem::temp_directory_path() / "tvosbase-XXXXXX").string();
        if (!mkdtemp(name.data()))
            throw std::runtime_error("no temporary folder: " + name);
        m_path = name;
    }
    ~TempDir()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::filesystem::path& path() const { return m_path; }
    std::filesystem::path operator/(const std::string& name) const { return m_path / name; }

private:
    std::filesystem::path m_path;
};

#endif
