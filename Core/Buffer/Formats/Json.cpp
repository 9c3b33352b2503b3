// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/Json.h"

#include "Core/Common/PixelTypes.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <type_traits>

namespace BufferApi::Formats
{

namespace
{

template <typename T>
using BitsOf = std::conditional_t<sizeof(T) == sizeof(std::uint32_t), std::uint32_t, std::uint64_t>;

bool isSpace(char character)
{
    return character == ' ' || character == '\n' || character == '\r' || character == '\t';
}

bool needsEscape(const QString& text, qsizetype i)
{
    const QChar c = text[i];
    if (c.isHighSurrogate()) {
        return i + 1 == text.size() || !text[i + 1].isLowSurrogate();
    }
    if (c.isLowSurrogate()) {
        return i == 0 || !text[i - 1].isHighSurrogate();
    }
    return c.unicode() < 0x20 || c == u'"' || c == u'\\' || c.unicode() == 0x7F;
}

QByteArray escapeOf(QChar c)
{
    if (c == u'"' || c == u'\\') {
        return QByteArray(1, '\\') + static_cast<char>(c.unicode());
    }
    return "\\u" + QByteArray::number(c.unicode(), 16).rightJustified(4, '0');
}

} // namespace

void JsonWriter::open(char bracket)
{
    separate();
    m_result += bracket;
    m_needsComma = false;
}

void JsonWriter::close(char bracket)
{
    m_result += bracket;
    m_needsComma = true;
}

void JsonWriter::separate()
{
    if (m_needsComma) {
        m_result += ',';
    }
    m_needsComma = true;
}

void JsonWriter::token(std::string_view token)
{
    separate();
    m_result.append(token.data(), static_cast<qsizetype>(token.size()));
}

void JsonWriter::key(const QString& name)
{
    separate();
    quote(name);
    m_result += ':';
    m_needsComma = false;
}

void JsonWriter::text(const QString& text)
{
    separate();
    quote(text);
}

void JsonWriter::quote(const QString& text)
{
    m_result += '"';
    qsizetype start = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (needsEscape(text, i)) {
            m_result += QStringView(text).mid(start, i - start).toUtf8();
            m_result += escapeOf(text[i]);
            start = i + 1;
        }
    }
    m_result += QStringView(text).mid(start).toUtf8();
    m_result += '"';
}

template <typename T>
void JsonWriter::number(T value)
{
    std::array<char, 32> digits{'"'};
    char* first = digits.data();
    char* last = digits.data() + digits.size();
    if constexpr (std::is_floating_point_v<T>) {
        const auto bits = std::bit_cast<BitsOf<T>>(value);
        const bool isPlainNan = bits == std::bit_cast<BitsOf<T>>(std::numeric_limits<T>::quiet_NaN());
        if (value != value && !isPlainNan) {
            const auto end = std::to_chars(first, last, bits, 16).ptr;
            return token("\"0x" + std::string(first, end) + '"');
        }
        if (value - value != 0) {
            return token(value != value ? "\"nan\"" : value > 0 ? "\"inf\"" : "\"-inf\"");
        }
        // Other programs read a number without a point as an integer, which has no sign of zero.
        if (value == 0 && std::signbit(value)) {
            return token("-0.0");
        }
    }
    const auto end = std::to_chars(first, last, value).ptr;
    token(std::string_view(first, static_cast<std::size_t>(end - first)));
}

void JsonReader::fail(const char* reason, RTE::SourceLocation location) const
{
    RTE::raise(RTE::ParseError(QStringLiteral("%1: %2 at byte %3")
                                   .arg(m_source, QLatin1String(reason), QString::number(m_position)),
                               1, static_cast<int>(std::min<std::size_t>(m_position + 1, INT_MAX))),
               location);
}

void JsonReader::verify(bool holds, const char* reason, RTE::SourceLocation location) const
{
    if (!holds) {
        fail(reason, location);
    }
}

void JsonReader::skipSpace()
{
    while (m_position < m_text.size() && isSpace(m_text[m_position])) {
        ++m_position;
    }
}

bool JsonReader::take(char character)
{
    skipSpace();
    const bool isThere = m_position < m_text.size() && m_text[m_position] == character;
    m_position += isThere ? 1 : 0;
    return isThere;
}

void JsonReader::expect(char character)
{
    verify(take(character), "unexpected text");
    m_isFirst = true;
}

