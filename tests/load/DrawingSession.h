// DrawingSession.h - days of work on drawings: texts recoded, numbers formatted and parsed,
// documents saved, opened and closed, in an order that a seed decides.
#ifndef TV_TEST_DRAWING_SESSION_H
#define TV_TEST_DRAWING_SESSION_H

#include "DrawingTexts.h"
#include "HeapTraffic.h"
#include "MapperText.h"
#include "ScanCall.h"
#include "TestFiles.h"
#include "TvOsBase.h"
#include "codepage/TextKernels.h"
#include "format/ScanEngines.h"
#include "numconv/DecimalExact.h"
#include "numconv/DigitsExact.h"

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <memory>
#include <random>
#include <string>
#include <vector>

/// Which of the ways to a result a session takes, where there are several.
struct SessionWays {
    const char* name;
    const TvDetail::TextKernels* kernels; ///< of the text conversions
    bool plain;                           ///< numbers and scans by their reference
};

/// Every result goes into a hash, which is the same for every way.
class DrawingSession {
public:
    DrawingSession(const SessionWays& ways, std::uint64_t seed) : m_ways(ways), m_random(seed)
    {
        TvDetail::forceTextKernels(ways.kernels);
        EXPECT_EQ(TvCharMapper::initialize(shippedMapFile()), Orna::eOk);
    }
    ~DrawingSession()
    {
        TvCharMapper::unInitialize();
        g_mapCP2Bigfont.clear();
        TvDetail::forceTextKernels(nullptr);
    }
    DrawingSession(const DrawingSession&) = delete;
    DrawingSession& operator=(const DrawingSession&) = delete;

    /// Works for `steps` operations and closes the drawings. Answers the hash so far.
    std::uint64_t workOneDay(long steps)
    {
        m_day = std::make_unique<Day>();
        for (long i = 0; i < steps && m_wrong.empty(); ++i)
            step();
        m_day.reset();
        TvCharMapper::initialize(shippedMapFile()); // the next day begins without tables
        return m_hash;
    }

    /// What was found to be wrong; empty while all is well.
    const std::string& wrong() const { return m_wrong; }

private:
    // What is open: goes with the end of the day.
    struct Day {
        TvVector<TvStringA> layers;
        TvVector<wchar_t> title;
        TvFlatMemBuf journal{64};
        HeapTraffic objects;
    };

    unsigned below(unsigned limit) { return static_cast<unsigned>(m_random() % limit); }

    void add(const void* bytes, std::size_t count)
    {
        const auto* at = static_cast<const unsigned char*>(bytes);
        for (std::size_t i = 0; i < count; ++i)
            m_hash = (m_hash ^ at[i]) * 0x100000001B3u;
    }
    template<class T>
    void addValue(const T& value)
    {
        add(&value, sizeof value);
    }
    template<class T>
    void addVector(const TvVector<T>& vector)
    {
        add(vector.asArrayPtr(), static_cast<std::size_t>(vector.length()) * sizeof(T));
    }
    void expect(bool holds, const char* what)
    {
        if (!holds)
            m_wrong = what;
    }

    void step()
    {
        const unsigned what = below(1000);
        if (what < 250)
            recodeText();
        else if (what < 350)
            recodeUtf8();
        else if (what < 400)
            decodeBytes();
        else if (what < 450)
            singleCharacters();
        else if (what < 550)
            formatText();
        else if (what < 630)
            scanText();
        else if (what < 720)
            convertNumber();
        else if (what < 800)
            editLayers();
        else if (what < 880)
            writeJournal();
        else if (what < 930)
            allocate();
        else if (what < 970)
            askTables();
        else if (what < 990)
            askBigFont();
        else
            saveAndOpen();
    }

    const DrawingText& anyText() { return kDrawingTexts[below(std::size(kDrawingTexts))]; }

    void recodeText()
    {
        const DrawingText& text = anyText();
        TvVector<char> bytes;
        TvCharMapper::wideCharToMultiByte(text.page, text.text, static_cast<int>(std::wcslen(text.text)),
                                          bytes);
        addVector(bytes);
        TvVector<wchar_t> back;
        TvCharMapper::multiByteToWideChar(text.page, bytes.asArrayPtr(), bytes.length() - 1, back);
        addVector(back);
        expect(std::wcscmp(back.asArrayPtr(), text.text) == 0, "a text that did not come back");
        m_day->title = back;
    }

    void recodeUtf8()
    {
        const DrawingText& text = anyText();
        TvVector<char> bytes;
        TvCharMapper::unicodeToUtf8(text.text, static_cast<int>(std::wcslen(text.text)), bytes);
        addVector(bytes);
        TvVector<wchar_t> back;
        TvCharMapper::utf8ToUnicode(bytes.asArrayPtr(), bytes.length() - 1, back);
        expect(std::wcscmp(back.asArrayPtr(), text.text) == 0, "a text that did not come back from UTF-8");
    }

