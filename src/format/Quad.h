// Quad.h - the one name for IEEE binary128 arithmetic.
//
// Basic arithmetic, comparison and conversion only: those are in the compiler's own
// support library, everything else would need a mathematics library for the type.
#ifndef TV_FORMAT_QUAD_H
#define TV_FORMAT_QUAD_H

#include <cfloat>

#if LDBL_MANT_DIG == 113
using TvQuad = long double;
#define TV_QUAD(literal) literal##L
#else
using TvQuad = __float128;
#define TV_QUAD(literal) literal##Q
#endif

#endif
