#include "format/FormatSpec.h"

namespace TvFormatDetail {

namespace {

// An argument number, 1 when no digits are written.
unsigned readArgumentNumber(const wchar_t*& f, FormatSpec& spec)
{
    if (!isFormatDigit(*f))
        return 1;
    const unsigned number = readFormatNumber(f);
    if (number == 0 || number > kMaxArgumentNumber)
        spec.badNumber = true;
    return number;
}

FormatCount readCount(const wchar_t*& f, bool positional, FormatSpec& spec)
{
    if (*f != L'*')
        return {readFormatNumber(f), false};
    ++f;
    FormatCount count{1, true};
    if (positional) {
        count.value = readArgumentNumber(f, spec);
        if (*f == L'$')
            ++f;
    }
    return count;
}

void readFlags(const wchar_t*& f, FormatSpec& spec)
{
    if (*f == L'-') {
        spec.left = true;
        spec.plus = *++f == L'+';
        f += spec.plus;
    } else if (*f == L'+') {
        spec.plus = true;
        spec.left = *++f == L'-';
        f += spec.left;
    }
    if (*f == L'0') {
        ++f;
        if (!spec.left)
            spec.pad = L'0';
    }
}

} // namespace

const wchar_t* parseFormatSpec(const wchar_t* f, bool positional, FormatSpec& spec)
{
    if (positional) {
        spec.number = readArgumentNumber(f, spec);
        if (*f == L'$')
            ++f;
    }
    readFlags(f, spec);
    spec.width = readCount(f, positional, spec);
    if (*f == L'.') {
        ++f;
        spec.hasPrecision = true;
        spec.precision = readCount(f, positional, spec);
    }
    // Meant: one character only, so that the second `l` of %lld is the conversion letter.
    if (*f == L'l' || *f == L'L' || *f == L'h')
        ++f;
    spec.letter = *f;
    if (*f)
        ++f;
    if (spec.letter == L'q' || spec.letter == L'Q')
        readFormatMode(f, positional, spec);
    return f;
}

void readFormatMode(const wchar_t*& f, bool positional, FormatSpec& spec)
{
    if (*f == L'*') {
        ++f;
        spec.hasMode = true;
        spec.mode = {positional ? readArgumentNumber(f, spec) : 1, true};
    } else if (isFormatDigit(*f)) {
        spec.hasMode = true;
        spec.mode = {static_cast<unsigned>(*f++ - L'0'), false};
    }
}

int argumentTypeOf(wchar_t letter)
{
    switch (letter) {
    case L'd':
    case L'i':
        return 1;
    case L'b':
    case L'o':
    case L'p':
    case L'u':
    case L'x':
        return 2;
    case L'B':
    case L'D':
    case L'I':
    case L'O':
    case L'U':
    case L'X':
        return 3;
    case L'e':
    case L'f':
    case L'g':
    case L'G':
    case L'q':
    case L'Q':
        return 4;
    case L'c':
        return 5;
    case L's':
        return 6;
    default:
        return 0;
    }
}

} // namespace TvFormatDetail
