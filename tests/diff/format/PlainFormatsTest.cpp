// Formatted text as machines without vectors write and read it: this program holds the format
// sources of its own, built that way, and runs the tests of the engines over them.
#include "format/FormatVectors.h"

#ifdef TV_FORMAT_BY_SSE2
#error "this program is about the plain ways"
#endif
