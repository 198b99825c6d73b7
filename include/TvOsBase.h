// TvOsBase.h - every public name of libTvOsBase with one include.
#ifndef TV_OSBASE_H
#define TV_OSBASE_H

#include "TvExport.h"
#include "TvLock.h"
#include "TvPlatformBase.h"

#endif
