// HeapModel.h - which unit the pooled heap hands out next, by the plainest means: blocks and
// pages are entries of maps, lists are std::list, the free units of a block a vector.
//
// Everything is an offset from the range start; 0, which the heap never hands out, stands for
// memory of the C library. Every commit inside the range is taken to succeed.
#ifndef TV_TEST_HEAP_MODEL_H
#define TV_TEST_HEAP_MODEL_H

#include "PooledHeap.h"
#include "runtime/TvMemoryTools.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <deque>
#include <iterator>
#include <list>
#include <map>
#include <vector>

class HeapModel {
public:
    using Offset = std::uint64_t;

    HeapModel()
    {
        m_flags.fill(2);
        m_flags[0] = 0;
    }

    Offset take(std::size_t size)
    {
        const int pool = poolOf(size);
        return pool == 0 ? 0 : takeFrom(m_pools[static_cast<std::size_t>(pool)], [&] {
            const Offset block = openBlock();
            return block == 0 ? 0 : fill(block, 0x1000, pool, unitSizeOf(pool));
        });
    }

    void give(Offset unit)
    {
        const Offset block = unit & ~Offset{0xFFF};
        giveTo(m_pools[static_cast<std::size_t>(m_holders.at(block).pool)], block, unit,
               [&] { closeBlock(block); });
    }

    Offset takePage(std::size_t size)
    {
        if (size == 0 || size % 0x1000 != 0 || size > 0x100000)
            return 0;
        const int pool = static_cast<int>(size / 0x1000);
        return takeFrom(m_pagePools[static_cast<std::size_t>(pool)], [&] {
            const int id = openPage();
            return id == 0 ? 0 : fill(offsetOf(id), 0x100000, pool, size);
        });
    }

    void givePage(Offset unit)
    {
        const Offset page = unit & ~Offset{0xFFFFF};
        giveTo(m_pagePools[static_cast<std::size_t>(m_holders.at(page).pool)], page, unit,
               [&] { closePage(idOf(page)); });
    }

    /// What the heap has otherwise; null when nothing.
    const char* difference(const GlobalHeap& heap) const
    {
        if (heap.m_searchHint != m_hint || !std::equal(m_flags.begin(), m_flags.end(), heap.m_pageFlags))
            return "the search for a page";
        for (std::size_t i = 1; i < m_pools.size(); ++i)
            if (!isSameList(heap.pools[i]->availBlocks, m_pools[i].available) ||
                !isSameList(heap.pools[i]->fullBlocks, m_pools[i].full))
                return "the blocks of a pool";
        for (std::size_t i = 1; i < m_pagePools.size(); ++i)
            if (!isSameList(heap.pagePools[i]->availPages, m_pagePools[i].available) ||
                !isSameList(heap.pagePools[i]->fullPages, m_pagePools[i].full))
                return "the pages of a page pool";
        if (!isSamePages(heap.m_freeBlockPages, m_committed) ||
            !isSamePages(heap.m_decommittedPages, m_decommitted))
            return "the pages with free blocks";
        for (const auto& [id, page] : m_pages)
            if (!isSamePage(*pageAt(id), page))
                return "the free blocks of a page";
        return nullptr;
    }

private:
    // The units of a block or of a page of a page pool.
    struct Units {
        int pool = 0;
        Offset size = 0;
        Offset last = 0; // by the end of the block or page, which need not be a unit's
        std::size_t count = 0;
        bool linked = false;
        std::vector<Offset> free; // the last one is the next to go
    };
    struct Pool {
        std::list<Offset> available;
        std::list<Offset> full;
    };
    struct Page {
        std::deque<int> committed;
        std::deque<int> decommitted;
    };

    static constexpr int kReservedIds = 8192;
    static constexpr int kLastId = 32767;