bool JsonReader::hasNext(char closing)
{
    if (take(closing)) {
        m_isFirst = false;
        return false;
    }
    verify(m_isFirst || take(','), "a comma is missing");
    m_isFirst = false;
    return true;
}

QString JsonReader::key()
{
    QString name = text();
    verify(take(':'), "a colon is missing");
    return name;
}

QString JsonReader::text()
{
    verify(take('"'), "a text is missing");
    QString result;
    std::size_t start = m_position;
    const auto flush = [&] {
        result += QString::fromUtf8(m_text.data() + start, static_cast<qsizetype>(m_position - start));
    };
    for (;; ++m_position) {
        verify(m_position < m_text.size(), "a text has no end");
        if (m_text[m_position] == '"') {
            flush();
            ++m_position;
            return result;
        }
        if (m_text[m_position] == '\\') {
            flush();
            ++m_position;
            result += QChar(escaped());
            start = m_position + 1;
        }
    }
}

char16_t JsonReader::escaped()
{
    static constexpr std::string_view letters = "\"\\/bfnrt";
    static constexpr std::string_view meanings = "\"\\/\b\f\n\r\t";
    verify(m_position < m_text.size(), "a text has no end");
    if (const auto found = letters.find(m_text[m_position]); found != std::string_view::npos) {
        return static_cast<char16_t>(meanings[found]);
    }
    std::uint16_t code = 0;
    const char* digits = m_text.data() + m_position + 1;
    verify(m_text[m_position] == 'u' && m_text.size() - m_position > 4 &&
               std::from_chars(digits, digits + 4, code, 16).ptr == digits + 4,
           "unknown escape");
    m_position += 4;
    return code;
}

bool JsonReader::takeNull()
{
    skipSpace();
    const bool isNull = m_text.substr(m_position).starts_with("null");
    m_position += isNull ? 4 : 0;
    return isNull;
}

std::string_view JsonReader::numberToken()
{
    skipSpace();
    const bool isQuoted = take('"');
    const std::size_t start = m_position;
    const std::size_t end = m_text.find_first_of(isQuoted ? "\"" : ",]} \n\r\t", start);
    verify(end != std::string_view::npos, "a number has no end");
    m_position = end + (isQuoted ? 1 : 0);
    return m_text.substr(start, end - start);
}

template <typename T>
T JsonReader::named(std::string_view name) const
{
    using Limits = std::numeric_limits<T>;
    if (name.starts_with("0x")) {
        BitsOf<T> bits = 0;
        const char* last = name.data() + name.size();
        verify(std::from_chars(name.data() + 2, last, bits, 16).ptr == last, "not a number");
        return std::bit_cast<T>(bits);
    }
    verify(name == "nan" || name == "inf" || name == "-inf", "not a number");
    return name == "nan" ? Limits::quiet_NaN() : name == "inf" ? Limits::infinity() : -Limits::infinity();
}

template <typename T>
T JsonReader::number()
{
    const std::string_view token = numberToken();
    const char* last = token.data() + token.size();
    T value{};
    const auto [end, error] = std::from_chars(token.data(), last, value);
    // What the standard library reads as a NaN of its own choice goes through its name.
    if constexpr (std::is_floating_point_v<T>) {
        if (end != last || error != std::errc() || value - value != 0) {
            return named<T>(token);
        }
    }
    verify(end == last && error == std::errc(), "not a number of its type");
    return value;
}

std::string_view JsonReader::json()
{
    skipSpace();
    const std::size_t start = m_position;
    for (unsigned int depth = 0; m_position < m_text.size(); ++m_position) {
        const char character = m_text[m_position];
        if (character == '"') {
            static_cast<void>(text());
            --m_position;
        } else if (character == '[' || character == '{') {
            ++depth;
        } else if (depth == 0 && (character == ',' || character == ']' || character == '}')) {
            break;
        } else if (character == ']' || character == '}') {
            --depth;
        }
    }
    return m_text.substr(start, m_position - start);
}

void JsonReader::end()
{
    skipSpace();
    verify(m_position == m_text.size(), "text after the end");
}

#define DATAOBJECTS_JSON_NUMBER(type, value, name)                                                           \
    template void JsonWriter::number(type);                                                                  \
    template type JsonReader::number();
DATAOBJECTS_PIXEL_TYPES(DATAOBJECTS_JSON_NUMBER)
#undef DATAOBJECTS_JSON_NUMBER

} // namespace BufferApi::Formats
