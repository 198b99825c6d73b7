// ScopedLocale.h - a process locale for the length of a test.
#ifndef TV_TEST_SCOPED_LOCALE_H
#define TV_TEST_SCOPED_LOCALE_H

#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <string>

/// Sets the locale of the process and puts the old one back. `ok()` is false when the
/// machine has no such locale; the test is then skipped.
class ScopedLocale {
public:
    /// An installed locale, for example "C.UTF-8".
    explicit ScopedLocale(const char* name)
    {
        if (const char* before = std::setlocale(LC_ALL, nullptr))
            m_before = before;
        m_ok = std::setlocale(LC_ALL, name) != nullptr;
    }
    /// Compiles `source` ("zh_CN") with `charmap` ("GBK") into `folder` and sets that.
    ScopedLocale(const std::filesystem::path& folder, const char* source, const char* charmap)
        : ScopedLocale("C")
    {
        const std::string name = std::string(source) + '.' + charmap;
        const std::string command = std::string("localedef -c -i ") + source + " -f " + charmap + " '" +
                                    (folder / name).string() + "' >/dev/null 2>&1";
        m_ok = std::system(command.c_str()) != -1 && std::filesystem::exists(folder / name / "LC_CTYPE");
        if (!m_ok)
            return;
        setenv("LOCPATH", folder.c_str(), 1);
        m_ok = std::setlocale(LC_ALL, name.c_str()) != nullptr;
        unsetenv("LOCPATH");
    }
    ~ScopedLocale() { std::setlocale(LC_ALL, m_before.c_str()); }
    ScopedLocale(const ScopedLocale&) = delete;
    ScopedLocale& operator=(const ScopedLocale&) = delete;

    bool ok() const { return m_ok; }

private:
    std::string m_before = "C";
    bool m_ok = false;
};

#endif