    // Bytes as they come from a damaged file, in any code page.
    void decodeBytes()
    {
        char bytes[200];
        const auto size = static_cast<int>(below(sizeof bytes));
        for (int i = 0; i < size; ++i)
            bytes[i] = static_cast<char>(below(2) != 0 ? below(256) : 'a' + below(26));
        const auto page = static_cast<code_page_id>(below(46));
        TvVector<wchar_t> wide;
        TvCharMapper::multiByteToWideChar(page, bytes, size, wide);
        addVector(wide);
        wchar_t narrow[400];
        addValue(MultiByteToWideChar(TvCodePageMapper::ornaCpToAnsiCp(page), 0, bytes, size, narrow, 400));
    }

    void singleCharacters()
    {
        wchar_t code = 0;
        wchar_t wc = 0;
        const auto page = static_cast<code_page_id>(below(46));
        addValue(TvCharMapper::unicodeToCodepage(static_cast<wchar_t>(below(0x10000)), page, code, false));
        addValue(TvCharMapper::codepageToUnicode(static_cast<wchar_t>(below(0x10000)), page, wc));
        addValue(code);
        addValue(wc);
        char escape[8] = {};
        TvCharConverter::getMIFString(static_cast<wchar_t>(below(0x10000)), page, escape, 8);
        addValue(escape);
    }

    // A coordinate: whole, with a few places, or any bits at all.
    double anyNumber()
    {
        switch (below(4)) {
        case 0:
            return static_cast<double>(below(100000));
        case 1:
            return static_cast<double>(below(100000000)) / 1000;
        case 2:
            return static_cast<double>(below(1000000)) / 64;
        default: {
            const std::uint64_t bits = m_random();
            double value = 0;
            std::memcpy(&value, &bits, sizeof value);
            return value - value == 0 ? value : 0.5;
        }
        }
    }

    void formatText()
    {
        OrnaAppUnitSets units;
        units.dimLinearStyle = static_cast<short>(1 + below(5));
        units.dimLinearPrecision = static_cast<short>(below(8));
        units.angleStyle = static_cast<short>(below(5));
        initOsBaseUnits(units);
        wchar_t text[400];
        int length = 0;
        switch (below(4)) {
        case 0:
            length = FormatUtil::outputStringWithFormat(text, 400, L"%d|%5d|%x|%b", below(1000), below(1000),
                                                        below(1000), below(1000));
            break;
        case 1:
            length = FormatUtil::outputStringWithFormat(text, 400, L"%.3f %e %s", anyNumber(), anyNumber(),
                                                        anyText().text);
            break;
        case 2:
            length = FormatUtil::outputStringWithFormat(text, 400, L"%.32q0 %.32q2", anyNumber(),
                                                        static_cast<double>(below(7)));
            break;
        default:
            length = FormatUtil::outputStringWithFormat(text, 400, L"%2$s: %1$d", below(1000), L"layer");
            break;
        }
        addValue(length);
        add(text, std::wcslen(text) * sizeof(wchar_t));
    }

    int scan(const wchar_t* text, const wchar_t* format, ...) const
    {
        va_list args;
        va_start(args, format);
        const int stored = m_ways.plain ? TvFormatDetail::scanSourceBuf(false, text, format, &args)
                                        : InputWithFormat(false, text, format, &args);
        va_end(args);
        return stored;
    }

    void scanText()
    {
        wchar_t text[200];
        FormatUtil::outputStringWithFormat(text, 200, L"%d %.6f , %.3e name%d", below(100000), anyNumber(),
                                           anyNumber(), below(100));
        int whole = 0;
        double x = 0;
        double y = 0;
        wchar_t word[200] = {};
        addValue(scan(text, L"%d %F ,%E %s", &whole, &x, &y, word));
        addValue(whole);
        addValue(x);
        addValue(y);
        add(word, sizeof word);
    }

    // Shortest digits, and the double that they read back as.
    void convertNumber()
    {
        const double value = anyNumber();
        std::uint64_t bits = 0;
        std::memcpy(&bits, &value, sizeof bits);
        bits &= ~(std::uint64_t{1} << 63);
        if (bits == 0)
            return;
        std::string digits;
        int point = 0;
        if (m_ways.plain) {
            auto exact = std::make_unique<DigitText>();
            expect(exactDigits(bits, 0, 0, *exact), "digits without memory");
            digits.assign(exact->digits, static_cast<std::size_t>(exact->count));
            point = exact->point;
        } else {
            int sign = 0;
            char* const text = TvGdImpl::dtoa(value, 0, 0, &point, &sign, nullptr);
            digits = text;
            TvGdImpl::freedtoa(text);
        }
        add(digits.data(), digits.size());
        addValue(point);
        double back = 0;
        if (m_ways.plain) {
            std::uint64_t read = 0;
            expect(exactDouble(digits.data(), static_cast<int>(digits.size()), point, false, read),
                   "a number without memory");
            std::memcpy(&back, &read, sizeof back);
        } else {
            back = tvStrToD(("0." + digits + "e" + std::to_string(point)).c_str(), nullptr);
        }
        expect(std::memcmp(&back, &bits, sizeof back) == 0, "a number that did not come back");
        wchar_t* const text = tvFltToG(value, 1 + static_cast<int>(below(17)), 'e', 0);
        add(text, std::wcslen(text) * sizeof(wchar_t));
        _tvFree(text);
    }

