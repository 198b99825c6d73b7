// Writes the table of the leading 128 bits of powers of ten as PowersOfTen.cpp into a
// folder, by exact integer arithmetic alone.
#include "numconv/PowersOfTen.h"

#include <cstdio>
#include <string>
#include <vector>

namespace {

// A natural number, words of 32 bits, least significant first, no zero words on top.
using Number = std::vector<std::uint32_t>;

void multiply(Number& n, std::uint32_t factor)
{
    std::uint64_t carry = 0;
    for (std::uint32_t& word : n) {
        carry += std::uint64_t{word} * factor;
        word = static_cast<std::uint32_t>(carry);
        carry >>= 32;
    }
    if (carry)
        n.push_back(static_cast<std::uint32_t>(carry));
}

int width(const Number& n)
{
    int bits = 32 * static_cast<int>(n.size() - 1);
    for (std::uint32_t top = n.back(); top; top >>= 1)
        ++bits;
    return bits;
}

bool bit(const Number& n, int i) { return i >= 0 && (n[static_cast<std::size_t>(i) / 32] >> (i % 32) & 1); }

// n = 2n, when that is not below d less d. Answers whether d was subtracted.
bool doubleAndReduce(Number& n, const Number& d)
{
    multiply(n, 2);
    Number difference(n.size());
    std::int64_t borrow = 0;
    for (std::size_t i = 0; i < n.size(); ++i) {
        const std::int64_t word = std::int64_t{n[i]} - (i < d.size() ? d[i] : 0) - borrow;
        difference[i] = static_cast<std::uint32_t>(word);
        borrow = word < 0;
    }
    if (borrow || n.size() < d.size())
        return false;
    while (difference.size() > 1 && difference.back() == 0)
        difference.pop_back();
    n = difference;
    return true;
}

TenPower leadingBits(int p)
{
    Number n{1};
    for (int i = 0; i < (p < 0 ? -p : p); ++i)
        multiply(n, 10);
    Uint128 bits = 0;
    if (p >= 0) {
        const int top = width(n) - 1;
        for (int i = 0; i < 128; ++i)
            bits = bits << 1 | (bit(n, top - i) ? 1 : 0);
    } else {
        // Binary long division of 1; the quotient counts from its first 1 on.
        Number rest{1};
        for (int taken = 0; taken < 128;) {
            const bool one = doubleAndReduce(rest, n);
            if (one || taken > 0) {
                bits = bits << 1 | (one ? 1 : 0);
                ++taken;
            }
        }
    }
    return {static_cast<std::uint64_t>(bits >> 64), static_cast<std::uint64_t>(bits)};
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: powers_of_ten FOLDER\n");
        return 2;
    }
    const std::string path = std::string(argv[1]) + "/PowersOfTen.cpp";
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (!file) {
        std::perror(path.c_str());
        return 1;
    }
    std::fputs("// Made by tools/generate/PowersOfTen.cpp from nothing but arithmetic. Do not edit.\n"
               "// Renew: cmake --build build/dev --target renew-tables     Check: ctest -L generated\n"
               "#include \"numconv/PowersOfTen.h\"\n\n"
               "// clang-format off\n"
               "const TenPower g_tenPowers[kHighestTenPower - kLowestTenPower + 1] = {\n",
               file);
    for (int p = kLowestTenPower; p <= kHighestTenPower; ++p) {
        const TenPower power = leadingBits(p);
        std::fprintf(file, "    {0x%016llX, 0x%016llX}, // 1e%d\n",
                     static_cast<unsigned long long>(power.high), static_cast<unsigned long long>(power.low),
                     p);
    }
    std::fputs("};\n", file);
    return std::fclose(file) == 0 ? 0 : 1;
}
