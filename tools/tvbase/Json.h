// Json.h - writes what a table shows as JSON.
#ifndef TVBASE_JSON_H
#define TVBASE_JSON_H

#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// Builds one JSON text. The outermost container and every array have a line for each element;
/// objects inside arrays stand on one line.
///
/// Keys belong to the elements of objects; elements of arrays have none (null).
///
/// **Errors**: none; bytes of a text that are not UTF-8 become U+FFFD.
/// **Memory**: the whole text. **Threads**: one.
///
///     JsonWriter json;
///     json.beginArray();
///     json.beginObject();
///     json.text("name", "ansi_1252");
///     json.number("number", 1252);
///     json.end();
///     json.end();
///     json.print();
class JsonWriter {
public:
    void beginObject(const char* key = nullptr) { begin(key, '{', '}'); }
    void beginArray(const char* key = nullptr) { begin(key, '[', ']'); }
    /// Ends the innermost object or array.
    void end();

    void text(const char* key, std::string_view utf8);
    void number(const char* key, std::integral auto value) { raw(key, std::to_string(value)); }
    /// With one digit behind the point.
    void number(const char* key, double value);
    void boolean(const char* key, bool value) { raw(key, value ? "true" : "false"); }
    void null(const char* key) { raw(key, "null"); }

    /// Prints the text, and a line end, on standard output.
    void print() const;

private:
    struct Container {
        char close;
        bool isLined; // each element on a line of its own
        bool isEmpty;
    };

    void begin(const char* key, char open, char close);
    void raw(const char* key, std::string_view value);
    void place(const char* key);
    void quote(std::string_view utf8);

    std::string m_text;
    std::vector<Container> m_open;
};

#endif
