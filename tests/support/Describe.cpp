#include "support/Describe.h"

#include <cstdio>
#include <initializer_list>

namespace {

std::string join(std::initializer_list<CGFloat> numbers)
{
    std::string text;
    for (const CGFloat number : numbers)
        text += (text.empty() ? "" : " ") + describe(number);
    return text;
}

} // namespace

std::string describe(CGFloat number)
{
    char buffer[512]; // the largest double has 309 digits before the decimal point
    std::snprintf(buffer, sizeof buffer, "%.6f", number);
    std::string text = buffer;
    if (text.find('.') != std::string::npos) {
        text.erase(text.find_last_not_of('0') + 1);
        if (text.back() == '.')
            text.pop_back();
    }
    return text == "-0" ? "0" : text;
}

std::string describe(CGPoint point)
{
    return join({point.x, point.y});
}

std::string describe(CGSize size)
{
    return join({size.width, size.height});
}

std::string describe(CGRect rect)
{
    if (CGRectIsNull(rect))
        return "null";
    if (CGRectIsInfinite(rect))
        return "infinite";
    return join({rect.origin.x, rect.origin.y, rect.size.width, rect.size.height});
}

std::string describe(CGAffineTransform transform)
{
    return join({transform.a, transform.b, transform.c, transform.d, transform.tx, transform.ty});
}

std::string describe(CGPathRef path)
{
    if (!path)
        return "null";
    std::string text;
    CGPathApply(path, &text, [](void* info, const CGPathElement* element) {
        static constexpr char kLetters[] = "MLQCZ";
        static constexpr int kPointCounts[] = {1, 1, 2, 3, 0};
        auto& text = *static_cast<std::string*>(info);
        if (!text.empty())
            text += ' ';
        text += kLetters[element->type];
        for (int point = 0; point < kPointCounts[element->type]; ++point)
            text += ' ' + describe(element->points[point]);
    });
    return text;
}
