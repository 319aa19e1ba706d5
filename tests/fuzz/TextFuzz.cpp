#include "TextFuzz.h"

#include "FuzzInput.h"
#include "Require.h"

#include <CoreGraphics/CoreGraphics.h>
#include <CoreText/CoreText.h>
#include <Foundation/Foundation.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr std::size_t kLongestText = 120;

/// Pieces of text that layouts treat in ways of their own.
constexpr const char16_t* kPieces[] = {u"a", u"Rag fi", u" ", u"\n", u"\t", u"\u0301", u"\u05E9\u05DC",
    u"\u0645\u0631\u062D", u"12", u"\u200D", u"\u202E", u"\u202C", u"\u2066", u"\u2069", u"\u00AD",
    u"\U0001F600", u"\U0001F468\u200D\U0001F469", u"\u4E2D\u6587", u"\uFFFC", u"\u2028", u"\u0E33", u"\uFB01",
    u"\U0001F1E9\U0001F1EA", u"\uFE0F", u"...", u"\u1100\u1161"};

NSString takeString(FuzzInput& input)
{
    std::u16string units;
    for (int pieces = input.takeIndex(5); pieces > 0; --pieces) {
        if (input.takeIndex(4) == 0)
            units += input.take<char16_t>(); // any, unpaired surrogates too
        else
            units += kPieces[input.takeIndex(std::size(kPieces))];
    }
    return NSString(std::u16string_view(units));
}

RetainPtr<NSObject> takeValue(FuzzInput& input, const NSString& name)
{
    if (name == kCTFontAttributeName) {
        constexpr const char* kNames[] = {"Helvetica", "Helvetica-Bold", "No such font", ""};
        const char* const font = kNames[input.takeIndex(std::size(kNames))];
        return const_cast<CTFont*>(adopt(CTFontCreateWithName(font, input.takeNumber(512))).get());
    }
    if (name == kCTKernAttributeName)
        return NSNumber::numberWithDouble(input.takeNumber(2048));
    if (name == kCTForegroundColorAttributeName)
        return box(adopt(CGColorCreateGenericGrayGamma2_2(input.take<std::uint8_t>() / 255.0, 1)));
    return NSNumber::numberWithInteger(input.takeIndex(3));
}

NSString takeName(FuzzInput& input)
{
    const std::array names{
        kCTFontAttributeName, kCTKernAttributeName, kCTForegroundColorAttributeName, NSString("other")};
    return names[std::size_t(input.takeIndex(names.size()))];
}

/// An attributed string, and beside it each unit with its own attributes.
class EditedText {
public:
    void change(FuzzInput& input);
    void check() const;

    const NSMutableAttributedString* text() const { return _text; }

private:
    using Attributes = std::map<NSString, RetainPtr<NSObject>>;
    struct Unit {
        char16_t unit;
        Attributes attributes;
    };

    NSRange takeRange(FuzzInput& input) const;
    void replace(NSRange range, const NSString& string);
    void append(FuzzInput& input);

    RetainPtr<NSMutableAttributedString> _text = make<NSMutableAttributedString>();
    std::vector<Unit> _units;
};

NSRange EditedText::takeRange(FuzzInput& input) const
{
    const NSUInteger location = input.take<std::uint8_t>() % (_units.size() + 1);
    return {location, input.take<std::uint8_t>() % (_units.size() - location + 1)};
}

void EditedText::replace(NSRange range, const NSString& string)
{
    Attributes attributes;
    if (range.length > 0)
        attributes = _units[range.location].attributes;
    else if (!_units.empty())
        attributes = _units[range.location > 0 ? range.location - 1 : 0].attributes;
    const auto first = _units.begin() + NSInteger(range.location);
    auto at = _units.erase(first, first + NSInteger(range.length));
    for (const char16_t unit : string.view())
        at = _units.insert(at, {unit, attributes}) + 1;
    _text->replaceCharactersInRange(range, string);
}

void EditedText::append(FuzzInput& input)
{
    const NSString string = takeString(input), name = takeName(input);
    const auto value = takeValue(input, name);
    for (const char16_t unit : string.view())
        _units.push_back({unit, {{name, value}}});
    const auto added = make<NSAttributedString>(string, make<NSDictionary>(NSDictionary::Map{{name, value}}));
    _text->appendAttributedString(added);
}

void EditedText::change(FuzzInput& input)
{
    const NSRange range = takeRange(input);
    const auto first = _units.begin() + NSInteger(range.location);
    const auto end = first + NSInteger(range.length);
    switch (input.takeIndex(5)) {
    case 0:
        if (_units.size() < kLongestText)
            replace(range, takeString(input));
        break;
    case 1: {
        const NSString name = takeName(input);
        const auto value = takeValue(input, name);
        std::for_each(first, end, [&](Unit& unit) { unit.attributes.insert_or_assign(name, value); });
        _text->addAttribute(name, value, range);
        break;
    }
    case 2: {
        const NSString name = takeName(input);
        std::for_each(first, end, [&](Unit& unit) { unit.attributes.erase(name); });
        _text->removeAttribute(name, range);
        break;
    }
    case 3:
        std::for_each(first, end, [](Unit& unit) { unit.attributes.clear(); });
        _text->setAttributes(nullptr, range);
        break;
    default:
        if (_units.size() < kLongestText)
            append(input);
    }
}

