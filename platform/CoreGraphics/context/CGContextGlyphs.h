#pragma once

#include "CoreGraphics/context/CGContextInternal.h"
#include "CoreGraphics/context/CGContextText.h"

/// Whether the glyphs are drawn from masks at quarters of a pixel: antialiased text of up to 64 pixels per
/// em, while the graphics state allows it. Its baseline must be horizontal or vertical: on a slanted one the
/// rounded letters would stand on steps, and text that keeps turning would tremble and fill the cache.
bool usesGlyphMasks(
    const GraphicsState& state, const GlyphSource& glyphs, const CGAffineTransform& baseFromText);

/// The mask of glyphs that use masks. Those outside of `needed`, which is in base space, may be left out.
/// Lies in the context's memory for masks.
MaskView drawGlyphMasks(
    CGContextRef context, const GlyphSource& glyphs, const CGAffineTransform& baseFromText, CGRect needed);

/// Appends the exact outlines of glyphs to a path, in base space.
void addGlyphOutlines(
    CGMutablePathRef path, const GlyphSource& glyphs, const CGAffineTransform& baseFromText, CGRect needed);
