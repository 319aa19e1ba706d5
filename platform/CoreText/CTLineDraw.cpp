#include "CoreText/CTLineInternal.h"

#include "CoreGraphics/context/CGContextText.h"

#include <algorithm>

namespace {

/// The glyphs of a line's runs from `begin` to `end`; the first one starts at `x`.
class LineGlyphs final : public GlyphSource {
public:
    LineGlyphs(const CTLine& line, std::size_t begin, std::size_t end, double x)
        : _line(line)
        , _begin(begin)
        , _end(end)
        , _x(x)
    {
    }

    void visitRuns(
        const CGAffineTransform& baseFromText, CGRect needed, GlyphRunVisitor& visitor) const override
    {
        thread_local std::vector<GlyphRun::Glyph> glyphs;
        const bool needsAll = CGRectIsInfinite(needed);
        double x = _x;
        for (std::size_t i = _begin; i < _end; ++i) {
            const ShapedRun& run = _line.shaped().runs[i];
            glyphs.clear();
            _line.placeGlyphs(run, x, [&](const ShapedGlyph& glyph, const CGAffineTransform& textFromEm) {
                if (needsAll || leavesInk(*run.face, glyph.id, textFromEm, baseFromText, needed))
                    glyphs.push_back({glyph.id, {textFromEm.tx, textFromEm.ty}});
            });
            visitor.visit({*run.face, _line.styleOf(run).size, glyphs});
            x += _line.advanceOf(run);
        }
    }

    double largestSize() const override
    {
        double size = 0;
        for (std::size_t i = _begin; i < _end; ++i)
            size = std::max(size, _line.styleOf(_line.shaped().runs[i]).size);
        return size;
    }

    CGRect approximateBounds() const override
    {
        double x = _x;
        double left = x;
        double right = x;
        for (std::size_t i = _begin; i < _end; ++i) {
            x += _line.advanceOf(_line.shaped().runs[i]); // negative for a large negative kern
            left = std::min(left, x);
            right = std::max(right, x);
        }
        const double size = largestSize();
        return CGRectMake(left, -size, right - left, 2 * size);
    }

    void describe(std::vector<double>& key) const override
    {
        key.push_back(double(_line.shaped().serial));
        key.push_back(double(_begin));
        key.push_back(double(_end));
        key.push_back(_x);
        for (std::size_t i = _begin; i < _end; ++i) {
            const CTLine::Style& style = _line.styleOf(_line.shaped().runs[i]);
            key.push_back(style.size);
            key.push_back(style.kern);
        }
    }

private:
    static bool leavesInk(const FontFace& face, std::uint32_t glyph, const CGAffineTransform& textFromEm,
        const CGAffineTransform& baseFromText, CGRect needed)
    {
        const CGAffineTransform baseFromEm = CGAffineTransformConcat(textFromEm, baseFromText);
        return CGRectIntersectsRect(CGRectApplyAffineTransform(face.picture(glyph).ink, baseFromEm), needed);
    }

    const CTLine& _line;
    std::size_t _begin;
    std::size_t _end;
    double _x;
};

CGColorRGBA colorOf(const CTLine::Style& style)
{
    if (!style.color)
        return {0, 0, 0, 1};
    const CGColorRef color = style.color->CGColor();
    return color ? color->rgba() : CGColorRGBA{0, 0, 0, 0};
}

/// Draws glyphs that may have colours of their own, in order.
void drawColoredRun(const CTLine& line, const ShapedRun& run, double x, CGContextRef context)
{
    const CGColorRGBA textColor = colorOf(line.styleOf(run));
    line.placeGlyphs(run, x, [&](const ShapedGlyph& glyph, const CGAffineTransform& textFromEm) {
        const GlyphPicture& picture = run.face->picture(glyph.id);
        if (picture.isImage)
            return CGContextDrawGlyphImage(
                context, *run.face, glyph.id, CGRectApplyAffineTransform(picture.ink, textFromEm));
        for (const GlyphPicture::Layer& layer : picture.layers)
            CGContextFillOutline(context, layer.outline, textFromEm, layer.color.value_or(textColor));
        CGContextFillOutline(context, picture.outline, textFromEm, textColor);
    });
}

} // namespace

void CTLineDraw(CTLineRef line, CGContextRef context)
{
    if (!line || !context)
        return;
    const std::vector<ShapedRun>& runs = line->shaped().runs;
    double x = 0;
    for (std::size_t begin = 0; begin < runs.size();) {
        const ShapedRun& first = runs[begin];
        if (first.face->hasColors()) {
            drawColoredRun(*line, first, x, context);
            x += line->advanceOf(first);
            ++begin;
            continue;
        }
        const double start = x;
        std::size_t end = begin;
        // Runs of one colour are filled together, as if they were one shape.
        for (; end < runs.size() && !runs[end].face->hasColors()
             && line->styleOf(runs[end]).color == line->styleOf(first).color;
             ++end)
            x += line->advanceOf(runs[end]);
        CGContextFillGlyphs(context, LineGlyphs(*line, begin, end, start), colorOf(line->styleOf(first)));
        begin = end;
    }
}
