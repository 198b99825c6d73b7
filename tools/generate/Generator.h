// Generator.h - what the table generators share: how they write a file and how they end.
#ifndef TV_GENERATOR_H
#define TV_GENERATOR_H

#include <cstdio>
#include <exception>
#include <fstream>
#include <stdexcept>
#include <string>

/// Exit status of a generator that lacks its input; ctest reads it as "cannot run here".
constexpr int kSkipped = 77;

/// Writes `text` to the file `path`; throws std::runtime_error when that fails.
inline void writeFile(const std::string& path, const std::string& text)
{
    std::ofstream file(path, std::ios::binary);
    file << text;
    file.close();
    if (!file)
        throw std::runtime_error("cannot write " + path);
}

/// What main() of the generator `name` answers: 2 unless it was given `arguments` (a line for the
/// user) and these are `expected` in number, 1 when make() throws, else what make() answers.
template<class Make>
int generate(const char* name, const char* arguments, int expected, int argc, Make make)
{
    if (argc != expected + 1) {
        std::fprintf(stderr, "usage: %s %s\n", name, arguments);
        return 2;
    }
    try {
        return make();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s: %s\n", name, error.what());
        return 1;
    }
}

#endif
