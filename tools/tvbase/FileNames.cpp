#include "FileNames.h"

#include "Utf8Sequence.h"

std::wstring wideFileName(const std::string& name)
{
    std::wstring wide;
    for (std::size_t i = 0; i < name.size();) {
        const Utf8Sequence sequence = readUtf8(name.data() + i, name.size() - i);
        if (sequence.length <= 0)
            return {};
        wide += static_cast<wchar_t>(sequence.value);
        i += static_cast<std::size_t>(sequence.length);
    }
    return wide;
}

std::string byteFileName(const std::wstring& name)
{
    std::string bytes;
    for (const wchar_t c : name) {
        char sequence[4];
        bytes.append(sequence, static_cast<std::size_t>(writeUtf8(static_cast<char32_t>(c), sequence)));
    }
    return bytes;
}
