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
    // `answer` is what get() answers, or 0 until somebody asks.
    constexpr SystemNumber(std::atomic<unsigned int>& answer, const char* category,
                           unsigned int SystemLocale::*field)
        : m_answer(answer), m_category(category), m_field(field)
    {
    }

    unsigned int get()
    {
        if (const unsigned int known = m_answer.load(std::memory_order_relaxed))
            return known;
        // The first of several threads decides, so that all agree for good.
        const unsigned int found = environmentLocale(m_category).*m_field;
        unsigned int value = 0;
        if (m_environment.compare_exchange_strong(value, found))
            value = found;
        unsigned int chosen = 0;
        return m_answer.compare_exchange_strong(chosen, value) ? value : chosen;
    }

    // Before anybody has asked, 0 leaves the answer open.
    void choose(unsigned int value) { m_answer.store(value != 0 ? value : m_environment.load()); }

private:
    std::atomic<unsigned int>& m_answer;
    const char* m_category;
    unsigned int SystemLocale::*m_field;
    std::atomic<unsigned int> m_environment{0};
};

constinit std::atomic<unsigned int> s_lcidAnswer{0};

} // namespace

constinit std::atomic<unsigned int> tvPlatform_ansiCodePage{0};

namespace {

constinit SystemNumber s_ansiCodePage(tvPlatform_ansiCodePage, "LC_CTYPE", &SystemLocale::ansiCodePage);
constinit SystemNumber s_lcid(s_lcidAnswer, "LC_MESSAGES", &SystemLocale::lcid);

} // namespace

extern "C" {

unsigned int GetACP(void) { return s_ansiCodePage.get(); }

unsigned int GetSystemDefaultLCID(void) { return s_lcid.get(); }

void tvPlatformSetACP(unsigned int codePage) { s_ansiCodePage.choose(codePage); }

void tvPlatformSetSystemDefaultLCID(unsigned int lcid) { s_lcid.choose(lcid); }

} // extern "C"

TV_SECOND_NAME(GetACP);
TV_SECOND_NAME(GetSystemDefaultLCID);
