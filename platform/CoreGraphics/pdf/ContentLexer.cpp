#include "CoreGraphics/pdf/ContentLexer.h"

#include "CoreGraphics/pdf/PDFBudget.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace {

constexpr double kLargestOperand = 1e9;
/// With more digits than this a number cannot take one more in 64 bits; doubles have fewer.
constexpr std::uint64_t kMostDigits = 100'000'000'000'000'000;
constexpr std::array kPowersOfTen{
    1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16, 1e17};

enum CharacterClass : std::uint8_t { kRegular, kSpace, kDelimiter };

constexpr std::array<CharacterClass, 256> makeClasses()
{
    std::array<CharacterClass, 256> classes{};
    for (const char space : {'\0', '\t', '\n', '\f', '\r', ' '})
        classes[static_cast<unsigned char>(space)] = kSpace;
    for (const char delimiter : {'(', ')', '<', '>', '[', ']', '{', '}', '/', '%'})
        classes[static_cast<unsigned char>(delimiter)] = kDelimiter;
    return classes;
}

constexpr std::array<CharacterClass, 256> kClasses = makeClasses();

bool isRegular(char c)
{
    return kClasses[static_cast<unsigned char>(c)] == kRegular;
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

/// The value of a hexadecimal digit; -1 for other characters.
int hexValue(char c)
{
    if (isDigit(c))
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

/// True for delimiters that start no token.
bool closesNothing(char c)
{
    return c == ')' || c == '>' || c == ']' || c == '{' || c == '}';
}

} // namespace

bool ContentLexer::isSpace(char c)
{
    return kClasses[static_cast<unsigned char>(c)] == kSpace;
}

bool ContentLexer::isDelimiter(char c)
{
    return kClasses[static_cast<unsigned char>(c)] == kDelimiter;
}

void ContentLexer::skipSpaceAndComments()
{
    while (!isAtEnd()) {
        if (isSpace(peek())) {
            ++_position;
        } else if (peek() == '%') {
            while (!isAtEnd() && peek() != '\n' && peek() != '\r')
                ++_position;
        } else {
            return;
        }
    }
}

bool ContentLexer::read(ContentToken& token, std::size_t depth)
{
    for (;;) {
        skipSpaceAndComments();
        if (isAtEnd())
            return false;
        const char c = peek();
        if (isDigit(c) || c == '-' || c == '+' || c == '.') {
            readNumber(token);
            return true;
        }
        token.text.clear();
        token.items.clear();
        switch (c) {
        case '/':
            readName(token);
            return true;
        case '(':
            readString(token);
            return true;
        case '[':
            ++_position;
            token.kind = ContentToken::Kind::Array;
            readItems(token, "]", depth + 1);
            return true;
        case '<':
            if (peek(1) != '<') {
                readHexString(token);
                return true;
            }
            _position += 2;
            token.kind = ContentToken::Kind::Dictionary;
            readItems(token, ">>", depth + 1);
            return true;
        default:
            if (closesNothing(c)) {
                ++_position;
                continue;
            }
            readWord(token);
            return true;
        }
    }
}

void ContentLexer::readNumber(ContentToken& token)
{
    token.kind = ContentToken::Kind::Number;
    const char* c = _content.data() + _position;
    const char* const end = _content.data() + _content.size();
    bool isNegative = false;
    for (; c != end && (*c == '-' || *c == '+'); ++c) // some programs write two signs
        isNegative |= *c == '-';
    std::uint64_t digits = 0;
    for (; c != end && isDigit(*c); ++c) {
        if (digits < kMostDigits) // already beyond the largest number otherwise
            digits = digits * 10 + std::uint64_t(*c - '0');
    }
    std::size_t decimals = 0;
    if (c != end && *c == '.') {
        for (++c; c != end && isDigit(*c); ++c) {
            if (digits < kMostDigits && decimals + 1 < kPowersOfTen.size()) {
                digits = digits * 10 + std::uint64_t(*c - '0');
                ++decimals;
            }
        }
    }
    while (c != end && isRegular(*c))
        ++c; // "1.2.3" and "5-6" end with their first number
    _position = std::size_t(c - _content.data());
    const double value = std::min(double(digits) / kPowersOfTen[decimals], kLargestOperand);
    token.number = isNegative ? -value : value;
}

void ContentLexer::readName(ContentToken& token)
{
    token.kind = ContentToken::Kind::Name;
    ++_position;
    while (!isAtEnd() && isRegular(peek())) {
        const int high = peek() == '#' ? hexValue(peek(1)) : -1;
        const int low = high >= 0 ? hexValue(peek(2)) : -1;
        if (low >= 0) {
            token.text += static_cast<char>(high * 16 + low);
            _position += 3;
        } else {
            token.text += _content[_position++];
        }
    }
}

void ContentLexer::readString(ContentToken& token)
{
    token.kind = ContentToken::Kind::String;
    ++_position;
    for (std::size_t open = 1; !isAtEnd();) {
        const char c = _content[_position++];
        if (c == '\\') {
            readEscape(token.text);
            continue;
        }
        open += c == '(';
        open -= c == ')';
        if (open == 0)
            return;
        if (c == '\r') { // every line break is one line feed
            _position += peek() == '\n';
            token.text += '\n';
        } else {
            token.text += c;
        }
    }
}

void ContentLexer::readEscape(std::string& text)
{
    if (isAtEnd())
        return;
    const char c = _content[_position++];
    switch (c) {
    case 'n':
        text += '\n';
        return;
    case 'r':
        text += '\r';
        return;
    case 't':
        text += '\t';
        return;
    case 'b':
        text += '\b';
        return;
    case 'f':
        text += '\f';
        return;
    case '\r': // the string continues on the next line
        _position += peek() == '\n';
        return;
    case '\n':
        return;
    default:
        break;
    }
    if (c < '0' || c > '7') {
        text += c;
        return;
    }
    int value = c - '0';
    for (int digit = 1; digit < 3 && peek() >= '0' && peek() <= '7'; ++digit)
        value = value * 8 + (_content[_position++] - '0');
    text += static_cast<char>(value);
}

void ContentLexer::readHexString(ContentToken& token)
{
    token.kind = ContentToken::Kind::String;
    ++_position;
    int high = -1;
    while (!isAtEnd()) {
        const char c = _content[_position++];
        if (c == '>')
            break;
        const int value = hexValue(c);
        if (value < 0)
            continue;
        if (high >= 0)
            token.text += static_cast<char>(high * 16 + value);
        high = high >= 0 ? -1 : value;
    }
    if (high >= 0) // a missing last digit is 0
        token.text += static_cast<char>(high * 16);
}

void ContentLexer::readItems(ContentToken& token, std::string_view end, std::size_t depth)
{
    if (depth > kPDFLimits.operandNesting)
        throw PDFLimitExceeded{"nested arrays"};
    for (;;) {
        skipSpaceAndComments();
        if (isAtEnd())
            return;
        if (_content.substr(_position, end.size()) == end) {
            _position += end.size();
            return;
        }
        if (closesNothing(peek())) {
            ++_position;
            continue;
        }
        ContentToken item;
        if (!read(item, depth))
            return;
        if (item.kind != ContentToken::Kind::Operator && token.items.size() < kPDFLimits.arrayItems)
            token.items.push_back(std::move(item));
    }
}

void ContentLexer::readWord(ContentToken& token)
{
    const std::size_t start = _position;
    while (!isAtEnd() && isRegular(peek()))
        ++_position;
    const std::string_view word = _content.substr(start, _position - start);
    token.kind = ContentToken::Kind::Operator;
    if (word == "true" || word == "false") {
        token.kind = ContentToken::Kind::Boolean;
        token.number = word == "true";
    } else if (word == "null") {
        token.kind = ContentToken::Kind::Null;
    } else {
        token.text = word;
    }
}
