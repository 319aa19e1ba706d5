#pragma once

#include "CoreGraphics/CGColorInternal.h"

#include <CoreGraphics/CGContext.h>
#include <CoreGraphics/CGImage.h>

#include <span>
#include <vector>

/// The outlines and images of a face's glyphs. Any thread.
class GlyphOutlines {
public:
    GlyphOutlines();
    /// Unique in the process.
    std::uint64_t serial() const { return _serial; }
    /// The outline of a glyph, in ems, y upward. Borrowed from the face; null for a blank.
    virtual const CGPath* outline(std::uint32_t glyph) const = 0;
    /// The image of a glyph that is one; null when its bytes are damaged.
    virtual RetainPtr<CGImage> image(std::uint32_t glyph) const = 0;

protected:
    ~GlyphOutlines() = default;

private:
    std::uint64_t _serial;
};

/// Glyphs of one face at one size.
struct GlyphRun {
    struct Glyph {
        std::uint32_t id = 0;
        CGPoint origin; ///< in text space
    };

    const GlyphOutlines& face;
    double pointsPerEm = 0;
    std::span<const Glyph> glyphs;
};

/// Draws the runs of a line.
class GlyphRunVisitor {
public:
    virtual void visit(const GlyphRun& run) = 0;

protected:
    ~GlyphRunVisitor() = default;
};

/// The glyphs of text that is filled in one colour.
class GlyphSource {
public:
    /// Calls `visitor` for each run. Glyphs that leave no ink in `needed`, which is in base space, may be
    /// left out.
    virtual void visitRuns(
        const CGAffineTransform& baseFromText, CGRect needed, GlyphRunVisitor& visitor) const = 0;
    /// The points per em of the largest run.
    virtual double largestSize() const = 0;
    /// The approximate bounds in text space.
    virtual CGRect approximateBounds() const = 0;
    /// Appends numbers that identify these glyphs.
    virtual void describe(std::vector<double>& key) const = 0;

protected:
    ~GlyphSource() = default;
};

/// Fills glyphs by the winding rule. The masks of short labels are cached, because views draw them repeatedly
/// at the same subpixel position.
void CGContextFillGlyphs(CGContextRef context, const GlyphSource& glyphs, const CGColorRGBA& color);
/// Fills an outline, which `textFromOutline` maps to text space. Null draws nothing.
void CGContextFillOutline(CGContextRef context, CGPathRef outline, const CGAffineTransform& textFromOutline,
    const CGColorRGBA& color);
/// Draws the image of a glyph into a rectangle of text space. While the graphics state allows quantized
/// positions, upright images of up to 64 pixels are drawn at whole pixels from a cache of scaled images.
void CGContextDrawGlyphImage(
    CGContextRef context, const GlyphOutlines& face, std::uint32_t glyph, CGRect rect);
