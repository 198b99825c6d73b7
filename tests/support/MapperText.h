// MapperText.h - texts through the character mapper, as strings without the terminator.
#ifndef TV_TEST_MAPPER_TEXT_H
#define TV_TEST_MAPPER_TEXT_H

#include "TvCharMapper.h"
#include "TvPlatformBase.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

inline CStdStr<wchar_t> shippedMapFile()
{
    const std::string path = TV_SOURCE_DIR "/data/codepage.map";
    return CStdStr<wchar_t>(std::wstring(path.begin(), path.end()));
}

// The text of a result, whose length must count one terminating 0.
template<class T>
std::basic_string<T> resultText(const TvVector<T>& result)
{
    const int length = result.length();
    if (length < 1) {
        ADD_FAILURE() << "a result without a terminator";
        return {};
    }
    EXPECT_EQ(result.asArrayPtr()[length - 1], T(0));
    return std::basic_string<T>(result.asArrayPtr(), static_cast<std::size_t>(length) - 1);
}

inline std::wstring toWide(code_page_id cp, std::string_view bytes)
{
    TvVector<wchar_t> out;
    TvCharMapper::multiByteToWideChar(cp, bytes.data(), static_cast<int>(bytes.size()), out);
    return resultText(out);
}

inline std::string toBytes(code_page_id cp, std::wstring_view text)
{
    TvVector<char> out;
    TvCharMapper::wideCharToMultiByte(cp, text.data(), static_cast<int>(text.size()), out);
    return resultText(out);
}

// Makes GetACP() answer a number for the life time of the object.
class SystemCodePage {
public:
    explicit SystemCodePage(unsigned number) { tvPlatformSetACP(number); }
    ~SystemCodePage() { tvPlatformSetACP(0); }
    SystemCodePage(const SystemCodePage&) = delete;
    SystemCodePage& operator=(const SystemCodePage&) = delete;
};

#endif
