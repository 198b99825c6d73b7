#include "Json.h"

#include "Utf8Sequence.h"

#include <cstdio>

void JsonWriter::end()
{
    const Container ended = m_open.back();
    m_open.pop_back();
    if (ended.isLined && !ended.isEmpty)
        m_text.append(1, '\n').append(2 * m_open.size(), ' ');
    m_text += ended.close;
}

void JsonWriter::text(const char* key, std::string_view utf8)
{
    place(key);
    quote(utf8);
}

void JsonWriter::number(const char* key, double value)
{
    char digits[64];
    std::snprintf(digits, sizeof digits, "%.1f", value);
    raw(key, digits);
}

void JsonWriter::print() const { std::printf("%s\n", m_text.c_str()); }

void JsonWriter::begin(const char* key, char open, char close)
{
    place(key);
    m_text += open;
    m_open.push_back({close, m_open.empty() || open == '[', true});
}

void JsonWriter::raw(const char* key, std::string_view value)
{
    place(key);
    m_text += value;
}

// What stands in front of a value: comma, line or blank, key.
void JsonWriter::place(const char* key)
{
    if (m_open.empty())
        return;
    Container& container = m_open.back();
    if (!container.isEmpty)
        m_text += ',';
    if (container.isLined)
        m_text.append(1, '\n').append(2 * m_open.size(), ' ');
    else if (!container.isEmpty)
        m_text += ' ';
    container.isEmpty = false;
    if (key) {
        quote(key);
        m_text += ": ";
    }
}

void JsonWriter::quote(std::string_view utf8)
{
    m_text += '"';
    while (!utf8.empty()) {
        const Utf8Sequence sequence = readUtf8(utf8.data(), utf8.size());
        const std::size_t length = sequence.length > 0 ? static_cast<std::size_t>(sequence.length) : 1;
        if (sequence.length <= 0) {
            m_text += "\\ufffd";
        } else if (sequence.value < 0x20 || sequence.value == 0x7F) {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(sequence.value));
            m_text += escape;
        } else {
            if (sequence.value == '"' || sequence.value == '\\')
                m_text += '\\';
            m_text += utf8.substr(0, length);
        }
        utf8.remove_prefix(length);
    }
    m_text += '"';
}
