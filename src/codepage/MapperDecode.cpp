// MapperDecode.cpp - byte text of a code page to wide text.
#include "TvCharMapper.h"

#include "TvCharConverter.h"
#include "codepage/MapperAccess.h"
#include "codepage/MapperText.h"
#include "codepage/ResultVector.h"
#include "codepage/TextKernels.h"
#include "codepage/TextSteps.h"
#include "codepage/Utf8Text.h"

namespace TvDetail {

namespace {

constexpr int kCifLength = 7;
constexpr int kMifLength = 8;

// What kernels convert of the text from `src` on, with an index whose kernels decode.
inline KernelProgress runKernel(const CodepageIndex& index, const unsigned char* src, std::size_t count,
                                wchar_t* out)
{
    const TextKernels& kernels = textKernels();
    return index.hasLeads() ? kernels.decodeDouble(src, count, out, index.tables, index.leads)
                            : kernels.decodeSingle(src, count, out, index.tables);
}

// One conversion. The kernels run over what is easy; each stop of theirs, and every foreign byte
// while there is no index, is one step() here. The code page is none of the older names.
template<class Store>
class Decoder {
public:
    Decoder(code_page_id cp, const unsigned char* src, std::size_t count, Store& out, KernelProgress done)
        : m_cp(cp), m_src(src), m_count(count), m_at(done.read), m_out(out, done.written),
          m_page(MapperAccess::of(m_cp))
    {
    }

    void run()
    {
        if (!makeRoom(0))
            return;
        for (;;) {
            if (m_page.index && m_page.index->kernelsDecode)
                advance(runKernel(*m_page.index, m_src + m_at, m_count - m_at, m_out.end()));
            else
                runAscii();
            // NOLINTNEXTLINE(clang-analyzer-core.NullDereference): a kernel reads at most `count`, 0 of null
            if (m_at == m_count || m_src[m_at] == 0)
                break;
            if (!step())
                return;
        }
        m_out.finish();
    }

private:
    void advance(KernelProgress done)
    {
        m_at += done.read;
        m_out.advance(done.written);
    }

    // Room for `extra` elements and one for each byte that is left, which suffices but for
    // pairs that turn to escapes.
    bool makeRoom(std::size_t extra)
    {
        const std::size_t least = extra + (m_count - m_at) + 1 + kKernelSlack;
        return m_out.makeRoom(least, least + m_at / 2);
    }

    // Without an index, which a mapper has only once its table is loaded.
    void runAscii()
    {
        const unsigned char* from = m_src + m_at;
        const std::size_t count = asciiLength(from, m_count - m_at);
        if (count != 0)
            advance(textKernels().decodeSingle(from, count, m_out.end(), g_asciiTables));
    }

    // Converts what stands here, one character or escape. False when memory ran out.
    bool step()
    {
        const unsigned char b = m_src[m_at];
        if (b == '\\' && (readCif() || readMif()))
            return true;
        if (b >= 0x80)
            return readCharacter(b);
        ++m_at;
        m_out.put(b);
        return true;
    }

    bool readCif()
    {
        wchar_t wc = 0;
        if (m_count - m_at < kCifLength || !TvCharConverter::parseCIFString(m_src + m_at, wc))
            return false;
        m_out.put(wc);
        m_at += kCifLength;
        return true;
    }

    // An escape whose code does not convert stays as it stands.
    bool readMif()
    {
        wchar_t code = 0;
        code_page_id cp = CP_UNDEFINED;
        if (m_count - m_at < kMifLength || !TvCharConverter::parseMIFString(m_src + m_at, code, cp))
            return false;
        wchar_t wc = 0;
        if (TvCharMapper::codepageToUnicode(code, cp, wc)) {
            m_out.put(wc);
        } else {
            for (int i = 0; i < kMifLength; ++i)
                m_out.put(m_src[m_at + i]);
        }
        m_at += kMifLength;
        return true;
    }