    static int poolOf(std::size_t size)
    {
        size = std::max<std::size_t>(size, 1);
        if (size <= 208)
            return 34 - static_cast<int>((size + 7) / 8);
        if (size <= 256)
            return size <= 224 ? 7 : size <= 240 ? 6 : 5;
        const std::size_t units[] = {512, 1024, 2048, 4096};
        const std::size_t least[] = {500, 1000, 2000, 4000};
        for (int i = 0; i < 4; ++i)
            if (size >= least[i] && size <= units[i])
                return i + 1;
        return 0;
    }
    static Offset unitSizeOf(int pool)
    {
        const Offset large[] = {512, 1024, 2048, 4096, 256, 240, 224};
        return pool <= 7 ? large[pool - 1] : static_cast<Offset>(34 - pool) * 8;
    }

    static Offset offsetOf(int id) { return static_cast<Offset>(id) << 20; }
    static int idOf(Offset offset) { return static_cast<int>(offset >> 20); }
    static const char* addressOf(Offset offset)
    {
        return static_cast<const char*>(TvHeapConfigurator::pStartAddress) + offset;
    }
    static const GlobalHeap::Page* pageAt(int id)
    {
        return reinterpret_cast<const GlobalHeap::Page*>(addressOf(offsetOf(id)));
    }

    template<class Open>
    Offset takeFrom(Pool& pool, Open open)
    {
        if (pool.available.empty()) {
            const Offset opened = open();
            if (opened == 0)
                return 0;
            pool.available.push_front(opened);
        }
        const Offset holder = pool.available.front();
        Units& units = m_holders.at(holder);
        if (units.free.size() == 1) {
            pool.available.pop_front();
            pool.full.push_front(holder);
        }
        const Offset unit = units.free.back();
        units.free.pop_back();
        return unit;
    }

    template<class Close>
    void giveTo(Pool& pool, Offset holder, Offset unit, Close close)
    {
        Units& units = m_holders.at(holder);
        if (units.free.empty())
            units.linked = unit != units.last;
        else if (unit + units.size != units.free.back())
            units.linked = true;
        units.free.push_back(unit);
        const bool wasFull = units.free.size() == 1;
        if (units.free.size() == units.count) {
            (wasFull ? pool.full : pool.available).remove(holder);
            m_holders.erase(holder);
            close();
        } else if (wasFull) {
            pool.full.remove(holder);
            pool.available.push_front(holder);
        }
    }

    Offset fill(Offset start, Offset length, int pool, Offset size)
    {
        Units units;
        units.pool = pool;
        units.size = size;
        units.last = start + length - size;
        units.count = static_cast<std::size_t>(length / size);
        for (std::size_t i = units.count; i-- > 0;)
            units.free.push_back(start + i * size);
        m_holders[start] = units;
        return start;
    }

    // 0 also for an id beyond the reservation, which is used up all the same.
    int openPage()
    {
        int id = m_hint;
        while (id > 0 && m_flags[static_cast<std::size_t>(id)] != 2)
            --id;
        if (id == 0)
            for (id = kLastId; id > 0 && m_flags[static_cast<std::size_t>(id)] != 2;)
                --id;
        if (id == 0)
            return 0;
        m_hint = id - 1;
        m_flags[static_cast<std::size_t>(id)] = 3;
        return id < kReservedIds ? id : 0;
    }
    void closePage(int id)
    {
        m_flags[static_cast<std::size_t>(id)] = 2;
        m_hint = std::max(m_hint, id);
    }

    Offset openBlock()
    {
        if (m_committed.empty() && !m_decommitted.empty())
            recommit();
        if (m_committed.empty()) {
            const int id = openPage();
            if (id == 0)
                return 0;
            Page page;
            for (int i = 2; i < 256; ++i)
                (i < 16 ? page.committed : page.decommitted).push_back(i);
            m_pages[id] = page;
            m_committed.push_front(id);
        }
        const int id = m_committed.front();
        Page& page = m_pages[id];
        const int block = page.committed.front();
        page.committed.pop_front();
        if (page.committed.empty()) {
            m_committed.pop_front();
            if (!page.decommitted.empty())
                m_decommitted.push_front(id);
        }
        return offsetOf(id) + static_cast<Offset>(block) * 0x1000;
    }