void EditedText::check() const
{
    require(_text->length() == _units.size());
    NSUInteger next = 0;
    RetainPtr<NSDictionary> previous;
    for (const auto& run : _text->attributeRuns()) {
        require(run.range.location == next && run.range.length > 0);
        require(!previous || !previous->isEqual(run.attributes));
        for (NSUInteger i = next; i < next + run.range.length; ++i) {
            const auto expected = make<NSDictionary>(_units[i].attributes);
            require(_text->string().view()[i] == _units[i].unit && run.attributes->isEqual(expected));
        }
        next += run.range.length;
        previous = run.attributes;
    }
    require(next == _units.size());
    const auto copy = _text->copy();
    require(copy->isEqual(_text) && copy->hash() == _text->hash());
    const auto half = _text->attributedSubstringFromRange({0, next / 2})->mutableCopy();
    const auto rest = _text->attributedSubstringFromRange({next / 2, next - next / 2});
    half->appendAttributedString(rest);
    require(half->isEqual(_text));
}

constexpr std::size_t kLineSide = 48;
using LinePixels = std::array<std::uint8_t, kLineSide * kLineSide>;

/// Where and how a line is drawn.
struct Placement {
    CGPoint position;
    double scale;
    bool isQuantized;

    /// Whether it makes no finite bounds infinite.
    bool isOrdinary() const
    {
        constexpr double kMost = 1e100;
        return std::abs(position.x) < kMost && std::abs(position.y) < kMost && std::abs(scale) < kMost;
    }
};

/// The line's coverage and the bounds of its ink.
LinePixels drawn(CTLineRef line, const Placement& placement, CGRect& ink)
{
    LinePixels pixels{};
    const auto context = adopt(
        CGBitmapContextCreate(pixels.data(), kLineSide, kLineSide, 8, kLineSide, nullptr, kCGImageAlphaOnly));
    CGContextSetShouldSubpixelQuantizeFonts(context, placement.isQuantized);
    CGContextSetTextMatrix(context, CGAffineTransformMakeScale(placement.scale, placement.scale));
    CGContextSetTextPosition(context, placement.position.x, placement.position.y);
    CTLineDraw(line, context);
    ink = CTLineGetImageBounds(line, context);
    return pixels;
}

bool isFinite(CGRect rect)
{
    return std::isfinite(rect.origin.x) && std::isfinite(rect.origin.y) && std::isfinite(rect.size.width)
        && std::isfinite(rect.size.height);
}

/// Whether the rounding of the rectangle's numbers is far below a pixel.
bool isExact(CGRect rect)
{
    constexpr double kMost = 1e9;
    return std::max(std::abs(rect.origin.x), std::abs(rect.origin.y)) < kMost
        && std::max(rect.size.width, rect.size.height) < kMost;
}

void checkLine(const NSAttributedString* text, const Placement& placement)
{
    const auto line = adopt(CTLineCreateWithAttributedString(text));
    require(line != nullptr);
    CGFloat ascent = 0, descent = 0, leading = 0;
    const double width = CTLineGetTypographicBounds(line, &ascent, &descent, &leading);
    require(
        std::isfinite(width) && std::isfinite(ascent) && std::isfinite(descent) && std::isfinite(leading));
    require(text->length() > 0 || (width == 0 && ascent == 0));
    for (const int options : {0, 1, 8, 16})
        require(isFinite(CTLineGetBoundsWithOptions(line, CTLineBoundsOptions(options))));

    CGRect ink;
    const LinePixels pixels = drawn(line, placement, ink);
    require(isFinite(ink) || !placement.isOrdinary());
    // Ink in part of a pixel touches the whole one, and quantized glyphs stand up to an eighth beside.
    const CGRect touched = CGRectInset(ink, -1.5, -1.5);
    for (std::size_t i = 0; i < pixels.size() && isExact(ink); ++i) {
        const std::size_t row = kLineSide - 1 - i / kLineSide;
        const CGPoint center{double(i % kLineSide) + 0.5, double(row) + 0.5};
        require(pixels[i] == 0 || CGRectContainsPoint(touched, center));
    }
    const auto same = adopt(CTLineCreateWithAttributedString(make<NSAttributedString>(text).get()));
    require(CTLineGetTypographicBounds(same, nullptr, nullptr, nullptr) == width);
    CGRect sameInk;
    require(drawn(same, placement, sameInk) == pixels);
    require(CGRectEqualToRect(ink, sameInk) || !placement.isOrdinary());
}

} // namespace

void fuzzText(const std::uint8_t* data, std::size_t size)
{
    FuzzInput input(data, size);
    const CGPoint position = input.takePoint(512);
    const Placement placement{
        position, input.takeIndex(4) == 0 ? input.takeNumber(8192) : 1.0, input.takeIndex(2) == 0};
    EditedText text;
    constexpr int kMostChanges = 24;
    for (int i = 0; i < kMostChanges && !input.isAtEnd(); ++i)
        text.change(input);
    text.check();
    checkLine(text.text(), placement);
}

std::vector<std::string> textSeeds()
{
    std::vector<std::string> seeds;
    std::mt19937 random(13);
    for (int i = 0; i < 16; ++i) {
        std::string bytes(150, '\0');
        for (char& byte : bytes)
            byte = static_cast<char>(random());
        seeds.push_back(bytes);
    }
    return seeds;
}
