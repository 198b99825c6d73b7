// CharacterTypes.cpp - characters in the classes of the Windows interface.
#include "TvCharOp.h"

#include <cwchar>
#include <cwctype>

namespace {

constexpr unsigned int kFirstTypeClass = 1; // bit of the type information wanted

unsigned short typeOf(wchar_t wc)
{
    static constexpr struct {
        int (*isMember)(std::wint_t);
        unsigned short flag;
    } kClasses[] = {
        {std::iswupper, 0x1},  {std::iswlower, 0x2},   {std::iswdigit, 0x4},
        {std::iswspace, 0x8},  {std::iswpunct, 0x10},  {std::iswcntrl, 0x20},
        {std::iswblank, 0x40}, {std::iswxdigit, 0x80}, {std::iswalpha, 0x100},
    };
    unsigned int type = 0;
    for (const auto& kind : kClasses) {
        if (kind.isMember(static_cast<std::wint_t>(wc)))
            type |= kind.flag;
    }
    return static_cast<unsigned short>(type);
}

} // namespace

bool TvCharOp::GetStringType(unsigned int infoType, const wchar_t* src, int len, unsigned short* types)
{
    if (!src || !types || len < -1 || !(infoType & kFirstTypeClass))
        return false;
    const std::size_t count = len == -1 ? std::wcslen(src) : static_cast<std::size_t>(len);
    for (std::size_t i = 0; i < count; ++i)
        types[i] = typeOf(src[i]);
    return count > 0;
}
