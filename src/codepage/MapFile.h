// MapFile.h - reading the code page map file.
//
// The file, all numbers little-endian: header text that ends with "H" and a NUL; the
// directory, 38 signed 32-bit offsets; and for each code page with a table, 256 bytes
// behind its offset, a 16-bit count, that many 16-bit codes in ascending order, and the
// UTF-16 unit of each.
//
// Nothing the file holds is trusted: each size is held against the length of the stream
// before anything is read.
#ifndef TV_MAP_FILE_H
#define TV_MAP_FILE_H

#include "TvCodePages.h"

class TvStreamBuf;

namespace TvDetail {

/// Reads the directory at the stream's cursor into the table offsets of `pages`.
/// False, and no mapper has an offset, when it does not fit the file or a read fails.
bool readMapDirectory(EkCodepages& pages, TvStreamBuf& stream);

/// Reads the table whose offset in the directory is `tableOffset`. False, and `pairs` is
/// untouched, when it does not fit the file, its codes do not ascend, a read fails or
/// memory runs out.
bool readMapTable(TvStreamBuf& stream, unsigned int tableOffset, TvVector<EkCpUnicodePair>& pairs);

} // namespace TvDetail

#endif
