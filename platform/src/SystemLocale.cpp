#include "TvPlatformBase.h"

#include "SecondNames.h"
#include "SystemLocaleTable.h"

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace {

using tvPlatform::SystemLocale;

constexpr SystemLocale kDefault = {"", "", "", 0x0409, 1252};

// Compares without regard to ASCII case, whatever the current locale; `lower` is in lower case.
bool isSame(std::string_view text, const char* lower)
{
    if (text.size() != std::strlen(lower))
        return false;
    for (const char c : text) {
        const char folded = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
        if (folded != *lower++)
            return false;
    }
    return true;
}

// The pieces of language_TERRITORY.codeset@modifier; the codeset is not kept.
struct LocaleName {
    std::string_view language;
    std::string_view territory;
    std::string_view modifier;

    explicit LocaleName(std::string_view name)
    {
        if (const auto at = name.find('@'); at != name.npos) {
            modifier = name.substr(at + 1);
            name = name.substr(0, at);
        }
        name = name.substr(0, name.find('.'));
        const auto underscore = name.find('_');
        language = name.substr(0, underscore);
        if (underscore != name.npos)
            territory = name.substr(underscore + 1);
    }
};

// The entry that says most about the name: the territory decides before the modifier.
const SystemLocale& findLocale(const LocaleName& name)
{
    const SystemLocale* best = &kDefault;
    int bestScore = -1;
    for (std::size_t i = 0; i < tvPlatform::kSystemLocaleCount; ++i) {
        const SystemLocale& entry = tvPlatform::kSystemLocales[i];
        if (!isSame(name.language, entry.language))
            continue;
        if (*entry.territory && !isSame(name.territory, entry.territory))
            continue;
        if (*entry.modifier && !isSame(name.modifier, entry.modifier))
            continue;
        const int score = (*entry.territory ? 2 : 0) + (*entry.modifier ? 1 : 0);
        if (score > bestScore) {
            best = &entry;
            bestScore = score;
        }
    }
    return *best;
}

// The locale of a category, as the C library chooses it: an empty value is none.
const SystemLocale& environmentLocale(const char* category)
{
    for (const char* variable : {"LC_ALL", category, "LANG"})
        if (const char* value = std::getenv(variable); value && *value)
            return findLocale(LocaleName(value));
    return kDefault;
}

// A number asked of the environment once, unless the host sets another. Constant
// initialised, so that static constructors of other libraries may ask.
class SystemNumber {
public:
    constexpr SystemNumber(const char* category, unsigned int SystemLocale::*field)
        : m_category(category), m_field(field)
    {
    }

    unsigned int get()
    {
        if (const unsigned int chosen = m_chosen.load(std::memory_order_relaxed))
            return chosen;
        unsigned int value = m_environment.load(std::memory_order_relaxed);
        if (value == 0) {
            // The first of several threads decides, so that all agree for good.
            const unsigned int found = environmentLocale(m_category).*m_field;
            if (m_environment.compare_exchange_strong(value, found))
                value = found;
        }
        return value;
    }
    void choose(unsigned int value) { m_chosen.store(value, std::memory_order_relaxed); }

private:
    const char* m_category;
    unsigned int SystemLocale::*m_field;
    std::atomic<unsigned int> m_chosen{0};
    std::atomic<unsigned int> m_environment{0};
};

constinit SystemNumber s_ansiCodePage("LC_CTYPE", &SystemLocale::ansiCodePage);
constinit SystemNumber s_lcid("LC_MESSAGES", &SystemLocale::lcid);

} // namespace

extern "C" {

unsigned int GetACP(void) { return s_ansiCodePage.get(); }

unsigned int GetSystemDefaultLCID(void) { return s_lcid.get(); }

void tvPlatformSetACP(unsigned int codePage) { s_ansiCodePage.choose(codePage); }

void tvPlatformSetSystemDefaultLCID(unsigned int lcid) { s_lcid.choose(lcid); }

} // extern "C"

TV_SECOND_NAME(GetACP);
TV_SECOND_NAME(GetSystemDefaultLCID);