    void editLayers()
    {
        TvVector<TvStringA>& layers = m_day->layers;
        if (layers.length() >= 200)
            layers.setLogicalLength(100);
        char name[32];
        std::snprintf(name, sizeof name, "LAYER_%u", below(100000));
        layers.append(TvStringA(name));
        const TvVector<TvStringA> before = layers; // for undo
        const auto at = static_cast<int>(below(static_cast<unsigned>(layers.length())));
        layers.at(at) = TvStringA("0");
        layers.at(at).setCodepage(1252);
        add(before.asArrayPtr()[at].constStr(), std::strlen(before.asArrayPtr()[at].constStr()));
        addValue(layers.length());
    }

    void writeJournal()
    {
        TvFlatMemBuf& journal = m_day->journal;
        if (journal.length() > 20000)
            journal.close();
        unsigned char bytes[300];
        const unsigned count = below(sizeof bytes);
        std::memset(bytes, static_cast<int>(below(256)), sizeof bytes);
        journal.seek(below(static_cast<unsigned>(journal.length()) + 1), TvIO::kSeekFromStart);
        if (below(4) == 0)
            journal.writeBytes(bytes, count);
        else
            journal.writeBytes(journal.tell(), bytes, count);
        addValue(journal.length());
        TvFlatMemBuf copy(0);
        copy.copyFrom(&journal, 0, journal.length());
        expect(copy.length() == journal.length(), "a copy of another length");
        if (copy.length() != 0)
            add(copy.buffer(), copy.length() < 64 ? copy.length() : 64);
    }

    void allocate()
    {
        for (int i = 0; i < 10; ++i) {
            const char* const wrong =
                m_day->objects.step(static_cast<unsigned char>(below(256)), static_cast<unsigned>(m_random()),
                                    static_cast<unsigned>(m_random()));
            expect(wrong == nullptr, wrong);
        }
    }

    void askTables()
    {
        const auto wc = static_cast<wchar_t>(below(0x10000));
        addValue(OrCodePage::LineBreakClass(wc));
        addValue(OrCodePage::CharSetFromUnicode(wc, 0x0409, 0x0411));
        addValue(OrCodePage::LanguageToCodePage(static_cast<unsigned short>(below(0x2000))));
        addValue(TvCharCategory::s_instance.allPuncts().length());
        wchar_t extension[8];
        addValue(TvPathMaker::getExtFileName(extension, L"/plans/house.dwg"));
    }

    void askBigFont()
    {
        const wchar_t* const fonts[] = {L"gbcbig.shx", L"/fonts/extfont2", L"chineset", L"whgtxt.shx",
                                        L"none"};
        addValue(TvCharMapper::getCpByBigFont(fonts[below(std::size(fonts))], nullptr));
    }

    void saveAndOpen()
    {
        const std::string name = "drawing" + std::to_string(++m_saved);
        const std::wstring path = m_files.wide(name);
        const std::uint32_t size = below(60000);
        std::string content(size, '\0');
        for (std::uint32_t at = 0; at < size; at += 997)
            content[at] = static_cast<char>(below(256));
        const auto* const bytes = reinterpret_cast<const unsigned char*>(content.data());
        std::unique_ptr<TvFileStreamBuf> out(TvFileSystem::createFileBuf(
            path.c_str(), TvIO::kAccessWrite, TvIO::kShareDenyNone, TvIO::kCreateAlways));
        for (std::uint32_t at = 0; at < size; at += 5000)
            out->writeBytes(bytes + at, size - at < 5000 ? size - at : 5000);
        out.reset();
        Orna::ErrorStatus status = Orna::eOk;
        std::unique_ptr<TvFileStreamBufImpl> own(
            createFileStreamBuf(path.c_str(), &status, TvIO::kAccessRead | TvIO::kAccessWrite,
                                TvIO::kShareDenyWrite, TvIO::kOpenExisting));
        expect(status == Orna::eOk && TvFileStreamBufImpl::m_cstrAlreadyOpenFiles.size() == 1,
               "an exclusive open that failed");
        own.reset();
        std::unique_ptr<TvFileStreamBuf> in(TvFileSystem::createFileBuf(
            path.c_str(), TvIO::kAccessRead, TvIO::kShareDenyNone, TvIO::kOpenExisting));
        std::string back(size, '?');
        in->readBytes(reinterpret_cast<unsigned char*>(back.data()), size);
        expect(back == content && TvFileSystem::getFileSize(path.c_str()) == size,
               "a file that did not come back");
        in.reset();
        std::filesystem::remove(m_files.path(name)); // a file cut to be written again makes disks wait
        addValue(size);
    }

    SessionWays m_ways;
    std::mt19937_64 m_random;
    std::uint64_t m_hash = 0xCBF29CE484222325u;
    std::string m_wrong;
    TestFiles m_files;
    long m_saved = 0;
    std::unique_ptr<Day> m_day;
};

#endif
