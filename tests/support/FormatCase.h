// FormatCase.h - one case of the output engine, run plainly and with numbered arguments.
#ifndef TV_TEST_FORMAT_CASE_H
#define TV_TEST_FORMAT_CASE_H

#include "TvFormat.h"

#include <functional>
#include <string>
#include <vector>

// What a call left: its result and the text in its buffer.
struct Formatted {
    int result;
    std::wstring text;
};

// Stands for the call with a buffer and a format; the case gives the arguments.
class FormatCall {
public:
    FormatCall(const wchar_t* format, int capacity)
        : m_format(format), m_buffer(kRoom, L'\x7F'), m_capacity(capacity)
    {
    }

    template<class... Args>
    Formatted operator()(Args... args)
    {
        const int result = FormatUtil::outputStringWithFormat(m_buffer.data(), m_capacity, m_format, args...);
        return {result, std::wstring(m_buffer.data())};
    }

    static constexpr int kRoom = 4096;

private:
    const wchar_t* m_format;
    std::vector<wchar_t> m_buffer;
    int m_capacity;
};

using FormatArgumentsOf = std::function<Formatted(FormatCall&)>;

// The same format with every argument numbered in the order in which a plain format takes it.
inline std::wstring numberedForm(const std::wstring& plain)
{
    const std::wstring letters = L"cdiuoxpbDIUOXBfegGs";
    std::wstring result;
    int next = 1;
    for (std::size_t i = 0; i < plain.size(); ++i) {
        result += plain[i];
        if (plain[i] != L'%')
            continue;
        std::wstring spec;
        std::size_t j = i + 1;
        auto star = [&] { return L"*" + std::to_wstring(next++); };
        for (; j < plain.size() && std::wstring(L"-+0123456789.*").find(plain[j]) != std::wstring::npos; ++j)
            spec += plain[j] == L'*' ? star() + L"$" : std::wstring(1, plain[j]);
        if (j < plain.size() && std::wstring(L"lLh").find(plain[j]) != std::wstring::npos)
            spec += plain[j++];
        const wchar_t letter = j < plain.size() ? plain[j] : 0;
        std::wstring mode;
        std::size_t behind = j + 1;
        const bool units = letter == L'q' || letter == L'Q';
        if (units && behind < plain.size() && plain[behind] == L'*') {
            mode = star();
            ++behind;
        }
        if (units || (letter && letters.find(letter) != std::wstring::npos))
            result += std::to_wstring(next++) + L"$";
        result += spec;
        if (letter)
            result += letter;
        result += mode;
        i = behind - 1;
    }
    return result;
}

#endif
