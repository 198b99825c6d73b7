// Any text in any code page, both ways: the whole conversion against its rules spelled out, and
// every kernel set of this machine against the plain one.
//
// Byte 0 chooses the code page, byte 1 the system code page, the rest is the text.
#include "TvCharMapper.h"
#include "TvPlatformBase.h"
#include "codepage/CodepageIndex.h"
#include "codepage/TextKernels.h"

#include "FuzzInput.h"
#include "MapperModel.h"

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>
#include <vector>

using namespace TvDetail;

namespace {

constexpr unsigned kSystemPages[] = {1252, 932, 936, 949, 950, 1251, 65001, 20936};

template<class T>
std::basic_string<T> resultText(const TvVector<T>& result)
{
    require(result.length() > 0 && result.asArrayPtr()[result.length() - 1] == 0);
    return {result.asArrayPtr(), static_cast<std::size_t>(result.length()) - 1};
}

void checkConversions(code_page_id cp, const std::string& bytes, const std::wstring& wide)
{
    TvVector<wchar_t> toWide;
    TvCharMapper::multiByteToWideChar(cp, exactly(bytes).get(), static_cast<int>(bytes.size()), toWide);
    require(resultText(toWide) == MapperModel::toWide(cp, bytes));

    TvVector<char> toBytes;
    TvCharMapper::wideCharToMultiByte(cp, exactly(wide).get(), static_cast<int>(wide.size()), toBytes);
    if (wide.empty() && MapperModel::ofSystem(cp) == CP_UTF8)
        require(toBytes.isEmpty()); // UTF-8 makes nothing at all of no text
    else
        require(resultText(toBytes) == MapperModel::toBytes(cp, wide));
}

// What one kernel makes of a text: how far it read, and the elements that count.
template<class Out>
struct Made {
    std::size_t read;
    std::vector<Out> elements;

    bool operator==(const Made& other) const { return read == other.read && elements == other.elements; }
};

template<class Out, class Run>
Made<Out> made(std::size_t most, Run run)
{
    std::vector<Out> out(most + kKernelSlack);
    const KernelProgress progress = run(out.data());
    require(progress.written <= most);
    out.resize(progress.written);
    return {progress.read, out};
}

void checkUtf8(const TextKernels& kernels, const std::string& bytes, const std::wstring& wide)
{
    const auto decode = [&](const TextKernels& set) {
        const auto block = exactly(bytes);
        const auto* src = reinterpret_cast<const unsigned char*>(block.get());
        return made<wchar_t>(bytes.size(),
                             [&](wchar_t* dst) { return set.utf8Decode(src, bytes.size(), dst); });
    };
    require(decode(kernels) == decode(g_plainKernels));
    const auto encode = [&](const TextKernels& set) {
        const auto block = exactly(wide);
        return made<char>(3 * wide.size(),
                          [&](char* dst) { return set.utf8Encode(block.get(), wide.size(), dst); });
    };
    require(encode(kernels) == encode(g_plainKernels));
}

void checkPage(const TextKernels& kernels, const EkCodepageMapper& mapper, const std::string& bytes,
               const std::wstring& wide)
{
    const CodepageIndex* index = codepageIndex(mapper);
    require(index != nullptr);
    const CodepageTables& tables = index->tables;
    LeadRanges leads = {};
    for (int i = 0; i < 2 && mapper.m_leadBytes.length() > 0; ++i) {
        const EkLeaderBytes range = mapper.m_leadBytes.asArrayPtr()[i % mapper.m_leadBytes.length()];
        leads.first[i] = range.first;
        leads.last[i] = range.last;
    }
    const auto decode = [&](const TextKernels& set) {
        const auto block = exactly(bytes);
        const auto* src = reinterpret_cast<const unsigned char*>(block.get());
        return made<wchar_t>(bytes.size(), [&](wchar_t* dst) {
            return tables.decode ? set.decodeDouble(src, bytes.size(), dst, tables, leads)
                                 : set.decodeSingle(src, bytes.size(), dst, tables);
        });
    };
    require(decode(kernels) == decode(g_plainKernels));
    const auto encode = [&](const TextKernels& set) {
        const auto block = exactly(wide);
        const auto kernel = tables.encodePair ? set.encodeDouble : set.encodeSingle;
        return made<char>(2 * wide.size(),
                          [&](char* dst) { return kernel(block.get(), wide.size(), dst, tables); });
    };
    require(encode(kernels) == encode(g_plainKernels));
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    const std::string path = TV_SOURCE_DIR "/data/codepage.map";
    require(TvCharMapper::initialize(CStdStr<wchar_t>(std::wstring(path.begin(), path.end()))) == Orna::eOk);
    wchar_t wc = 0;
    for (const code_page_id id : {CP_ANSI_932, CP_ANSI_936, CP_ANSI_949, CP_ANSI_950})
        TvCharMapper::codepageToUnicode(0x8140, id, wc); // loads the table, which the model does not
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 2)
        return 0;
    // A few ids beyond the registry on either side.
    const auto cp = static_cast<code_page_id>(data[0] % 52 - 3);
    tvPlatformSetACP(kSystemPages[data[1] % std::size(kSystemPages)]);
    const std::string bytes(reinterpret_cast<const char*>(data) + 2, size - 2);
    const std::wstring wide = wideOf(bytes);

    checkConversions(cp, bytes, wide);
    const EkCodepageMapper* mapper = theTvCodePages()->findMapperByAcadCp(MapperModel::folded(cp));
    const KernelList list = runnableKernels();
    for (int set = 1; set < list.count; ++set) {
        checkUtf8(*list.sets[set], bytes, wide);
        if (mapper)
            checkPage(*list.sets[set], *mapper, bytes, wide);
    }
    return 0;
}
