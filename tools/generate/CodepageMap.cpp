// Writes codepage.map into a folder: the double-byte tables of the East Asian code pages,
// decoded by the C library's converters.
#include "CodepageMapFile.h"
#include "Generator.h"

#include <cstdio>
#include <string>

namespace {

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
    writeFile(
        folder + "/codepage.map",
        makeMapFile("Code page map: double-byte tables of the code pages 932, 936, 949 and 950. ", tables));
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    return generate("codepage_map", "FOLDER", 1, argc, [&] { return writeMapFile(argv[1]); });
}
