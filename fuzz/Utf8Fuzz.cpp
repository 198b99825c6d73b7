// Any bytes as UTF-8 and any wide text, both ways, against the rules spelled out.
//
// Byte 0 chooses the direction, how far the text stands off an even address, and how many of
// its elements the length leaves out; the element behind the length is read as text, too.
#include "TvCharMapper.h"

#include "FuzzInput.h"
#include "Utf8Model.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace {

// The text up to the element behind `length`, as the conversions see it.
template<class Result, class T>
std::vector<Result> seen(const std::basic_string<T>& text, int length)
{
    const std::basic_string<T> reached =
        length == 0 ? text : text.substr(0, static_cast<std::size_t>(length) + 1);
    return {reached.begin(), reached.end()};
}

template<class T>
void requireText(const TvVector<T>& result, const std::vector<T>& expected)
{
    require(result.length() == static_cast<int>(expected.size()) + 1);
    require(std::equal(expected.begin(), expected.end(), result.begin()));
    require(result.asArrayPtr()[expected.size()] == 0);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Choices choices(data, size);
    const bool decodes = choices.below(2) != 0;
    const std::size_t stand = choices.below(33);
    const std::size_t leftOut = choices.below(4);
    const std::string bytes = choices.rest();
    const std::wstring wide = wideOf(bytes);
    if (decodes) {
        const int length = static_cast<int>(bytes.size() - std::min(leftOut, bytes.size()));
        const auto block = terminated(std::string(stand, '*') + bytes);
        TvVector<wchar_t> result;
        TvCharMapper::utf8ToUnicode(block.get() + stand, length, result);
        requireText(result, Utf8Model::decode(seen<unsigned char>(bytes, length)));
        return 0;
    }
    const int length = static_cast<int>(wide.size() - std::min(leftOut, wide.size()));
    const auto block = terminated(std::wstring(stand, L'*') + wide);
    TvVector<char> result;
    TvCharMapper::unicodeToUtf8(block.get() + stand, length, result);
    if (length == 0)
        require(result.isEmpty());
    else
        requireText(result, Utf8Model::encode(seen<wchar_t>(wide, length)));
    return 0;
}
