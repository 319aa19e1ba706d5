#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// A token of a content stream: an operand or an operator.
struct ContentToken {
    enum class Kind : unsigned char {
        Null,
        Boolean,
        Number,
        Name,
        String,
        Array,
        Dictionary, ///< keys and values in turn
        Operator,
    };

    Kind kind = Kind::Null;
    double number = 0;               ///< of a number, clamped to ±1e9; 0 or 1 of a Boolean
    std::string text;                ///< of a name (without slash), string or operator
    std::vector<ContentToken> items; ///< of an array or dictionary

    bool isNumber() const { return kind == Kind::Number; }
    bool isName() const { return kind == Kind::Name; }
    bool isString() const { return kind == Kind::String; }
    bool isArray() const { return kind == Kind::Array; }
    bool isDictionary() const { return kind == Kind::Dictionary; }
};

/// Splits a content stream into tokens. Reads everything as something: unterminated strings, arrays and
/// dictionaries end with the stream, and stray delimiters are skipped.
class ContentLexer {
public:
    /// `content` is borrowed.
    explicit ContentLexer(std::string_view content)
        : _content(content)
    {
    }

    /// Reads the next token into `token`, whose memory is reused. False at the end. Throws PDFLimitExceeded
    /// when arrays are nested too deeply.
    bool next(ContentToken& token) { return read(token, 0); }

    /// Where the next token is looked for, as an offset; settable, to step over the data of an inline image.
    std::size_t position() const { return _position; }
    void setPosition(std::size_t position)
    {
        _position = position < _content.size() ? position : _content.size();
    }
    std::string_view content() const { return _content; }

    static bool isSpace(char c);
    static bool isDelimiter(char c);

private:
    bool read(ContentToken& token, std::size_t depth);
    void skipSpaceAndComments();
    void readNumber(ContentToken& token);
    void readName(ContentToken& token);
    void readString(ContentToken& token);
    void readEscape(std::string& text);
    void readHexString(ContentToken& token);
    void readItems(ContentToken& token, std::string_view end, std::size_t depth);
    void readWord(ContentToken& token);
    bool isAtEnd() const { return _position >= _content.size(); }
    char peek(std::size_t ahead = 0) const
    {
        return _position + ahead < _content.size() ? _content[_position + ahead] : '\0';
    }

    std::string_view _content;
    std::size_t _position = 0;
};
