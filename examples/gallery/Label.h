#pragma once

#include <CoreGraphics/CGContext.h>
#include <Foundation/NSString.h>

/// Where a label lies.
enum class LabelPlace {
    FromBaseline, ///< its baseline starts at the point
    Around,       ///< the middle of its ink is the point
};

/// Draws a line of text in the system's bold font, in the palette's colour of that name.
void drawLabel(CGContextRef context, const NSString& text, CGPoint point, CGFloat fontSize, const char* color,
    LabelPlace place = LabelPlace::FromBaseline);
