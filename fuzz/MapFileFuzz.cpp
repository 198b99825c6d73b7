// Any bytes as a code page map file: the directory and the four tables, through the stream
// interface.
#include "TvCodePages.h"

#include "FuzzInput.h"
#include "PlainStream.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace {

void readTable(EkCodepageMapper& mapper, TvStreamBuf& stream)
{
    const Orna::ErrorStatus status = mapper.verifyLoaded(&stream);
    require(status == Orna::eOk || (status == Orna::eInvalidInput && mapper.m_pairs.length() == 0));
    const EkCpUnicodePair* const pairs = mapper.m_pairs.asArrayPtr();
    for (int i = 1; i < mapper.m_pairs.length(); ++i)
        require(pairs[i - 1].code < pairs[i].code);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string file(reinterpret_cast<const char*>(data), size);
    const std::size_t nul = file.find('\0');
    PlainStream stream(file, nul == std::string::npos ? size : nul + 1);
    EkCodepages pages;
    pages.init();
    pages.init(&stream);
    for (const code_page_id id : {CP_ANSI_932, CP_ANSI_936, CP_ANSI_949, CP_ANSI_950})
        readTable(*pages.findMapperByAcadCp(id), stream);
    return 0;
}
