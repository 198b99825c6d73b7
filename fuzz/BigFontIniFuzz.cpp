// Any bytes as a BIGFONT.INI, against the model.
#include "TvBigFont.h"

#include "BigFontIniModel.h"
#include "MemoryFile.h"

#include <cstddef>
#include <cstdint>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string content(reinterpret_cast<const char*>(data), size);
    const MemoryFile file(content);
    g_mapCP2Bigfont.clear();
    require(ReadBigfontIni(file.path().c_str()));
    require(g_mapCP2Bigfont == BigFontIniModel::read(content));
    return 0;
}
