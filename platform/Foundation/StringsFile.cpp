#include "Foundation/StringsFile.h"

#include <algorithm>
#include <string>

namespace {

/// The units of UTF-16 bytes, the first byte of each at `high` of the pair.
std::u16string unitsOf(std::string_view bytes, std::size_t high)
{
    std::u16string units;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2)
        units += static_cast<char16_t>(static_cast<unsigned char>(bytes[i + high]) << 8
            | static_cast<unsigned char>(bytes[i + 1 - high]));
    return units;
}

std::u16string decoded(std::string_view bytes)
{
    std::u16string text;
    if (bytes.size() >= 2 && (bytes.starts_with("\xFF\xFE") || (bytes[0] != 0 && bytes[1] == 0)))
        text = unitsOf(bytes, 1);
    else if (bytes.size() >= 2 && (bytes.starts_with("\xFE\xFF") || (bytes[0] == 0 && bytes[1] != 0)))
        text = unitsOf(bytes, 0);
    else
        text = NSString(bytes).view();
    if (text.starts_with(u'\uFEFF'))
        text.erase(0, 1);
    return text;
}

bool isWordCharacter(char16_t c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9')
        || std::u16string_view(u"_$./:-").find(c) != std::u16string_view::npos;
}

/// The value of a hexadecimal digit, or 16.
unsigned digitValue(char16_t c)
{
    if (c >= '0' && c <= '9')
        return c - u'0';
    const char16_t lower = c | 0x20;
    return lower >= 'a' && lower <= 'f' ? lower - u'a' + 10U : 16;
}

class Parser {
public:
    explicit Parser(std::u16string_view text)
        : _text(text)
    {
    }

    std::optional<StringsTable> parse()
    {
        StringsTable table;
        while (skipBlanks() && !atEnd()) {
            std::u16string key;
            if (!readText(key) || !skipBlanks())
                return std::nullopt;
            std::u16string value = key;
            if (skip(u'=')) {
                value.clear();
                if (!skipBlanks() || !readText(value) || !skipBlanks())
                    return std::nullopt;
            }
            if (!skip(u';'))
                return std::nullopt;
            table.insert_or_assign(NSString(std::u16string_view(key)), NSString(std::u16string_view(value)));
        }
        return atEnd() ? std::optional(std::move(table)) : std::nullopt;
    }

    int line() const
    {
        return 1 + static_cast<int>(std::count(_text.begin(), _text.begin() + static_cast<long>(_at), u'\n'));
    }

private:
    bool atEnd() const { return _at == _text.size(); }
    bool skip(char16_t c)
    {
        if (atEnd() || _text[_at] != c)
            return false;
        ++_at;
        return true;
    }

    /// Skips blanks and comments. False for a comment without an end.
    bool skipBlanks()
    {
        while (!atEnd()) {
            const auto rest = _text.substr(_at);
            if (rest.front() <= ' ' || rest.front() == 0xA0 || rest.front() == 0x2028
                || rest.front() == 0x2029) {
                ++_at;
            } else if (rest.starts_with(u"//")) {
                _at = std::min(_text.find(u'\n', _at), _text.size());
            } else if (rest.starts_with(u"/*")) {
                const auto end = _text.find(u"*/", _at + 2);
                if (end == std::u16string_view::npos)
                    return false;
                _at = end + 2;
            } else {
                break;
            }
        }
        return true;
    }

    bool readText(std::u16string& text)
    {
        if (skip(u'"'))
            return readQuoted(u'"', text);
        if (skip(u'\''))
            return readQuoted(u'\'', text);
        while (!atEnd() && isWordCharacter(_text[_at]))
            text += _text[_at++];
        return !text.empty();
    }

    bool readQuoted(char16_t quote, std::u16string& text)
    {
        while (!atEnd()) {
            const char16_t c = _text[_at++];
            if (c == quote)
                return true;
            if (c != u'\\')
                text += c;
            else if (!atEnd())
                text += readEscape();
        }
        return false;
    }

    char16_t readEscape()
    {
        constexpr std::u16string_view letters = u"abfnrtv";
        constexpr std::u16string_view controls = u"\a\b\f\n\r\t\v";
        const char16_t c = _text[_at];
        if (c >= '0' && c <= '7')
            return readNumber(8, 3);
        ++_at;
        if ((c == 'U' || c == 'u') && !atEnd() && digitValue(_text[_at]) < 16)
            return readNumber(16, 4);
        const auto index = letters.find(c);
        return index != std::u16string_view::npos ? controls[index] : c;
    }

    char16_t readNumber(unsigned base, int digits)
    {
        unsigned value = 0;
        for (; digits > 0 && !atEnd() && digitValue(_text[_at]) < base; --digits)
            value = value * base + digitValue(_text[_at++]);
        return static_cast<char16_t>(value);
    }

    std::u16string_view _text;
    std::size_t _at = 0;
};

} // namespace

std::optional<StringsTable> parseStringsFile(std::string_view bytes, int* line)
{
    const std::u16string text = decoded(bytes);
    Parser parser(text);
    auto table = parser.parse();
    if (!table && line)
        *line = parser.line();
    return table;
}
