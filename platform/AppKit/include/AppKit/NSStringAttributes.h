#pragma once

#include <Foundation/NSAttributedString.h>

/// @file
/// The names of the attributes of drawn strings. They are constants with static storage: using one allocates
/// nothing. They are initialised before `main`.

/// An NSFont. Without one, text is drawn in Helvetica, 12 points.
KORVID_EXPORT extern const NSAttributedStringKey NSFontAttributeName;
/// An NSColor. Without one, text is black.
KORVID_EXPORT extern const NSAttributedStringKey NSForegroundColorAttributeName;
/// An NSNumber: points added after each character; negative ones move characters closer together. Without
/// one, the font's own kerning applies.
KORVID_EXPORT extern const NSAttributedStringKey NSKernAttributeName;
/// An NSParagraphStyle. Without one, `NSParagraphStyle::defaultParagraphStyle()`.
KORVID_EXPORT extern const NSAttributedStringKey NSParagraphStyleAttributeName;
