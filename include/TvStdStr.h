// TvStdStr.h - the wide string class of file names and titles.
#ifndef TV_STD_STR_H
#define TV_STD_STR_H

#include <string>

/// Compares without regard to the case of the letters A to Z; letters beyond ASCII keep
/// their case. Null counts as "". The result is the difference of the first two lowered
/// characters that differ, 0 when all are equal.
template<class Char>
int ssicmp(const Char* a, const Char* b)
{
    const auto lower = [](Char c) {
        const bool capital = c >= Char('A') && c <= Char('Z');
        return static_cast<unsigned int>(c) + (capital ? 'a' - 'A' : 0u);
    };
    const Char empty = Char(0);
    if (!a)
        a = &empty;
    if (!b)
        b = &empty;
    unsigned int fromA = lower(*a);
    unsigned int fromB = lower(*b);
    while (fromA == fromB && *a != Char(0)) {
        fromA = lower(*++a);
        fromB = lower(*++b);
    }
    return static_cast<int>(fromA - fromB);
}

/// A standard string that is made from and converts to a plain pointer.
///
/// **Errors**: as std::basic_string, which throws std::bad_alloc. **Memory**: owns its text.
/// **Threads**: as std::basic_string.
///
///     CStdStr<wchar_t> name(L"Hall.dwg");
///     if (name.CompareNoCase(L"hall.DWG") == 0)
///         open(name);                          // open(const wchar_t*)
template<class Char>
class CStdStr : public std::basic_string<Char> {
public:
    /// The standard string that this is.
    using Base = std::basic_string<Char>;

    /// Empty.
    CStdStr() = default;
    /// A copy of a standard string, zeros in it included.
    CStdStr(const Base& text) : Base(text) {}
    /// Null counts as "".
    CStdStr(const Char* text)
    {
        if (text)
            Base::assign(text);
    }

    /// Copies a standard string.
    CStdStr& operator=(const Base& text)
    {
        Base::assign(text);
        return *this;
    }
    /// Null counts as ""; `text` may lie within this string.
    CStdStr& operator=(const Char* text)
    {
        if (text)
            Base::assign(text);
        else
            Base::clear();
        return *this;
    }

    /// The text with its terminating 0; valid until the string changes.
    operator const Char*() const { return Base::c_str(); }

    /// Whether there is no character.
    bool IsEmpty() const { return Base::empty(); }
    /// The same.
    bool isEmpty() const { return Base::empty(); }

    /// 0 when equal, else negative or positive, by the values of the characters. Null
    /// counts as "".
    int Compare(const Char* text) const
    {
        const Char empty = Char(0);
        return Base::compare(text ? text : &empty);
    }

    /// ssicmp() of the two texts, each up to its first 0.
    int CompareNoCase(const Char* text) const { return ssicmp<Char>(Base::c_str(), text); }
};

#endif