    // The consecutive blocks at the head of the first page's list, 16 at the most.
    void recommit()
    {
        const int id = m_decommitted.front();
        Page& page = m_pages[id];
        do {
            page.committed.push_back(page.decommitted.front());
            page.decommitted.pop_front();
        } while (!page.decommitted.empty() && page.committed.size() < 16 &&
                 page.decommitted.front() == page.committed.back() + 1);
        m_decommitted.pop_front();
        m_committed.push_front(id);
    }

    void closeBlock(Offset offset)
    {
        const int id = idOf(offset);
        const int block = static_cast<int>(offset >> 12 & 0xFF);
        Page& page = m_pages[id];
        if (page.committed.size() < 16) {
            page.committed.push_front(block);
            if (page.committed.size() == 1) {
                m_decommitted.remove(id);
                m_committed.push_front(id);
            }
        } else if (page.committed.size() + page.decommitted.size() == 253 &&
                   (!m_decommitted.empty() || m_committed.front() != id)) {
            m_committed.remove(id);
            m_pages.erase(id);
            closePage(id);
        } else {
            page.decommitted.push_front(block);
        }
    }

    static Offset startOf(const GlobalHeap::Block& block)
    {
        return static_cast<Offset>(block.firstUnit() - addressOf(0));
    }
    static Offset startOf(const GlobalHeap::PageHeap& record) { return record.firstUnit(); }

    template<class Node>
    bool isSameList(const Node* node, const std::list<Offset>& wanted) const
    {
        const Node* prev = nullptr;
        for (const Offset holder : wanted) {
            if (node == nullptr || node->prev != prev || startOf(*node) != holder ||
                !isSameUnits(*node, m_holders.at(holder)))
                return false;
            prev = node;
            node = node->next;
        }
        return node == nullptr;
    }

    template<class Node>
    static bool isSameUnits(const Node& node, const Units& wanted)
    {
        if (node.poolIndex != wanted.pool || static_cast<std::size_t>(node.freeCount) != wanted.free.size())
            return false;
        if (wanted.free.empty())
            return node.freeUnit == nullptr;
        if ((node.flags & GlobalHeap::kLinked) != (wanted.linked ? GlobalHeap::kLinked : 0))
            return false;
        if (!wanted.linked)
            return node.freeUnit == addressOf(wanted.free.back());
        const void* unit = node.freeUnit;
        for (auto i = wanted.free.rbegin(); i != wanted.free.rend(); ++i) {
            if (unit != addressOf(*i))
                return false;
            unit = TvMemoryTools::loadLink(unit);
        }
        return unit == nullptr;
    }

    static bool isSamePages(const GlobalHeap::Page* page, const std::list<int>& wanted)
    {
        int prev = 0;
        for (const int id : wanted) {
            if (page != pageAt(id) || page->prevPageId != prev)
                return false;
            prev = id;
            page = static_cast<const GlobalHeap::Page*>(
                TvHeapConfigurator::sGetPageAddress(static_cast<short>(page->nextPageId)));
        }
        return page == nullptr;
    }

    static bool isSamePage(const GlobalHeap::Page& page, const Page& wanted)
    {
        return isSameBlocks(page.freeBlocks, page.freeBlockCount, wanted.committed) &&
               isSameBlocks(page.decommittedBlocks, page.decommittedCount, wanted.decommitted);
    }
    static bool isSameBlocks(const GlobalHeap::Block* block, int count, const std::deque<int>& wanted)
    {
        if (static_cast<std::size_t>(count) != wanted.size())
            return false;
        for (const int id : wanted) {
            if (block == nullptr || block->id() != id)
                return false;
            block = block->next;
        }
        return block == nullptr;
    }

    std::array<unsigned char, 32768> m_flags;
    int m_hint = 16384;
    std::map<Offset, Units> m_holders; // by the start of the block or page
    std::map<int, Page> m_pages;       // those of blocks, by id
    std::list<int> m_committed;
    std::list<int> m_decommitted;
    std::array<Pool, 34> m_pools;
    std::array<Pool, 257> m_pagePools;
};

#endif