    bool readCharacter(unsigned char lead)
    {
        const bool mayLead = tvIsLeadByte(lead, m_cp);
        const unsigned char trail = m_at + 1 < m_count ? m_src[m_at + 1] : 0;
        const bool pair = mayLead && trail != 0;
        m_at += pair ? 2 : 1;
        wchar_t wc = 0;
        // A lead byte alone is looked up in "ascii" first, as that id stands.
        if (mayLead && !pair && TvCharMapper::codepageToUnicode(lead, CP_ASCII, wc) && isEmitted(wc)) {
            m_out.put(wc);
            return true;
        }
        if (!m_loadTried) {
            m_loadTried = true;
            // Also when an escape has loaded the table meanwhile: the page was taken without it.
            if (!m_page.index)
                m_page = MapperAccess::loaded(m_cp);
        }
        const unsigned code = pair ? lead * 256u + trail : lead;
        const int found = m_page.decode(code);
        if (isEmitted(found)) {
            m_out.put(static_cast<wchar_t>(found));
        } else if (pair && TvCharConverter::isMIFCodepage(m_cp)) {
            if (!makeRoom(kMifLength))
                return false;
            TvCharConverter::getMIFString(static_cast<wchar_t>(code), m_cp, m_out.end(), kMifLength);
            m_out.advance(kMifLength);
        } else {
            m_out.put(static_cast<wchar_t>(code));
        }
        return true;
    }

    // A character that a table gives as 0 or "?" counts as none.
    static bool isEmitted(int wc) { return wc > 0 && wc != '?'; }

    code_page_id m_cp;
    const unsigned char* m_src;
    std::size_t m_count;
    std::size_t m_at;
    ResultVector<wchar_t, Store> m_out;
    MapperAccess m_page;
    bool m_loadTried = false; // once a text: a file that lacks the table now lacks it for all of it
};

template<class Store>
[[gnu::noinline]] void decodeInSteps(code_page_id cp, const unsigned char* src, std::size_t count, Store& out,
                                     KernelProgress done)
{
    Decoder<Store>(sameCodePage(cp), src, count, out, done).run();
}

} // namespace

template<class Store>
void decodeText(code_page_id cp, const char* src, int len, Store& out)
{
    if (len < 0) [[unlikely]]
        return ResultVector<wchar_t, Store>(out).clear();
    const std::size_t count = src ? static_cast<std::size_t>(len) : 0;
    if (!hasTables(cp)) {
        cp = withSystemCodePage(cp);
        if (cp == CP_UTF8) {
            utf8Decode(src, count, out);
            return;
        }
    }
    const auto* const bytes = reinterpret_cast<const unsigned char*>(src);
    // Most texts are done by one run of a kernel, in room that the result has from the last text.
    const CodepageIndex* const index = indexOf(MapperSlots::findSame(cp));
    wchar_t* const to = roomOf(out, count + 1 + kKernelSlack);
    if (!index || !index->kernelsDecode || !to) [[unlikely]]
        return decodeInSteps(cp, bytes, count, out, {0, 0});
    const KernelProgress done = runKernel(*index, bytes, count, to);
    // NOLINTNEXTLINE(clang-analyzer-core.NullDereference): a kernel reads at most `count`, 0 of null
    if (done.read != count && bytes[done.read] != 0) [[unlikely]]
        return decodeInSteps(cp, bytes, count, out, done);
    to[done.written] = 0;
    out.setLogicalLength(static_cast<int>(done.written) + 1);
}

template void decodeText(code_page_id, const char*, int, TvVector<wchar_t>&);
template void decodeText(code_page_id, const char*, int, ShortText<wchar_t>&);

} // namespace TvDetail

void TvCharMapper::multiByteToWideChar(code_page_id cp, const char* src, int len, TvVector<wchar_t>& out)
{
    TvDetail::decodeText(cp, src, len, out);
}

void TvCharMapper::multiByteToWideChar(code_page_id cp, unsigned int, const char* src, int len,
                                       TvVector<wchar_t>& out)
{
    TvDetail::decodeText(cp, src, len, out);
}
