#include "CoreGraphics/context/CGContextGlyphs.h"

#include "CoreGraphics/raster/GlyphMasks.h"
#include "CoreGraphics/raster/MaskBuffer.h"

#include <atomic>
#include <cmath>

namespace {

/// Masks of larger glyphs take more than 3 KB at each of the 16 positions, and rarely serve a second line.
constexpr double kMaxPixelsPerEm = 64;

/// Pixels per em. Less is left of the cosine of a quarter turn, and no mask shows it.
constexpr double kNegligible = 1e-6;

GlyphScale glyphScale(std::uint64_t face, double pointsPerEm, const CGAffineTransform& baseFromText)
{
    const auto factor = [pointsPerEm](double value) {
        const double pixelsPerEm = pointsPerEm * value;
        return std::abs(pixelsPerEm) < kNegligible ? 0 : pixelsPerEm;
    };
    const CGAffineTransform& t = baseFromText;
    return {face, factor(t.a), factor(t.b), factor(t.c), factor(t.d)};
}

class OutlineAppender final : public GlyphRunVisitor {
public:
    OutlineAppender(CGMutablePathRef path, const CGAffineTransform& baseFromText)
        : _path(path)
        , _baseFromText(baseFromText)
    {
    }

    void visit(const GlyphRun& run) override
    {
        for (const GlyphRun::Glyph& glyph : run.glyphs) {
            const CGAffineTransform textFromEm{
                run.pointsPerEm, 0, 0, run.pointsPerEm, glyph.origin.x, glyph.origin.y};
            const CGAffineTransform baseFromEm = CGAffineTransformConcat(textFromEm, _baseFromText);
            CGPathAddPath(_path, &baseFromEm, run.face.outline(glyph.id));
        }
    }

private:
    CGMutablePathRef _path;
    const CGAffineTransform& _baseFromText;
};

/// Draws glyphs of a face into a context's memory.
class OutlineRasterizer final : public GlyphRasterizer {
public:
    OutlineRasterizer(CGContextRef context, const GlyphOutlines& face, const GlyphScale& scale)
        : _context(context)
        , _face(face)
        , _scale(scale)
    {
    }

    MaskView draw(std::uint32_t glyph, double x, double y) override
    {
        // In a pixel space of height 0, whose row 0 starts at the origin of base space.
        const CGAffineTransform baseFromEm{_scale.a, _scale.b, _scale.c, _scale.d, x, -y};
        CGPath& path = *_context->textPath;
        path.clear();
        CGPathAddPath(&path, &baseFromEm, _face.outline(glyph));
        const Shape shape{.space = {}, .path = &path};
        const PixelRect area = shape.pixels(kAllPixels);
        if (area.isEmpty())
            return {};
        MaskBuffer mask(_context->maskMemory, area);
        mask.draw(shape);
        return mask.view();
    }

private:
    CGContextRef _context;
    const GlyphOutlines& _face;
    const GlyphScale& _scale;
};

/// Adds the masks of runs to a line.
class MaskAppender final : public GlyphRunVisitor {
public:
    MaskAppender(CGContextRef context, const CGAffineTransform& baseFromText, GlyphLine& line)
        : _context(context)
        , _baseFromText(baseFromText)
        , _line(line)
    {
    }

    void visit(const GlyphRun& run) override
    {
        thread_local std::vector<PixelGlyph> glyphs;
        glyphs.clear();
        for (const GlyphRun::Glyph& glyph : run.glyphs) {
            const CGPoint origin =
                _context->space().flipped(CGPointApplyAffineTransform(glyph.origin, _baseFromText));
            // No letter reaches as far as this. Blanks may be anywhere.
            if (std::abs(origin.x) < kFarthestPixel && std::abs(origin.y) < kFarthestPixel)
                glyphs.push_back({glyph.id, origin.x, origin.y});
        }
        const GlyphScale scale = glyphScale(run.face.serial(), run.pointsPerEm, _baseFromText);
        OutlineRasterizer rasterizer(_context, run.face, scale);
        _line.add(scale, glyphs, rasterizer);
    }

private:
    CGContextRef _context;
    const CGAffineTransform& _baseFromText;
    GlyphLine& _line;
};

} // namespace

GlyphOutlines::GlyphOutlines()
{
    static std::atomic<std::uint64_t> last{0};
    _serial = ++last;
}

bool usesGlyphMasks(
    const GraphicsState& state, const GlyphSource& glyphs, const CGAffineTransform& baseFromText)
{
    if (!state.quantizesGlyphs() || !state.isAntialiased)
        return false;
    const GlyphScale scale = glyphScale(0, glyphs.largestSize(), baseFromText);
    for (const double factor : {scale.a, scale.b, scale.c, scale.d})
        if (!(std::abs(factor) <= kMaxPixelsPerEm)) // NaN too
            return false;
    return scale.b == 0 || scale.a == 0;
}

MaskView drawGlyphMasks(
    CGContextRef context, const GlyphSource& glyphs, const CGAffineTransform& baseFromText, CGRect needed)
{
    thread_local GlyphLine line(GlyphMaskCache::shared());
    MaskAppender appender(context, baseFromText, line);
    glyphs.visitRuns(baseFromText, needed, appender);
    MaskView view;
    if (!line.area().isEmpty()) {
        MaskBuffer mask(context->maskMemory, line.area());
        line.draw(mask.pixel(line.area().left, line.area().top), mask.view().bytesPerRow);
        view = mask.view();
    }
    line.clear();
    return view;
}

void addGlyphOutlines(
    CGMutablePathRef path, const GlyphSource& glyphs, const CGAffineTransform& baseFromText, CGRect needed)
{
    OutlineAppender appender(path, baseFromText);
    glyphs.visitRuns(baseFromText, needed, appender);
}
