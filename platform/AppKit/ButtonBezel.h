#pragma once

#include <AppKit/NSGeometry.h>
#include <CoreGraphics/CGContext.h>

class NSColor;

/// What a button's look depends on.
struct ButtonLook {
    bool isOn;
    bool isPressed;
    bool isEnabled;
    bool isDefault; ///< Return clicks it
};

/// Draws a button's bezel along the inside of a rectangle of at least 2 x 2 points; y is upward.
void drawButtonBezel(CGContextRef context, NSRect rect, const ButtonLook& look);
/// Draws a line of a point along the inside of a button's edge in white, and one in black inside of it: one
/// of them contrasts with whatever is behind.
void drawButtonFocusRing(CGContextRef context, NSRect rect);
/// The colour of a button's title. Borrowed; never destroyed.
NSColor* buttonTitleColor(const ButtonLook& look);
