#include "stream/TvFileRegistry.h"

#include "TvFileStreamBuf.h"
#include "TvStdStr.h"
#include "runtime/TvStartup.h"
#include "stream/TvFileHandle.h"

#include <algorithm>
#include <cstdlib>
#include <cwchar>
#include <ios>
#include <new>
#include <vector>

namespace {

// Built before the registry, so that std::cout and its kin are ready for whoever is built
// after it and reports a failed open there.
std::ios_base::Init g_standardStreams __attribute__((init_priority(TvStartup::kOpenFiles)));

// True from the moment the registry is destroyed: streams that live longer still close.
bool g_registryEnded = false;

} // namespace

// A constant: names that are entered before any code of this file runs are kept.
constinit std::vector<CStdStr<wchar_t>> TvFileStreamBufImpl::m_cstrAlreadyOpenFiles
    __attribute__((init_priority(TvStartup::kOpenFiles)));

namespace {

// Destroyed just before the registry.
struct RegistryEnd {
    ~RegistryEnd() { g_registryEnded = true; }
};
RegistryEnd g_registryEnd __attribute__((init_priority(TvStartup::kOpenFiles)));

using Names = std::vector<CStdStr<wchar_t>>;

Names& names() { return TvFileStreamBufImpl::m_cstrAlreadyOpenFiles; }

Names::iterator find(const wchar_t* name)
{
    return std::find_if(names().begin(), names().end(),
                        [name](const CStdStr<wchar_t>& entry) { return entry.Compare(name) == 0; });
}

#ifdef TV_CHECK_STRUCTURES
constinit std::vector<const TvFileStreamBufImpl*> g_owners
    __attribute__((init_priority(TvStartup::kOpenFiles)));
#endif

} // namespace

bool TvFileRegistry::contains(const wchar_t* name) { return !g_registryEnded && find(name) != names().end(); }

bool TvFileRegistry::add(const TvFileStreamBufImpl& stream, const wchar_t* name)
{
    if (g_registryEnded)
        return true;
    try {
#ifdef TV_CHECK_STRUCTURES
        g_owners.reserve(g_owners.size() + 1);
#endif
        names().emplace_back(name);
    } catch (const std::bad_alloc&) {
        return false;
    }
#ifdef TV_CHECK_STRUCTURES
    g_owners.push_back(&stream);
#else
    static_cast<void>(stream);
#endif
    return true;
}

void TvFileRegistry::remove(const TvFileStreamBufImpl& stream, const wchar_t* name)
{
    if (g_registryEnded)
        return;
    const Names::iterator entry = find(name);
    if (entry != names().end())
        names().erase(entry);
#ifdef TV_CHECK_STRUCTURES
    g_owners.erase(std::remove(g_owners.begin(), g_owners.end(), &stream), g_owners.end());
#else
    static_cast<void>(stream);
#endif
}

#ifdef TV_CHECK_STRUCTURES

bool TvFileRegistry::isSound()
{
    if (g_registryEnded)
        return true;
    if (names().size() != g_owners.size())
        return false;
    for (const TvFileStreamBufImpl* owner : g_owners) {
        const wchar_t* name = owner->fileName();
        if (name == nullptr || !tvIsFile(static_cast<std::FILE*>(owner->fileHandle())))
            return false;
        if (std::count_if(names().begin(), names().end(),
                          [name](const CStdStr<wchar_t>& entry) { return entry.Compare(name) == 0; }) != 1)
            return false;
    }
    return true;
}

void TvFileRegistry::check()
{
    if (!isSound())
        std::abort();
}

#else

bool TvFileRegistry::isSound() { return true; }

void TvFileRegistry::check() {}

#endif
