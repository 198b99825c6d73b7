// HeapTraffic.h - requests, resizes and frees, chosen by numbers from outside, beside a
// plain model of who owns what.
#ifndef TV_TEST_HEAP_TRAFFIC_H
#define TV_TEST_HEAP_TRAFFIC_H

#include "TvAlloc.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <utility>
#include <vector>

/// What is left at its end is freed.
class HeapTraffic {
public:
    HeapTraffic() = default;
    HeapTraffic(const HeapTraffic&) = delete;
    HeapTraffic& operator=(const HeapTraffic&) = delete;
    ~HeapTraffic()
    {
        for (const Piece& piece : m_pieces)
            _tvFree(piece.memory);
    }

    /// One step; `what` chooses the operation, the others its arguments. Null when all is
    /// well, else what is wrong.
    const char* step(unsigned char what, unsigned a, unsigned b)
    {
        if (m_pieces.size() >= kMost)
            what = 255;
        if (what < 110)
            return take(_tvMalloc(smallSize(a)), smallSize(a));
        if (what < 116)
            return take(tvAllocPageHeap(pageSize(a)), pageSize(a));
        if (m_pieces.empty())
            return nullptr;
        return what < 150 ? resize(a, smallSize(b)) : free(a, b);
    }

private:
    struct Piece {
        unsigned char* memory;
        std::size_t size;
        unsigned char mark;
    };

    static constexpr std::size_t kMost = 3000;
    static constexpr std::size_t kMarked = 5000; // bytes of a piece that are filled and checked

    // Mostly small; now and then each size up to past a block.
    static std::size_t smallSize(unsigned x) { return (x & 0xF000) != 0 ? x % 257 : x % 5000; }
    static std::size_t pageSize(unsigned x) { return (x % 256 + 1) * 4096; }

    static void fill(const Piece& piece)
    {
        std::memset(piece.memory, piece.mark, std::min(piece.size, kMarked));
    }
    static bool isIntact(const Piece& piece, std::size_t size)
    {
        const auto checked = static_cast<std::ptrdiff_t>(std::min(size, kMarked));
        return std::count(piece.memory, piece.memory + checked, piece.mark) == checked;
    }

    const char* take(void* memory, std::size_t size)
    {
        if (memory == nullptr)
            return "a request without an answer";
        if (_tvMsize(memory) < size)
            return "a piece smaller than asked for";
        m_pieces.push_back({static_cast<unsigned char*>(memory), size, ++m_mark});
        fill(m_pieces.back());
        return nullptr;
    }

    const char* resize(unsigned which, std::size_t size)
    {
        Piece& piece = m_pieces[which % m_pieces.size()];
        auto* const moved = static_cast<unsigned char*>(_tvRealloc(piece.memory, size));
        if (size == 0)
            return moved == piece.memory ? nullptr : "a resize to nothing that moved";
        if (moved == nullptr)
            return "a resize without an answer";
        piece.memory = moved;
        if (!isIntact(piece, std::min(piece.size, size)))
            return "content lost by a resize";
        piece.size = size;
        fill(piece);
        return nullptr;
    }

    const char* free(unsigned which, unsigned how)
    {
        std::swap(m_pieces[which % m_pieces.size()], m_pieces.back());
        const Piece piece = m_pieces.back();
        if (!isIntact(piece, piece.size))
            return "content that changed";
        m_pieces.pop_back();
        if (how % 2 == 0)
            _tvFree(piece.memory);
        else
            tvFreePageHeap(piece.memory);
        return nullptr;
    }

    std::vector<Piece> m_pieces;
    unsigned char m_mark = 0;
};

#endif
