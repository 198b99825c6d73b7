#include "TvMemStreamBuf.h"

TvMemStreamBuf::~TvMemStreamBuf() = default;

unsigned char* TvMemStreamBuf::buffer() { return nullptr; }

const unsigned char* TvMemStreamBuf::buffer() const { return nullptr; }

std::int64_t TvMemStreamBuf::seek(std::uint64_t offset, TvIO::SeekType type)
{
    switch (type) {
    case TvIO::kSeekFromStart:
        moveTo(offset);
        break;
    case TvIO::kSeekForward:
        moveTo(tell() + offset);
        break;
    case TvIO::kSeekBackward:
        moveTo(tell() - offset);
        break;
    case TvIO::kSeekFromEnd:
        moveTo(length() - offset);
        break;
    default: // unknown types move nothing, as meant
        break;
    }
    return static_cast<std::int64_t>(tell());
}

std::uint32_t TvMemStreamBuf::bufSize() const { return static_cast<std::uint32_t>(length()); }

void TvMemStreamBuf::resize(std::uint32_t) {}

void TvMemStreamBuf::reserve(std::uint32_t) {}

void TvMemStreamBuf::moveTo(std::uint64_t) {}
