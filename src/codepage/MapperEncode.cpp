// MapperEncode.cpp - wide text to byte text of a code page.
#include "TvCharMapper.h"

#include "TvCharConverter.h"
#include "codepage/MapperAccess.h"
#include "codepage/MapperText.h"
#include "codepage/ResultVector.h"
#include "codepage/TextKernels.h"
#include "codepage/TextSteps.h"
#include "codepage/Utf8Text.h"

#include <algorithm>
#include <cwchar>

namespace TvDetail {

namespace {

constexpr std::size_t kCifLength = 7;
constexpr std::size_t kMifLength = 8;

// Bytes that must be free before a step or a kernel: the longest escape, a terminator.
constexpr std::size_t kLeastRoom = kMifLength + 1 + kKernelSlack;

// What kernels convert of the text from `src` on; two bytes an element must be free.
inline KernelProgress runKernel(const CodepageIndex& index, const wchar_t* src, std::size_t count, char* out)
{
    const TextKernels& kernels = textKernels();
    const auto kernel = index.tables.encodePair ? kernels.encodeDouble : kernels.encodeSingle;
    return kernel(src, count, out, index.tables);
}

// One conversion; see Decoder for how kernels and steps share the work.
template<class Store>
class Encoder {
public:
    Encoder(code_page_id cp, const wchar_t* src, std::size_t count, Store& out, KernelProgress done)
        : m_cp(cp), m_src(src), m_count(count), m_at(done.read), m_out(out, done.written),
          m_page(MapperAccess::of(m_cp))
    {
    }

    void run()
    {
        while (makeRoom()) {
            if (m_page.index)
                advance(runKernel(*m_page.index, m_src + m_at,
                                  std::min(m_count - m_at, (m_out.room() - kLeastRoom) / 2), m_out.end()));
            else
                runAscii();
            if (m_at == m_count || m_src[m_at] == 0)
                return m_out.finish();
            step();
        }
    }

private:
    // Makes it likely, with two bytes a character, that no more room is needed.
    bool makeRoom() { return m_out.makeRoom(kLeastRoom, kLeastRoom + 2 * (m_count - m_at) + m_at / 2); }

    void advance(KernelProgress done)
    {
        m_at += done.read;
        m_out.advance(done.written);
    }

    // As the decoder's.
    void runAscii()
    {
        const wchar_t* from = m_src + m_at;
        const std::size_t count = asciiLength(from, std::min(m_count - m_at, m_out.room() - kLeastRoom));
        if (count != 0)
            advance(textKernels().encodeSingle(from, count, m_out.end(), g_asciiTables));
    }

    // Converts what stands here, one character or escape.
    void step()
    {
        const auto wc = static_cast<unsigned>(m_src[m_at]);
        if (wc == '\\' && keepEscape())
            return;
        ++m_at;
        if (wc < 0x80)
            m_out.put(static_cast<char>(wc));
        else
            writeCharacter(wc);
    }

    // Only escapes that lie wholly inside the text count.
    bool keepEscape()
    {
        wchar_t text[kMifLength + 1] = {};
        const std::size_t most = std::min(kMifLength, m_count - m_at);
        std::copy_n(m_src + m_at, wcsnlen(m_src + m_at, most), text);
        const char kind = isCIForMIF(text);
        if (kind == 0)
            return false;
        const std::size_t length = kind == 'u' ? kCifLength : kMifLength;
        for (std::size_t i = 0; i < length; ++i)
            m_out.put(static_cast<char>(text[i]));
        m_at += length;
        return true;
    }

    void writeCharacter(unsigned wc)
    {
        if (!m_loadTried) {
            m_loadTried = true;
            if (!m_page.index)
                m_page = MapperAccess::loaded(m_cp);
        }
        const int code = m_page.encode(wc);
        if (code < 0) {
            TvCharConverter::getCIFString(static_cast<unsigned short>(wc), m_out.end(), kCifLength);
            m_out.advance(kCifLength);
            return;
        }
        if (code > 0xFF)
            m_out.put(static_cast<char>(code >> 8));
        m_out.put(static_cast<char>(code));
    }

    code_page_id m_cp;
    const wchar_t* m_src;
    std::size_t m_count;
    std::size_t m_at;
    ResultVector<char, Store> m_out;
    MapperAccess m_page;
    bool m_loadTried = false; // once a text: a file that lacks the table now lacks it for all of it
};

template<class Store>
[[gnu::noinline]] void encodeInSteps(code_page_id cp, const wchar_t* src, std::size_t count, Store& out,
                                     KernelProgress done)
{
    Encoder<Store>(sameCodePage(cp), src, count, out, done).run();
}

template<class Store>
[[gnu::noinline]] void encodeUtf8(const wchar_t* src, std::size_t count, Store& out)
{
    if (count == 0) // as unicodeToUtf8: not even a terminator
        return ResultVector<char, Store>(out).clear();
    utf8Encode(src, count, out);
}

} // namespace

template<class Store>
void encodeText(code_page_id cp, const wchar_t* src, int len, Store& out)
{
    if (len < 0) [[unlikely]]
        return ResultVector<char, Store>(out).clear();
    const std::size_t count = src ? static_cast<std::size_t>(len) : 0;
    if (!hasTables(cp)) {
        cp = withSystemCodePage(cp);
        if (cp == CP_UTF8)
            return encodeUtf8(src, count, out);
    }
    // Most texts are done by one run of a kernel, in room that the result has from the last text.
    const CodepageIndex* const index = indexOf(MapperSlots::findSame(cp));
    char* const to = roomOf(out, kLeastRoom + 2 * count);
    if (!index || !to) [[unlikely]]
        return encodeInSteps(cp, src, count, out, {0, 0});
    const KernelProgress done = runKernel(*index, src, count, to);
    // NOLINTNEXTLINE(clang-analyzer-core.NullDereference): a kernel reads at most `count`, 0 of null
    if (done.read != count && src[done.read] != 0) [[unlikely]]
        return encodeInSteps(cp, src, count, out, done);
    to[done.written] = 0;
    out.setLogicalLength(static_cast<int>(done.written) + 1);
}

template void encodeText(code_page_id, const wchar_t*, int, TvVector<char>&);
template void encodeText(code_page_id, const wchar_t*, int, ShortText<char>&);

} // namespace TvDetail

void TvCharMapper::wideCharToMultiByte(code_page_id cp, const wchar_t* src, int len, TvVector<char>& out)
{
    TvDetail::encodeText(cp, src, len, out);
}
