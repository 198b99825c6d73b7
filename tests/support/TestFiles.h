// TestFiles.h - files of a test: made, named both ways, and looked at from outside.
#ifndef TV_TEST_FILES_H
#define TV_TEST_FILES_H

#include "TempDir.h"

#include <fstream>
#include <iterator>
#include <string>

class TestFiles {
public:
    /// The path of `name` in bytes, and as wide text (for ASCII names).
    std::string path(const std::string& name) const { return (m_dir / name).string(); }
    std::wstring wide(const std::string& name) const
    {
        const std::string bytes = path(name);
        return {bytes.begin(), bytes.end()};
    }

    /// Makes a file of this content and returns its wide path.
    std::wstring put(const std::string& name, const std::string& content) const
    {
        std::ofstream(path(name), std::ios::binary) << content;
        return wide(name);
    }

    /// What is on disk now; a text that says so when there is no such file.
    std::string get(const std::string& name) const
    {
        std::ifstream in(path(name), std::ios::binary);
        if (!in)
            return "(no such file)";
        return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    }

    bool has(const std::string& name) const { return std::filesystem::exists(path(name)); }

private:
    TempDir m_dir;
};

#endif
