#pragma once

#include "CoreGraphics/pdf/DisplayList.h"
#include "CoreGraphics/pdf/PDFColorSpace.h"

#include <cmath>
#include <memory>

class PDFFont;

/// What fills or strokes are painted with.
struct PDFPaint {
    std::shared_ptr<const PDFColorSpace> space = PDFColorSpace::deviceGray();
    PDFRGB color;      ///< in a pattern space, the colour of an uncoloured pattern
    PDFObject pattern; ///< null unless the space is a pattern space
};

/// The text parameters of a graphics state.
struct PDFTextState {
    std::shared_ptr<const PDFFont> font; ///< null before the first Tf, and when the font is invalid
    double size = 0;
    double characterSpacing = 0;
    double wordSpacing = 0;
    double horizontalScale = 1;
    double leading = 0;
    double rise = 0;
    int renderMode = 0;
};

/// The graphics state of a content stream: what q saves and Q restores.
struct PDFGraphicsState {
    CGAffineTransform pageFromUser = CGAffineTransformIdentity;
    PDFPaint fill;
    PDFPaint stroke;
    PDFStrokeStyle line; ///< in user space; its transform is not used
    float fillAlpha = 1;
    float strokeAlpha = 1;
    CGBlendMode blendMode = kCGBlendModeNormal;
    std::shared_ptr<const PDFSoftMask> softMask;
    PDFTextState text;
    bool hasSavedClip = false; ///< true once a SaveItem stands for this level of q
};

/// False for numbers so large that products of the matrix and a coordinate lose all precision.
inline bool isUsable(const CGAffineTransform& transform)
{
    constexpr double kLargestCoefficient = 1e15;
    for (const double value :
        {transform.a, transform.b, transform.c, transform.d, transform.tx, transform.ty}) {
        if (!(std::fabs(value) <= kLargestCoefficient))
            return false;
    }
    return true;
}
