#include <Foundation/NSFormat.h>

#include "Foundation/CLocale.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

long long NSFormatArgument::integer() const
{
    if (_kind != Kind::Real)
        return _integer;
    constexpr double kLimit = 9223372036854775808.0; // 2^63
    if (std::isnan(_real))
        return 0;
    if (_real >= kLimit)
        return INT64_MAX;
    return _real < -kLimit ? INT64_MIN : static_cast<long long>(_real);
}

unsigned long long NSFormatArgument::unsignedInteger() const
{
    const auto bits = static_cast<unsigned long long>(integer());
    return _size < sizeof bits ? bits & ((1ULL << (8 * _size)) - 1) : bits;
}

double NSFormatArgument::real() const
{
    if (_kind == Kind::Real)
        return _real;
    return _isUnsigned ? static_cast<double>(unsignedInteger()) : static_cast<double>(_integer);
}

NSString NSFormatArgument::text() const
{
    NSString text = _text;
    if (_kind == Kind::Object && _pointer)
        text = static_cast<const NSObject*>(_pointer)->description();
    return text.isNull() ? NSString("(null)") : text;
}

namespace {

using Kind = NSFormatArgument::Kind;

/// The largest width, so that a format cannot produce a gigabyte of blanks.
constexpr int kLongestField = 4096;

struct Conversion {
    std::string flags;
    std::optional<int> width;
    std::optional<int> precision;
    std::size_t position = 0; ///< of the argument, from 1; 0 for the next one
    char32_t letter = 0;
};

/// Parses formats and consumes their arguments.
class Formatter {
public:
    Formatter(std::u16string_view format, std::span<const NSFormatArgument> arguments)
        : _at(format.begin())
        , _end(format.end())
        , _arguments(arguments)
    {
    }

    std::u16string run()
    {
        while (_at != _end) {
            const auto percent = std::find(_at, _end, u'%');
            _result.append(_at, percent);
            _at = percent;
            if (percent != _end)
                convert();
        }
        return std::move(_result);
    }

private:
    using Iterator = std::u16string_view::const_iterator;

    bool sees(std::u16string_view units) const
    {
        return _at != _end && units.find(*_at) != std::u16string_view::npos;
    }

    /// Parses digits as a number up to the largest width; nothing without digits.
    std::optional<int> number()
    {
        std::optional<int> result;
        for (; _at != _end && *_at >= u'0' && *_at <= u'9'; ++_at)
            result = std::min(result.value_or(0) * 10 + (*_at - u'0'), kLongestField);
        return result;
    }

    const NSFormatArgument* argument(std::size_t position)
    {
        const std::size_t index = position ? position - 1 : _next++;
        return index < _arguments.size() ? &_arguments[index] : nullptr;
    }

    /// A "*" with its argument, or digits.
    std::optional<int> lengthFromFormat()
    {
        if (!sees(u"*"))
            return number();
        ++_at;
        const Iterator start = _at;
        const auto position = number();
        if (position && sees(u"$"))
            ++_at;
        else
            _at = start;
        const auto* length = argument(position && _at != start ? static_cast<std::size_t>(*position) : 0);
        if (!length || length->kind() != Kind::Integer)
            return std::nullopt;
        return static_cast<int>(std::clamp<long long>(length->integer(), -kLongestField, kLongestField));
    }

    Conversion readConversion()
    {
        Conversion conversion;
        const Iterator start = _at;
        const auto position = number();
        if (position && sees(u"$")) {
            ++_at;
            conversion.position = static_cast<std::size_t>(*position);
        } else {
            _at = start;
        }
        for (; sees(u"-+ #0'"); ++_at) {
            if (*_at != u'\'')
                conversion.flags += static_cast<char>(*_at);
        }
        conversion.width = lengthFromFormat();
        if (conversion.width && *conversion.width < 0) {
            conversion.flags += '-';
            conversion.width = -*conversion.width;
        }
        if (sees(u".")) {
            ++_at;
            conversion.precision = lengthFromFormat().value_or(0);
            if (*conversion.precision < 0)
                conversion.precision.reset();
        }
        while (sees(u"hljztqL"))
            ++_at;
        if (_at != _end)
            conversion.letter = *_at++;
        return conversion;
    }

    void convert()
    {
        const Iterator percent = _at++;
        if (sees(u"%")) {
            _result += *_at++;
            return;
        }
        const Conversion conversion = readConversion();
        static constexpr std::u32string_view kLetters = U"@sdiuxXocCfFeEgGaApS";
        if (conversion.letter == 0 || kLetters.find(conversion.letter) == std::u32string_view::npos) {
            _result.append(percent, _at);
            return;
        }
        if (const auto* value = argument(conversion.position))
            print(conversion, *value);
        else
            _result += u"(missing)";
    }

