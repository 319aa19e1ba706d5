#pragma once

#include "CoreGraphics/CGColorInternal.h"

#include <CoreGraphics/CGContext.h>

#include <vector>

/// Glyph outlines to be filled in one colour.
class OutlineSource {
public:
    /// Adds the outlines to a path, mapped by a transform. Outlines outside of `needed`, a rectangle in base
    /// space, may be culled.
    virtual void addOutlines(
        CGMutablePathRef path, const CGAffineTransform& baseFromText, CGRect needed) const = 0;
    /// Approximate bounds of the outlines, computed cheaply.
    virtual CGRect reach() const = 0;
    /// Appends values to a cache key that identify these outlines.
    virtual void describe(std::vector<double>& key) const = 0;

protected:
    ~OutlineSource() = default;
};

/// Fills outlines in text space by the winding rule. The masks of short labels are cached, because views draw
/// them repeatedly at the same subpixel position.
void CGContextFillOutlines(CGContextRef context, const OutlineSource& outlines, const CGColorRGBA& color);
/// Fills an outline, which `textFromOutline` maps to text space. Null draws nothing.
void CGContextFillOutline(CGContextRef context, CGPathRef outline, const CGAffineTransform& textFromOutline,
    const CGColorRGBA& color);
/// Draws an image into a rectangle of text space. Null draws nothing.
void CGContextDrawGlyphImage(CGContextRef context, CGRect rect, CGImageRef image);
