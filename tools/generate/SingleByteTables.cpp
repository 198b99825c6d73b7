// Writes the tables of the single-byte code pages into a folder, one file a table: what the
// C library's converters decode, changed where the deviations file says so.
#include "ByteDecoder.h"
#include "Generator.h"

#include <cstdio>
#include <fstream>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

constexpr int kFirstByte = 0x80;
constexpr int kBytes = 128;

// What stands for a byte that the code page does not assign.
enum class Unassigned { None, TheByteItself };

struct TableSource {
    const char* name;      // of the file, and of the table in the deviations file
    const char* symbol;    // of the array
    const char* converter; // the C library's name, or null for a table without characters
    Unassigned unassigned = Unassigned::None;
};

const TableSource kSources[] = {
    {"empty", "g_emptyCodeTable", nullptr},
    {"undefined", "g_undefinedTable", "ISO-8859-1"},
    {"iso8859_1", "g_iso8859_1Table", "ISO-8859-1"},
    {"iso8859_2", "g_iso8859_2Table", "ISO-8859-2"},
    {"iso8859_3", "g_iso8859_3Table", "ISO-8859-3", Unassigned::TheByteItself},
    {"iso8859_4", "g_iso8859_4Table", "ISO-8859-4"},
    {"iso8859_5", "g_iso8859_5Table", "ISO-8859-5"},
    {"iso8859_6", "g_iso8859_6Table", "ISO-8859-6", Unassigned::TheByteItself},
    {"iso8859_7", "g_iso8859_7Table", "ISO-8859-7", Unassigned::TheByteItself},
    {"iso8859_8", "g_iso8859_8Table", "ISO-8859-8", Unassigned::TheByteItself},
    {"iso8859_9", "g_iso8859_9Table", "ISO-8859-9"},
    {"dos437", "g_dos437Table", "IBM437"},
    {"dos850", "g_dos850Table", "IBM850"},
    {"dos852", "g_dos852Table", "IBM852"},
    {"dos855", "g_dos855Table", "IBM855"},
    {"dos857", "g_dos857Table", "IBM857"},
    {"dos860", "g_dos860Table", "IBM860"},
    {"dos861", "g_dos861Table", "IBM861"},
    {"dos863", "g_dos863Table", "IBM863"},
    {"dos864", "g_dos864Table", "IBM864"},
    {"dos865", "g_dos865Table", "IBM865"},
    {"dos866", "g_dos866Table", "CP866"},
    {"dos869", "g_dos869Table", "IBM869"},
    {"mac_roman", "g_macRomanTable", "MACINTOSH"},
    {"ansi_1250", "g_ansi1250Table", "CP1250"},
    {"ansi_1251", "g_ansi1251Table", "CP1251"},
    {"ansi_1252", "g_ansi1252Table", "CP1252"},
    {"ansi_1253", "g_ansi1253Table", "CP1253"},
    {"ansi_1254", "g_ansi1254Table", "CP1254"},
    {"ansi_1255", "g_ansi1255Table", "CP1255"},
    {"ansi_1256", "g_ansi1256Table", "CP1256"},
    {"ansi_1257", "g_ansi1257Table", "CP1257"},
    {"ansi_874", "g_ansi874Table", "CP874"},
    {"ansi_932", "g_ansi932Table", "CP932"},
};

// byte to unit, by table
using Deviations = std::map<std::string, std::map<int, int>>;

bool hasTable(const std::string& name)
{
    for (const TableSource& source : kSources) {
        if (name == source.name)
            return true;
    }
    return false;
}

// Lines of: table, byte, unit (both hexadecimal), reason. '#' begins a comment.
Deviations readDeviations(const std::string& path)
{
    std::ifstream file(path);
    if (!file)
        throw std::runtime_error("cannot read " + path);
    Deviations deviations;
    std::string line;
    for (int number = 1; std::getline(file, line); ++number) {
        if (line.empty() || line[0] == '#')
            continue;
        std::istringstream fields(line);
        std::string table;
        int byte = 0;
        int unit = 0;
        std::string reason;
        fields >> table >> std::hex >> byte >> unit >> reason;
        const bool inRange = byte >= kFirstByte && byte <= 0xFF && unit >= 0 && unit <= 0xFFFF;
        if (!fields || !inRange || !hasTable(table) || !deviations[table].emplace(byte, unit).second)
            throw std::runtime_error(path + ":" + std::to_string(number) + ": " + line);
    }
    return deviations;
}

std::vector<int> makeTable(const TableSource& source, const std::map<int, int>& deviations)
{
    std::vector<int> table(kBytes, 0);
    if (!source.converter)
        return table;
    ByteDecoder decoder(source.converter);
    for (int byte = kFirstByte; byte < kFirstByte + kBytes; ++byte) {
        const char text[1] = {static_cast<char>(byte)};
        const std::u16string units = decoder.decode({text, 1});
        const int unassigned = source.unassigned == Unassigned::TheByteItself ? byte : 0;
        const int published = units.size() == 1 ? units[0] : unassigned;
        const auto deviation = deviations.find(byte);
        table[byte - kFirstByte] = deviation == deviations.end() ? published : deviation->second;
    }
    return table;
}

std::string describe(const TableSource& source, const std::map<int, int>& deviations)
{
    std::string text = "// " + std::string(source.name) + "; 0 = no character.";
    if (deviations.empty())
        return text + "\n";
    text += " Unlike the converter at";
    for (const auto& [byte, unit] : deviations) {
        char hex[8];
        std::snprintf(hex, sizeof hex, " %02X", static_cast<unsigned>(byte));
        text += hex;
    }
    return text + ":\n// see data/codepage-deviations.txt, which gives each difference a reason.\n";
}

std::string sourceText(const TableSource& source, const std::map<int, int>& deviations)
{
    const std::vector<int> table = makeTable(source, deviations);
    std::string text =
        "// Made by tools/generate/single_byte_tables from the C library's converters. Do not edit.\n"
        "// Renew: cmake --build build/dev --target renew-tables     Check: ctest -L generated\n"
        "#include \"codepage/tables/SingleByteTables.h\"\n\n";
    text += describe(source, deviations);
    text += "const unsigned short " + std::string(source.symbol) + "[128] = {\n";
    for (int row = 0; row < kBytes; row += 8) {
        char cell[16];
        std::snprintf(cell, sizeof cell, "    /* %02X */", static_cast<unsigned>(kFirstByte + row));
        text += cell;
        for (int i = row; i < row + 8; ++i) {
            std::snprintf(cell, sizeof cell, " 0x%04X,", static_cast<unsigned>(table[i]));
            text += cell;
        }
        text += '\n';
    }
    return text + "};\n";
}

int writeTables(const std::string& deviationsFile, const std::string& folder)
{
    for (const TableSource& source : kSources) {
        if (source.converter && !ByteDecoder(source.converter).isOpen()) {
            std::fprintf(stderr, "single_byte_tables: the C library has no converter %s\n", source.converter);
            return kSkipped;
        }
    }
    Deviations deviations = readDeviations(deviationsFile);
    for (const TableSource& source : kSources)
        writeFile(folder + "/" + source.name + ".cpp", sourceText(source, deviations[source.name]));
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    return generate("single_byte_tables", "DEVIATIONS-FILE FOLDER", 2, argc,
                    [&] { return writeTables(argv[1], argv[2]); });
}
