#include "CoreText/CTLineInternal.h"

#include "CoreText/FontSystem.h"

#include <CoreText/CTFont.h>
#include <Foundation/NSNumber.h>

#include <algorithm>
#include <cmath>

namespace {

double kernOf(const NSDictionary& attributes)
{
    const auto* kern = dynamic_cast<const NSNumber*>(attributes.objectForKey(kCTKernAttributeName));
    const double points = kern ? kern->doubleValue() : 0;
    return std::isfinite(points) ? points : 0;
}

/// The size of a line; all 0 for null.
struct TypographicBounds {
    double width = 0;
    double ascent = 0;
    double descent = 0;
    double leading = 0;
};

TypographicBounds typographicBounds(CTLineRef line)
{
    TypographicBounds bounds;
    if (!line)
        return bounds;
    for (const ShapedRun& run : line->shaped().runs) {
        const FaceMetrics& metrics = run.face->metrics();
        const double size = line->styleOf(run).size;
        bounds.width += line->advanceOf(run);
        bounds.ascent = std::max(bounds.ascent, metrics.ascent * size);
        bounds.descent = std::max(bounds.descent, metrics.descent * size);
        bounds.leading = std::max(bounds.leading, metrics.leading * size);
    }
    return bounds;
}

/// The bounds of the ink, mapped by a transform; empty at the mapped origin when there is none.
CGRect inkBounds(const CTLine& line, const CGAffineTransform& transform)
{
    CGRect bounds = CGRectNull;
    double x = 0;
    for (const ShapedRun& run : line.shaped().runs) {
        line.placeGlyphs(run, x, [&](const ShapedGlyph& glyph, const CGAffineTransform& textFromEm) {
            const CGRect ink = run.face->picture(glyph.id).ink;
            if (!CGRectIsEmpty(ink))
                bounds = CGRectUnion(
                    bounds, CGRectApplyAffineTransform(ink, CGAffineTransformConcat(textFromEm, transform)));
        });
        x += line.advanceOf(run);
    }
    return CGRectIsNull(bounds) ? CGRect{{transform.tx, transform.ty}, CGSizeZero} : bounds;
}

} // namespace

CTLine::CTLine(std::shared_ptr<const ShapedText> shaped, std::vector<Style> styles)
    : _shaped(std::move(shaped))
    , _styles(std::move(styles))
{
}

CTLine::~CTLine() = default;

void RetainTraits<CTLine>::retain(CTLine* line) noexcept
{
    line->retain();
}

void RetainTraits<CTLine>::release(CTLine* line) noexcept
{
    line->release();
}

RetainPtr<const CTLine> makeLine(const NSAttributedString& string, NSRange range)
{
    // Reused: lines are created at each drawing.
    thread_local std::vector<TextSpan> spans;
    spans.clear();
    std::vector<CTLine::Style> styles;
    FontSystem& system = FontSystem::shared();
    RetainPtr<const CTFont> defaultFont;
    for (const NSAttributedString::Run& run : string.attributeRuns()) {
        const NSUInteger begin = std::max(run.range.location, range.location);
        const NSUInteger end = std::min(NSMaxRange(run.range), NSMaxRange(range));
        if (begin >= end)
            continue;
        const auto* font = dynamic_cast<CTFontRef>(run.attributes->objectForKey(kCTFontAttributeName));
        if (!font) {
            if (!defaultFont)
                defaultFont = adopt(CTFontCreateWithName("Helvetica", 12));
            font = defaultFont.get();
        }
        CTLine::Style& style = styles.emplace_back();
        style.size = font->pointSize();
        style.kern = kernOf(*run.attributes);
        style.colorObject = run.attributes->objectForKey(kCTForegroundColorAttributeName);
        style.color = dynamic_cast<const CTColorValue*>(style.colorObject.get());
        spans.push_back({end - range.location, &font->typeface(), style.kern == 0});
    }
    const bool isWhole = range.length == string.length();
    const NSString part = isWhole ? string.string() : string.string().substringWithRange(range);
    return make<CTLine>(system.shape(part, spans), std::move(styles));
}

CTLineRef CTLineCreateWithAttributedString(CFAttributedStringRef string)
{
    return string ? makeLine(*string, NSMakeRange(0, string->length())).leak() : nullptr;
}

double CTLineGetTypographicBounds(CTLineRef line, CGFloat* ascent, CGFloat* descent, CGFloat* leading)
{
    const TypographicBounds bounds = typographicBounds(line);
    if (ascent)
        *ascent = bounds.ascent;
    if (descent)
        *descent = bounds.descent;
    if (leading)
        *leading = bounds.leading;
    return bounds.width;
}

CGRect CTLineGetBoundsWithOptions(CTLineRef line, CTLineBoundsOptions options)
{
    if (!line)
        return CGRectNull;
    if (options & kCTLineBoundsUseGlyphPathBounds)
        return inkBounds(*line, CGAffineTransformIdentity);
    const TypographicBounds bounds = typographicBounds(line);
    const bool hasLeading =
        !(options & (kCTLineBoundsExcludeTypographicLeading | kCTLineBoundsUseOpticalBounds));
    const double below = bounds.descent + (hasLeading ? bounds.leading : 0);
    return CGRectMake(0, -below, bounds.width, bounds.ascent + below);
}

CGRect CTLineGetImageBounds(CTLineRef line, CGContextRef context)
{
    return line ? inkBounds(*line, CGContextGetTextMatrix(context)) : CGRectNull;
}
