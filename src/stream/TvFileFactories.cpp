#include "TvFileStreamBuf.h"

#include <new>

TvFileIOStreamBuf::TvFileIOStreamBuf(const wchar_t* name, Orna::ErrorStatus* status, TvIO::AccessMode access,
                                     TvIO::ShareMode share, TvIO::CreationDisposition disposition)
    : TvFileStreamBufImpl(name, status, access, share, disposition)
{
}

TvFileIOStreamBuf::TvFileIOStreamBuf(void* handle) : TvFileStreamBufImpl(handle) {}

TvFileIOStreamBuf::~TvFileIOStreamBuf() = default;

TvFileStreamBufImpl* createFileStreamBuf(const wchar_t* name, Orna::ErrorStatus* status,
                                         TvIO::AccessMode access, TvIO::ShareMode share,
                                         TvIO::CreationDisposition disposition)
{
    return new (std::nothrow) TvFileStreamBufImpl(name, status, access, share, disposition);
}

TvFileIStreamBuf* createFileIStreamBuf(const wchar_t* name, Orna::ErrorStatus* status,
                                       TvIO::AccessMode access, TvIO::ShareMode share,
                                       TvIO::CreationDisposition disposition)
{
    return new (std::nothrow) TvFileIStreamBuf(name, status, access, share, disposition);
}

TvFileOStreamBuf* createFileOStreamBuf(const wchar_t* name, Orna::ErrorStatus* status,
                                       TvIO::AccessMode access, TvIO::ShareMode share,
                                       TvIO::CreationDisposition disposition, unsigned int cacheCapacity)
{
    return new (std::nothrow) TvFileOStreamBuf(name, status, access, share, disposition, cacheCapacity);
}

TvFileIOStreamBuf* createFileIOStreamBuf(const wchar_t* name, Orna::ErrorStatus* status,
                                         TvIO::AccessMode access, TvIO::ShareMode share,
                                         TvIO::CreationDisposition disposition)
{
    return new (std::nothrow) TvFileIOStreamBuf(name, status, access, share, disposition);
}

TvFileIOStreamBuf* createFileIOStreamBuf(void* handle)
{
    return new (std::nothrow) TvFileIOStreamBuf(handle);
}

void destoryFileIOStreamBuf(TvFileStreamBuf* stream) { delete stream; }
