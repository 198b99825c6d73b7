// File names beyond ASCII. Each case runs in a process of its own, because the locale is the
// process's: the names come out as UTF-8 in a UTF-8 locale and in the C locale alike.

#include "TvFileStreamBuf.h"
#include "TvFileSystem.h"

#include "Child.h"
#include "FileStreams.h"
#include "TestFiles.h"

#include <gtest/gtest.h>

#include <clocale>
#include <string>

namespace {

struct NameCase {
    const char* name;
    const char* locale;
    const wchar_t* wide;
    const char* bytes;
};

void PrintTo(const NameCase& c, std::ostream* out) { *out << c.name; }

const wchar_t* const kChinese = L"\u56FE\u7EB8.dwg";
const char* const kChineseBytes = "\xE5\x9B\xBE\xE7\xBA\xB8.dwg";
const wchar_t* const kCyrillic = L"\u041F\u043B\u0430\u043D.dwg";
const char* const kCyrillicBytes = "\xD0\x9F\xD0\xBB\xD0\xB0\xD0\xBD.dwg";

class FileNames : public testing::TestWithParam<NameCase> {
protected:
    // Runs `body` in a process of this locale; 0 stands for true.
    template<class Body>
    int inLocale(Body body) const
    {
        return inOtherProcess([&] {
            if (std::setlocale(LC_ALL, GetParam().locale) == nullptr)
                return 99;
            return body() ? 0 : 1;
        });
    }
    std::wstring wide() const { return files.wide("") + GetParam().wide; }
    std::string bytes() const { return GetParam().bytes; }

    TestFiles files;
};

TEST_P(FileNames, WrittenFileHasTheBytesOfTheName)
{
    EXPECT_EQ(inLocale([&] {
                  const auto file = openOut(wide());
                  write(*file, "text");
                  file->close();
                  return file.status == Orna::eOk;
              }),
              0);
    EXPECT_EQ(files.get(bytes()), "text");
}

TEST_P(FileNames, FileIsFoundAndRead)
{
    files.put(bytes(), "text");
    EXPECT_EQ(inLocale([&] { return read(*openIn(wide()), 4) == "text"; }), 0);
}

TEST_P(FileNames, ExclusiveOpenFindsIt)
{
    files.put(bytes(), "text");
    EXPECT_EQ(inLocale([&] { return openExclusively(wide()).status == Orna::eOk; }), 0);
}

TEST_P(FileNames, FileSystemFindsIt)
{
    files.put(bytes(), "text");
    EXPECT_EQ(inLocale([&] {
                  return TvFileSystem::isFileExisting(wide().c_str()) &&
                         TvFileSystem::getFileSize(wide().c_str()) == 4 &&
                         TvFileSystem::waccess(wide().c_str(), 0) == 0 &&
                         TvFileSystem::accessFile(wide().c_str(), kBoth);
              }),
              0);
}

const NameCase kNames[] = {
    {"ChineseInUtf8Locale", "C.UTF-8", kChinese, kChineseBytes},
    {"ChineseInCLocale", "C", kChinese, kChineseBytes},
    {"CyrillicInUtf8Locale", "C.UTF-8", kCyrillic, kCyrillicBytes},
    {"CyrillicInCLocale", "C", kCyrillic, kCyrillicBytes},
    {"AsciiInCLocale", "C", L"plan.dwg", "plan.dwg"},
};

INSTANTIATE_TEST_SUITE_P(Cases, FileNames, testing::ValuesIn(kNames),
                         [](const auto& test) { return std::string(test.param.name); });

} // namespace
