#pragma once

#include <Foundation/NSAttributedString.h>

// The names of the attributes that text is drawn with. Each is one text for all, so that using it costs
// nothing; they are there before `main` begins.

/// An NSFont. Without one text is drawn in Helvetica, 12 points.
KORVID_EXPORT extern const NSAttributedStringKey NSFontAttributeName;
/// An NSColor. Without one text is black.
KORVID_EXPORT extern const NSAttributedStringKey NSForegroundColorAttributeName;
/// An NSNumber: points added behind each character, negative ones to move characters together. Without one,
/// as the font says.
KORVID_EXPORT extern const NSAttributedStringKey NSKernAttributeName;
/// An NSParagraphStyle. Without one `NSParagraphStyle::defaultParagraphStyle()`.
KORVID_EXPORT extern const NSAttributedStringKey NSParagraphStyleAttributeName;
