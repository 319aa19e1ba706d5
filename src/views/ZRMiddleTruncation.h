#pragma once

#include <Foundation/NSAttributedString.h>

/// The width of a line as a text field's cell measures it.
double ZRLineWidth(const NSString& text, RetainPtr<NSDictionary> attributes);

/// How lines of a text get narrower as it loses code units. Lengths in points.
struct ZRNarrowing {
    double em = 0;   ///< the font's size
    double kern = 0; ///< after each character
};

/// A line that is wider than `width`, shortened in its middle by this rule: "…" takes the place of the two
/// code units that begin at half of the length. As long as the result is too wide and has more than two
/// units, the same is done again, where the ellipsis is one of the two. A line of one or two units is
/// returned as it is.
NSString ZRTruncatedInMiddle(const NSString& text, double width, const RetainPtr<NSDictionary>& attributes,
    const ZRNarrowing& narrowing); // exported for the tests
