// StringModel.h - strings that share blocks, done plainly, and traffic that compares them with
// TvStringA.
#ifndef TV_TEST_STRING_MODEL_H
#define TV_TEST_STRING_MODEL_H

#include "TvPlatformBase.h"
#include "TvStringA.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <memory>
#include <string>

/// What a TvStringA should be: its text, and the block that it shares with others.
class StringModel {
public:
    struct Block {
        std::string text;
        std::size_t room; ///< elements allocated
        int codepage;

        std::size_t count() const { return text.empty() ? 0 : text.size() + 1; }
    };

    explicit StringModel(const std::string& text, int codepage)
    {
        assign(text);
        setCodepage(codepage);
    }

    void assign(const std::string& text)
    {
        if (text.empty()) {
            if (!this->text().empty())
                setEmpty();
            return;
        }
        makeRoom(text.size() + 1);
        m_block->text = text;
    }

    /// getBuffer(room), written with `text`, and releaseBuffer(its length).
    void fill(std::size_t room, const std::string& text)
    {
        makeRoom(room + 1);
        if (text.empty())
            setEmpty();
        else
            m_block->text = text;
    }

    /// releaseBuffer() of a length that is not above the present one.
    void cut(std::size_t length)
    {
        if (length == 0)
            return assign("");
        unshare();
        m_block->text.resize(length);
    }

    void write(std::size_t at, char c)
    {
        unshare();
        m_block->text[at] = c;
    }

    void setCodepage(int codepage)
    {
        unshare();
        m_block->codepage = codepage;
    }

    void setEmpty() { m_block = nullptr; }

    std::string text() const { return m_block ? m_block->text : ""; }

    /// The first thing in which `real` differs, or null.
    const char* differenceFrom(const TvStringA& real) const
    {
        const TvStrHeaderA& header = *real.header();
        if (const char* const fault = TvDetail::StringCheck::faultOf(real))
            return fault;
        if (real.numOfChars() != text().size() || real.isEmpty() != text().empty())
            return "length";
        if (text() != real.constStr() || std::strlen(real) != text().size())
            return "text";
        if (header.codepage != (m_block ? m_block->codepage : 0))
            return "code page";
        if (header.count != (m_block ? m_block->count() : 0))
            return "count";
        if (header.allocCount != (m_block ? m_block->room : 0))
            return "room";
        if ((&header == TvStrHeaderA::sEmptyHeader()) != !m_block)
            return "sharing of the empty header";
        if (m_block && header.refCount != static_cast<std::uint32_t>(m_block.use_count()))
            return "number of holders";
        return nullptr;
    }

private:
    bool isShared() const { return !m_block || m_block.use_count() > 1; }
    std::size_t count() const { return m_block ? m_block->count() : 0; }

    void takeBlock(std::size_t room)
    {
        m_block = std::make_shared<Block>(m_block ? Block{m_block->text, room, m_block->codepage}
                                                  : Block{"", room, 0});
    }

    void unshare()
    {
        if (isShared())
            takeBlock(count());
    }

    // A block of its own for `elements`.
    void makeRoom(std::size_t elements)
    {
        if (isShared())
            takeBlock((elements + 7) / 8 * 8);
        else if (elements > m_block->room)
            m_block->room +=
                std::max({std::min<std::size_t>(m_block->room, 65536), std::size_t{8}, elements - count()});
    }

    std::shared_ptr<Block> m_block; // null: the empty header, which all share
};

/// Operations on a few strings that share texts, each beside its model.
class StringTraffic {
public:
    /// `choose(n)` answers a number below `n`.
    explicit StringTraffic(std::function<unsigned int(unsigned int)> choose) : m_choose(std::move(choose)) {}

    /// Makes one step; what went wrong, or null.
    const char* step()
    {
        one(m_pairs[m_choose(kPairs)]);
        for (const Pair& pair : m_pairs)
            if (const char* const difference = pair.model.differenceFrom(pair.real))
                return difference;
        return nullptr;
    }

private:
    static constexpr unsigned int kPairs = 4;

    struct Pair {
        TvStringA real;
        StringModel model{"", static_cast<int>(GetACP())};
    };

    std::string newText()
    {
        static const unsigned int kMost[] = {1, 9, 20, 40, 300, 80000};
        const unsigned int kind = m_choose(32);
        const std::size_t length = m_choose(kMost[kind < 5 ? kind : kind == 31 ? 5 : 3]);
        const auto first = static_cast<char>('a' + m_choose(26));
        std::string text(length, first);
        for (std::size_t i = 0; i < length; ++i)
            text[i] = static_cast<char>('!' + (i * 7 + static_cast<std::size_t>(first)) % 200);
        return text;
    }

    void one(Pair& pair)
    {
        switch (m_choose(14)) {
        case 0:
        case 1: {
            const std::string text = newText();
            pair.real.assign(text.c_str());
            return pair.model.assign(text);
        }
        case 2: {
            const auto at = m_choose(static_cast<unsigned int>(pair.model.text().size()) + 1);
            const std::string text = pair.model.text().substr(at);
            pair.real.assign(pair.real.constStr() + at);
            return pair.model.assign(text);
        }
        case 3:
        case 4:
        case 5:
            pair = m_pairs[m_choose(kPairs)];
            return;
        case 6: {
            const Pair& other = m_pairs[m_choose(kPairs)];
            pair.real.assign(other.real);
            pair.model = other.model;
            return;
        }
        case 7: {
            const std::string text = newText();
            pair.real = text.c_str();
            pair.model = StringModel(text, static_cast<int>(GetACP()));
            return;
        }
        case 8:
            pair.real.setEmpty();
            return pair.model.setEmpty();
        case 9:
            return write(pair);
        case 10:
        case 11:
            return fill(pair);
        case 12: {
            const int codepage = static_cast<int>(m_choose(2000));
            pair.real.setCodepage(codepage);
            return pair.model.setCodepage(codepage);
        }
        default: {
            const auto length = m_choose(static_cast<unsigned int>(pair.model.text().size()) + 1);
            pair.real.releaseBuffer(static_cast<int>(length));
            return pair.model.cut(length);
        }
        }
    }

    void write(Pair& pair)
    {
        char* const text = pair.real.rawStr();
        if (pair.model.text().empty())
            return;
        const auto at = m_choose(static_cast<unsigned int>(pair.model.text().size()));
        text[at] = '#';
        pair.model.write(at, '#');
    }

    // Half of the time the length is left to the terminating 0.
    void fill(Pair& pair)
    {
        const std::string text = newText();
        const std::size_t room = std::max<std::size_t>(text.size() + m_choose(20), 1);
        char* const to = pair.real.getBuffer(static_cast<int>(room));
        std::memcpy(to, text.c_str(), text.size() + 1);
        pair.real.releaseBuffer(m_choose(2) ? static_cast<int>(text.size()) : -1);
        pair.model.fill(room, text);
    }

    std::function<unsigned int(unsigned int)> m_choose;
    Pair m_pairs[kPairs];
};

#endif
