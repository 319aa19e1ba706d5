#include <KorvidAppKit/ZRPath.h>

#include "geometry/ZRPathDistanceIndex.h"

#include <Foundation/NSArray.h>
#include <Foundation/NSBoxedString.h>
#include <Foundation/NSError.h>
#include <Foundation/NSNumber.h>
#include <KorvidAppKit/ZRErrors.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>

namespace {

/// The point at a distance on the segment that ends at a strip's point `end`, or on the segment's extension.
CGPoint pointOnSegment(const ZRPathLineStrip& strip, std::size_t end, double distance)
{
    const CGPoint a = strip.points[end - 1], b = strip.points[end];
    const double length = strip.distances[end] - strip.distances[end - 1];
    if (length == 0)
        return a; // no direction to extend in
    const double f = (distance - strip.distances[end - 1]) / length;
    return {a.x + (b.x - a.x) * f, a.y + (b.y - a.y) * f};
}

/// The result for a distance that is out of range. Out of line, to keep the common path short.
[[gnu::cold, gnu::noinline]] CGPoint distanceOutOfRange(RetainPtr<NSError>* retErr)
{
    if (retErr) {
        const auto userInfo = make<NSMutableDictionary>();
        userInfo->setObject(box("Distance out of range"), NSLocalizedDescriptionKey);
        *retErr = NSError::errorWithDomain(ZRErrorDomain, kZRPathDistanceOutOfRange, userInfo);
    }
    return CGPointZero;
}

/// Appends a number formatted as by "%0.2f".
void appendNumber(double number, std::string& text)
{
    char digits[512]; // the largest double has 309 before the point
    const auto result =
        std::to_chars(std::begin(digits), std::end(digits), number, std::chars_format::fixed, 2);
    text.append(digits, result.ptr);
}

/// Calls `function` with each number of a strip: x, y and distance of each point.
template <class Function> void forEachNumber(const ZRPathLineStrip& strip, const Function& function)
{
    for (unsigned long k = 0; k < strip.count; ++k) {
        function(strip.points[k].x);
        function(strip.points[k].y);
        function(strip.distances[k]);
    }
}

} // namespace

double ZRPath::distance() const
{
    if (_built) {
        for (unsigned long i = _numLineStrips; i > 0; --i) {
            const ZRPathLineStrip& strip = _lineStrips[i - 1];
            if (strip.distances)
                return strip.distances[strip.count - 1];
        }
    }
    return 0;
}

CGPoint ZRPath::pointAlongPathAtDistance(double distance, RetainPtr<NSError>* retErr) const
{
    if (!_distanceIndex) // not built
        return distanceOutOfRange(retErr);
    const ZRPathDistanceIndex::SegmentEnd end = _distanceIndex->find(distance);
    if (!end.strip)
        return distanceOutOfRange(retErr);
    if (retErr)
        *retErr = nullptr;
    return pointOnSegment(*end.strip, end.index, distance);
}

CGMutablePathRef ZRPath::createPathToDistance(double distance) const
{
    auto path = adopt(CGPathCreateMutable());
    if (!_built || std::isnan(distance))
        return path.leak();
    for (unsigned long i = 0; i < _numLineStrips; ++i) {
        const ZRPathLineStrip& strip = _lineStrips[i];
        if (!strip.distances)
            continue;
        // The first point after the strip's start at `distance` or beyond.
        double* const end = strip.distances + strip.count;
        const double* reached =
            std::partition_point(strip.distances + 1, end, [distance](double d) { return distance > d; });
        const auto count = static_cast<std::size_t>(reached - strip.distances);
        CGPathAddLines(path.get(), nullptr, strip.points, count);
        if (reached != end) {
            const CGPoint last = pointOnSegment(strip, count, distance);
            CGPathAddLineToPoint(path.get(), nullptr, last.x, last.y);
            break;
        }
    }
    return path.leak();
}

NSString ZRPath::lineStripsJSON() const
{
    std::string text = "[";
    const char* separator = "\n";
    for (unsigned long i = 0; i < _numLineStrips; ++i) {
        const ZRPathLineStrip& strip = _lineStrips[i];
        if (!strip.distances)
            continue;
        text += separator;
        text += " [";
        forEachNumber(strip, [&text](double number) {
            appendNumber(number, text);
            text += ',';
        });
        text.back() = ']';
        separator = ",\n";
    }
    return NSString(text + "\n]\n");
}

RetainPtr<NSArray> ZRPath::lineStripsDict() const
{
    std::vector<RetainPtr<NSObject>> strips;
    for (unsigned long i = 0; i < _numLineStrips; ++i) {
        const ZRPathLineStrip& strip = _lineStrips[i];
        if (!strip.distances)
            continue;
        std::vector<RetainPtr<NSObject>> numbers;
        numbers.reserve(3 * strip.count);
        forEachNumber(
            strip, [&numbers](double number) { numbers.emplace_back(NSNumber::numberWithDouble(number)); });
        strips.emplace_back(make<NSArray>(std::move(numbers)));
    }
    return make<NSArray>(std::move(strips));
}
