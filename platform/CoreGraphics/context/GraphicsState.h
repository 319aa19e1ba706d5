#pragma once

#include "CoreGraphics/CGAffineTransformInternal.h"
#include "CoreGraphics/CGColorInternal.h"
#include "CoreGraphics/raster/Clip.h"
#include "CoreGraphics/raster/Shadow.h"

#include <CoreGraphics/CGContext.h>

/// The colour that fills or strokes.
struct StateColor {
    RetainPtr<CGColorSpace> space; ///< in which later components are interpreted
    CGColorRGBA color{0, 0, 0, 1};
    bool paintsNothing = false; ///< a pattern space without a pattern
};

/// The state that CGContextSaveGState saves.
struct GraphicsState {
    CGAffineTransform baseFromUser = CGAffineTransformIdentity;
    Clip clip;
    StateColor fill;
    StateColor stroke;
    LineStyle line;
    CGFloat alpha = 1;
    CGBlendMode blendMode = kCGBlendModeNormal;
    std::optional<Shadow> shadow;
    CGInterpolationQuality interpolation = kCGInterpolationDefault;
    bool isAntialiased = true;
    bool allowsGlyphQuantization = true;
    bool shouldQuantizeGlyphs = true;

    bool quantizesGlyphs() const { return allowsGlyphQuantization && shouldQuantizeGlyphs; }
    /// The identity when the transform has no inverse.
    CGAffineTransform userFromBase() const
    {
        return inverse(baseFromUser).value_or(CGAffineTransformIdentity);
    }
};
