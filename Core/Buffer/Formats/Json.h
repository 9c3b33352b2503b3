// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/Raise.h"

#include <QByteArray>
#include <QString>

#include <charconv>
#include <string>
#include <string_view>

namespace BufferApi::Formats
{

/// Appends JSON text piece by piece; commas come by themselves.
class JsonWriter
{
public:
    void beginArray() { open('['); }
    void endArray() { close(']'); }
    void beginObject() { open('{'); }
    void endObject() { close('}'); }
    void key(const QString& name);
    /// UTF-8; unpaired surrogates and control characters as \uXXXX.
    void text(const QString& text);
    void null() { token("null"); }
    /// A value that is JSON already.
    void json(const QByteArray& value) { token({value.constData(), static_cast<std::size_t>(value.size())}); }

    /// Shortest form that reads back as the same bits; what JSON has no number for becomes a text: "nan",
    /// "inf", "-inf", or the bits of any other NaN such as "0x7fc00001".
    template <typename T>
    void number(T value);

    [[nodiscard]] const QByteArray& result() const noexcept { return m_result; }

private:
    void open(char bracket);
    void close(char bracket);
    void separate();
    void token(std::string_view token);
    void quote(const QString& text);

    QByteArray m_result;
    bool m_needsComma = false;
};

/// Reads JSON text whose shape is known, piece by piece. \throws RTE::ParseError that names the source and
/// the byte at which it stands
class JsonReader
{
public:
    /// \param source what holds the text, for errors; both outlive the reader
    JsonReader(std::string_view text, const QString& source) : m_text(text), m_source(source) {}

    void beginArray() { expect('['); }
    void beginObject() { expect('{'); }
    /// True while another element follows; takes the closing bracket otherwise.
    [[nodiscard]] bool hasNext(char closing);
    /// The array has another element, which comes next.
    void next() { verify(hasNext(']'), "a value is missing"); }
    void endArray() { verify(!hasNext(']'), "more values than expected"); }
    [[nodiscard]] QString key();
    [[nodiscard]] QString text();
    /// Takes a null if one stands here.
    [[nodiscard]] bool takeNull();
    template <typename T>
    [[nodiscard]] T number();
    /// Passes over the next value and gives its text.
    [[nodiscard]] std::string_view json();
    /// Nothing but white space is left.
    void end();

    [[noreturn]] void fail(const char* reason,
                           RTE::SourceLocation location = RTE::SourceLocation::current()) const;
    void verify(bool holds, const char* reason,
                RTE::SourceLocation location = RTE::SourceLocation::current()) const;

private:
    void skipSpace();
    void expect(char character);
    [[nodiscard]] bool take(char character);
    [[nodiscard]] char16_t escaped();
    [[nodiscard]] std::string_view numberToken();
    template <typename T>
    [[nodiscard]] T named(std::string_view name) const;

    std::string_view m_text;
    const QString& m_source;
    std::size_t m_position = 0;
    bool m_isFirst = true;
};

} // namespace BufferApi::Formats