    void print(const Conversion& conversion, const NSFormatArgument& value)
    {
        const bool isNumber = value.kind() == Kind::Integer || value.kind() == Kind::Real;
        switch (conversion.letter) {
        case '@':
        case 's':
        case 'S':
            if (isNumber)
                printNumber({{}, {}, {}, 0, value.kind() == Kind::Integer ? U'd' : U'g'}, value);
            else if (value.kind() == Kind::Pointer && value.pointer())
                printPointer(conversion, value.pointer());
            else
                printText(conversion, value.text());
            return;
        case 'c':
        case 'C':
            if (isNumber)
                printText(conversion, character(value.integer()));
            else
                _result += u"(mismatch)";
            return;
        case 'p':
            if (isNumber)
                _result += u"(mismatch)";
            else
                printPointer(conversion, value.pointer());
            return;
        default:
            if (isNumber)
                printNumber(conversion, value);
            else
                _result += u"(mismatch)";
        }
    }

    static NSString character(long long scalar)
    {
        if (scalar < 0 || scalar > 0x10FFFF)
            return NSString(std::u16string_view(u"\uFFFD"));
        if (scalar < 0x10000) {
            const auto unit = static_cast<char16_t>(scalar);
            return NSString(std::u16string_view(&unit, 1));
        }
        const char16_t pair[]{
            static_cast<char16_t>(0xD7C0 + (scalar >> 10)), static_cast<char16_t>(0xDC00 | (scalar & 0x3FF))};
        return NSString(std::u16string_view(pair, 2));
    }

    /// The string, truncated to the precision and padded with blanks to the width.
    void printText(const Conversion& conversion, const NSString& text)
    {
        auto units = text.view();
        if (conversion.precision)
            units = units.substr(0, static_cast<std::size_t>(*conversion.precision));
        const auto width = static_cast<std::size_t>(conversion.width.value_or(0));
        const std::size_t blanks = width > units.size() ? width - units.size() : 0;
        const bool left = conversion.flags.find('-') != std::string::npos;
        _result.append(left ? 0 : blanks, u' ');
        _result += units;
        _result.append(left ? blanks : 0, u' ');
    }

    void printPointer(const Conversion& conversion, const void* pointer)
    {
        char address[32];
        std::snprintf(address, sizeof address, "0x%llx",
            static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(pointer)));
        printText(conversion, address);
    }

    void printNumber(const Conversion& conversion, const NSFormatArgument& value)
    {
        const char letter = static_cast<char>(conversion.letter);
        const bool isDecimal = letter == 'd' || letter == 'i' || letter == 'u';
        std::string format = "%" + conversion.flags;
        if (isDecimal)
            std::erase(format, '#'); // printf gives it no meaning there
        if (conversion.width)
            format += std::to_string(*conversion.width);
        if (conversion.precision)
            format += "." + std::to_string(*conversion.precision);
        if (isDecimal && letter != 'u' && !value.isUnsigned()) {
            appendPrinted(format + "lld", value.integer());
        } else if (isDecimal) {
            appendPrinted(format + "llu", value.unsignedInteger());
        } else if (letter == 'x' || letter == 'X' || letter == 'o') {
            appendPrinted(format + "ll" + letter, value.unsignedInteger());
        } else {
            appendPrinted(format + letter, value.real());
        }
    }

    /// The format is one conversion, which matches the type of the number.
    template <class Number> void appendPrinted(const std::string& format, Number number)
    {
        const ScopedCLocale locale;
        std::vector<char> text(128);
        for (;;) {
            const int length = std::snprintf(text.data(), text.size(), format.c_str(), number);
            if (length < 0)
                return;
            if (static_cast<std::size_t>(length) < text.size()) {
                _result.append(text.begin(), text.begin() + length);
                return;
            }
            text.resize(static_cast<std::size_t>(length) + 1);
        }
    }

    Iterator _at;
    Iterator _end;
    std::span<const NSFormatArgument> _arguments;
    std::size_t _next = 0;
    std::u16string _result;
};

} // namespace

NSString NSFormatString(const NSString& format, std::span<const NSFormatArgument> arguments)
{
    if (format.isNull())
        return {};
    return NSString(std::u16string_view(Formatter(format.view(), arguments).run()));
}
