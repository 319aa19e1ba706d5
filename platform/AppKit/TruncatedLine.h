#pragma once

#include <AppKit/NSParagraphStyle.h>
#include <CoreText/CTLine.h>
#include <Foundation/NSRange.h>

/// A part of a string, which is wider than `width`, as a line that loses as few characters as it takes to
/// fit: at its beginning, end or middle, as one of the truncating modes says. An ellipsis takes their place,
/// with the attributes of the character that it follows, at the beginning of that behind it. It is drawn also
/// where it does not fit itself.
RetainPtr<const CTLine> truncatedLine(
    const NSAttributedString& string, NSRange range, double width, NSLineBreakMode mode);
