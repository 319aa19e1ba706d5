#include "SVGPath.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace {

class Reader {
public:
    explicit Reader(std::string_view data)
        : _data(data)
    {
        skipSpace();
    }

    bool isAtEnd() const { return _at == _data.size(); }
    bool isAtOneOf(std::string_view characters) const
    {
        return !isAtEnd() && characters.find(_data[_at]) != std::string_view::npos;
    }
    bool isAtNumber() const { return isAtOneOf("0123456789+-."); }

    char takeLetter()
    {
        const char letter = _data[_at++];
        skipSpace();
        return letter;
    }

    double takeNumber()
    {
        const char* first = _data.data() + _at;
        const char* const last = _data.data() + _data.size();
        if (first != last && *first == '+')
            ++first;
        double number = 0;
        const auto result = std::from_chars(first, last, number);
        if (result.ec == std::errc::result_out_of_range)
            fail("the number is too large or too small");
        if (result.ec != std::errc() || !std::isfinite(number))
            fail("a number is missing");
        _at = static_cast<std::size_t>(result.ptr - _data.data());
        skipSpace();
        if (isAtOneOf(",")) {
            ++_at;
            skipSpace();
            if (!isAtNumber())
                fail("a number is missing");
        }
        return number;
    }

    CGPoint takePoint()
    {
        const double x = takeNumber();
        return {x, takeNumber()};
    }

    [[noreturn]] void fail(const char* what) const
    {
        const std::string_view before = _data.substr(0, _at);
        const auto lineStart = before.rfind('\n') + 1; // 0 where there is none
        throw SVGPathError(what, 1 + static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n')),
            1 + _at - lineStart);
    }

private:
    void skipSpace()
    {
        while (isAtOneOf(" \t\r\n\f"))
            ++_at;
    }

    std::string_view _data;
    std::size_t _at = 0;
};

} // namespace

RetainPtr<CGPath> makePathFromSVG(std::string_view data)
{
    auto path = adopt(CGPathCreateMutable());
    Reader reader(data);
    if (reader.isAtEnd())
        reader.fail("there is no path");
    char command = 0;
    while (!reader.isAtEnd()) {
        if (command == 0 || command == 'Z' || !reader.isAtNumber()) {
            if (!reader.isAtOneOf("MLCQZ"))
                reader.fail("only the commands M, L, C, Q and Z are known");
            if (CGPathIsEmpty(path) && !reader.isAtOneOf("M"))
                reader.fail("a path starts with M");
            command = reader.takeLetter();
        }
        switch (command) {
        case 'M': {
            const CGPoint p = reader.takePoint();
            CGPathMoveToPoint(path, nullptr, p.x, p.y);
            command = 'L'; // of further points
            break;
        }
        case 'L': {
            const CGPoint p = reader.takePoint();
            CGPathAddLineToPoint(path, nullptr, p.x, p.y);
            break;
        }
        case 'Q': {
            const CGPoint cp = reader.takePoint(), p = reader.takePoint();
            CGPathAddQuadCurveToPoint(path, nullptr, cp.x, cp.y, p.x, p.y);
            break;
        }
        case 'C': {
            const CGPoint cp0 = reader.takePoint(), cp1 = reader.takePoint(), p = reader.takePoint();
            CGPathAddCurveToPoint(path, nullptr, cp0.x, cp0.y, cp1.x, cp1.y, p.x, p.y);
            break;
        }
        default:
            CGPathCloseSubpath(path);
        }
    }
    return path;
}
