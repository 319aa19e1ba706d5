#pragma once

#include <CoreGraphics/CGContext.h>
#include <Foundation/NSString.h>

/// How a label is placed at its point.
enum class LabelPlace {
    FromBaseline, ///< the baseline starts at the point
    Around,       ///< the glyphs' bounding box is centred on the point
};

/// Draws a line of text in the bold system font, in the colour `galleryCGColor(color)`.
void drawLabel(CGContextRef context, const NSString& text, CGPoint point, CGFloat fontSize, const char* color,
    LabelPlace place = LabelPlace::FromBaseline);
