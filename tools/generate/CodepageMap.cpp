// Writes codepage.map into a folder: the double-byte tables of the East Asian code pages,
// decoded by the C library's converters.
#include "CodepageMapFile.h"

#include <cstdio>
#include <exception>
#include <fstream>
#include <string>

namespace {

// Read by ctest as "this test cannot run here".
constexpr int kSkipped = 77;

int writeMapFile(const std::string& folder)
{
    MapFileTables tables;
    for (const DoubleByteCodePage& page : kDoubleByteCodePages) {
        tables[page.id] = decodeDoubleByteTable(page);
        if (tables[page.id].empty()) {
            std::fprintf(stderr, "codepage_map: the C library has no converter %s\n", page.converter);
            return kSkipped;
        }
    }
    std::ofstream file(folder + "/codepage.map", std::ios::binary);
    file << makeMapFile("Code page map: double-byte tables of the code pages 932, 936, 949 and 950. ",
                        tables);
    file.close();
    if (!file) {
        std::fprintf(stderr, "codepage_map: cannot write %s/codepage.map\n", folder.c_str());
        return 1;
    }
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: codepage_map FOLDER\n");
        return 2;
    }
    try {
        return writeMapFile(argv[1]);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "codepage_map: %s\n", error.what());
        return 1;
    }
}
