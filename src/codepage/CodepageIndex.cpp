#include "codepage/CodepageIndex.h"

namespace TvDetail {

void deleteCodepageIndex(CodepageIndex* index) noexcept { delete index; }

} // namespace TvDetail
