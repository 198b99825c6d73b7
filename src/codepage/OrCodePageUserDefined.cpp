// OrCodePageUserDefined.cpp - user-defined double-byte characters.
#include "OrCodePage.h"

#include "runtime/TvStartup.h"

namespace {

constexpr unsigned short kFirstCharacter = 0xE800;
constexpr unsigned int kPlaces = 256;

// The place of a character, or null for one that is not user-defined.
const OrCodePage::UserDefinedDBCS* placeOf(unsigned int wc)
{
    const unsigned int index = wc - kFirstCharacter;
    return index < kPlaces ? &OrCodePage::s_arrUserDefinedDBCS[index] : nullptr;
}

struct InitOrCodePage {
    InitOrCodePage() { OrCodePage::InitUserDefinedDBCSArray(); }
};

__attribute__((init_priority(TvStartup::kUserDefinedTable))) InitOrCodePage s_initOrCodePage;

} // namespace

constinit OrCodePage::UserDefinedDBCS OrCodePage::s_arrUserDefinedDBCS[256] = {};

// Meant: every place has the same character, so codes are told apart only by their place.
void OrCodePage::InitUserDefinedDBCSArray()
{
    for (UserDefinedDBCS& place : s_arrUserDefinedDBCS)
        place = {0, 0, kFirstCharacter};
}

bool OrCodePage::DBCSForUserDefinedUnicode(short& dbcs, wchar_t wc)
{
    const UserDefinedDBCS* const place = placeOf(static_cast<unsigned int>(wc));
    if (!place)
        return false;
    dbcs = place->dbcs;
    return true;
}

bool OrCodePage::UnicodeForUserDefinedDBCS(wchar_t& wc, short dbcs, int cp)
{
    for (UserDefinedDBCS& place : s_arrUserDefinedDBCS) {
        if (place.dbcs != 0 && place.dbcs != dbcs)
            continue;
        place.dbcs = dbcs;
        place.codePage = cp;
        wc = place.unicode;
        return true;
    }
    return false;
}

bool OrCodePage::CodepageForUserDefinedUnicode(int& cp, short wc)
{
    const UserDefinedDBCS* const place = placeOf(static_cast<unsigned short>(wc));
    if (!place)
        return false;
    cp = place->codePage;
    return true;
}
