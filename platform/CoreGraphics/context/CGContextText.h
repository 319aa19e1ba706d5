#pragma once

#include "CoreGraphics/CGColorInternal.h"

#include <CoreGraphics/CGContext.h>

#include <vector>

/// Outlines of text that are to be filled in one colour.
class OutlineSource {
public:
    /// Adds the outlines to a path, mapped by a transform. Those that lie outside of `needed`, which is in
    /// base space, may be missing.
    virtual void addOutlines(
        CGMutablePathRef path, const CGAffineTransform& baseFromText, CGRect needed) const = 0;
    /// About where they lie, cheaply.
    virtual CGRect reach() const = 0;
    /// Appends numbers that tell these outlines from all others.
    virtual void describe(std::vector<double>& key) const = 0;

protected:
    ~OutlineSource() = default;
};

/// Fills outlines of text space by the winding rule. Those of a label are worked out once: views draw them
/// time and again in the same place, or whole pixels from there.
void CGContextFillOutlines(CGContextRef context, const OutlineSource& outlines, const CGColorRGBA& color);
/// Fills an outline, which `textFromOutline` brings to text space. Null is nothing.
void CGContextFillOutline(CGContextRef context, CGPathRef outline, const CGAffineTransform& textFromOutline,
    const CGColorRGBA& color);
/// Draws an image into a rectangle of text space. Null is nothing.
void CGContextDrawGlyphImage(CGContextRef context, CGRect rect, CGImageRef image);
