// TvOsBase.h - every public name of libTvOsBase with one include.
#ifndef TV_OSBASE_H
#define TV_OSBASE_H

#include "OrCodePage.h"
#include "TvAlloc.h"
#include "TvCharCategory.h"
#include "TvCharConverter.h"
#include "TvCharMapper.h"
#include "TvCharOp.h"
#include "TvCodePages.h"
#include "TvErrorStatus.h"
#include "TvExport.h"
#include "TvFileStreamBuf.h"
#include "TvFileSystem.h"
#include "TvFormat.h"
#include "TvGdImpl.h"
#include "TvHeap.h"
#include "TvHooks.h"
#include "TvLock.h"
#include "TvMath.h"
#include "TvMemData.h"
#include "TvMemStreamBuf.h"
#include "TvNumber.h"
#include "TvPlatformBase.h"
#include "TvScan.h"
#include "TvStdStr.h"
#include "TvStreamBuf.h"
#include "TvStringA.h"
#include "TvUnits.h"
#include "TvVector.h"
#include "TvVectorData.h"

#endif
