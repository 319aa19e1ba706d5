#pragma once

#include <AppKit/NSGeometry.h>
#include <AppKit/NSStringAttributes.h>

/// How a string is measured and drawn: a set of the flags below.
using NSStringDrawingOptions = NSInteger;

/// The text is a block of lines in a rectangle. Without it, the text is one line on a baseline.
inline constexpr NSStringDrawingOptions NSStringDrawingUsesLineFragmentOrigin = 1 << 0;
/// Lines are also apart by the leading of their fonts.
inline constexpr NSStringDrawingOptions NSStringDrawingUsesFontLeading = 1 << 1;

/// Not available: pass null.
class NSStringDrawingContext;

/// Measuring and drawing strings of any number of lines, with the attributes of NSStringAttributes.h.
///
/// With NSStringDrawingUsesLineFragmentOrigin the lines of a text run from the top of a rectangle downward.
/// A line feed, a carriage return (with a line feed or without one) and Unicode's other separators end a
/// paragraph; one at the end of the text starts an empty line. A paragraph that is wider than the rectangle
/// continues on further lines or is shortened, as its paragraph style's `lineBreakMode` says; a width that is
/// 0, negative or NaN is no limit. Blanks at the end of a wrapped line hang over and do not count.
///
/// Without it the text is the first paragraph alone, as one line, which is cut or shortened if its style says
/// so and is never wrapped.
///
/// A line is as high as the largest ascent and descent of its fonts, the ones that glyphs were taken from
/// included; an empty one as those of the font that its separator has. Then the limits of its paragraph style
/// apply (the style is that of the paragraph's first character): they add and take height above the letters.
///
/// A null string and one without characters has no lines. Lengths are in points. Any thread.
namespace NSExtendedStringDrawing {

/// The size of the text where lines are at most as wide as `size`: the width of the widest line and the
/// height of all. Neither is rounded. The height of `size` is no limit. The origin of the result is (0, 0),
/// or, without NSStringDrawingUsesLineFragmentOrigin, at the bottom of the letters below a baseline at y = 0.
KORVID_EXPORT NSRect boundingRectWithSize(const NSAttributedString* string, NSSize size,
    NSStringDrawingOptions options, NSStringDrawingContext* context = nullptr);
/// The same for a string that has the same attributes throughout; null for none.
KORVID_EXPORT NSRect boundingRectWithSize(const NSString& string, NSSize size, NSStringDrawingOptions options,
    RetainPtr<NSDictionary> attributes, NSStringDrawingContext* context = nullptr);

/// Draws the text in a rectangle of `NSGraphicsContext::currentContext()`, upright also in a flipped one. The
/// text starts at the upper edge; without NSStringDrawingUsesLineFragmentOrigin its baseline starts at the
/// rectangle's origin. Each line is aligned between the left and the right edge, those wider than the
/// rectangle at the left one. Does nothing without a current context.
///
/// Differs: lines below the rectangle are drawn, too. Clip the context where they must not be.
KORVID_EXPORT void drawWithRect(const NSAttributedString* string, NSRect rect, NSStringDrawingOptions options,
    NSStringDrawingContext* context = nullptr);
/// The same for a string that has the same attributes throughout; null for none.
KORVID_EXPORT void drawWithRect(const NSString& string, NSRect rect, NSStringDrawingOptions options,
    RetainPtr<NSDictionary> attributes, NSStringDrawingContext* context = nullptr);

} // namespace NSExtendedStringDrawing
