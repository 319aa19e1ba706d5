#include "SegmentDigits.h"

#include <string>

void strokeNumber(CGContextRef context, std::size_t number, CGPoint origin, CGFloat height)
{
    // Strokes a to g: top, upper right, lower right, bottom, lower left, upper left, middle; the ends in
    // halves of the height.
    struct Stroke {
        int x0, y0, x1, y1;
    };
    static constexpr Stroke kStrokes[] = {
        {0, 2, 1, 2}, {1, 2, 1, 1}, {1, 1, 1, 0}, {0, 0, 1, 0}, {0, 1, 0, 0}, {0, 2, 0, 1}, {0, 1, 1, 1}};
    static constexpr const char* kDigits[] = {
        "abcdef", "bc", "abged", "abgcd", "fgbc", "afgcd", "afgedc", "abc", "abcdefg", "abcdfg"};

    const CGFloat half = height / 2;
    CGContextBeginPath(context);
    for (const char digit : std::to_string(number)) {
        for (const char* letter = kDigits[digit - '0']; *letter; ++letter) {
            const Stroke& stroke = kStrokes[*letter - 'a'];
            CGContextMoveToPoint(context, origin.x + stroke.x0 * half, origin.y + stroke.y0 * half);
            CGContextAddLineToPoint(context, origin.x + stroke.x1 * half, origin.y + stroke.y1 * half);
        }
        origin.x += half * 1.6;
    }
    CGContextStrokePath(context);
}
