#pragma once

#include "CoreText/TextBreaks.h"

#include <CoreText/CTLine.h>
#include <Foundation/NSRange.h>

/// Breaks a paragraph into lines of a limited width.
///
///     LineBreaker breaker(text, paragraph);
///     for (NSUInteger start = paragraph.location; start < NSMaxRange(paragraph);) {
///         const NSUInteger end = breaker.lineEnd(start, width, TextBreak::Line);
///         draw(breaker.line(start, end));
///         start = end;
///     }
///
/// Indexes count the code units of the whole string.
class LineBreaker {
public:
    /// The string is borrowed. The range holds no end of a paragraph.
    LineBreaker(const NSAttributedString& string, NSRange paragraph);

    /// The break before the unit at an index of the paragraph, and at its end.
    TextBreak breakBefore(NSUInteger index) const { return _breaks[index - _paragraph.location]; }

    /// Where the line ends that begins at `start`: at the last break of that kind at which the text is at
    /// most `width` points wide, without the blanks at its end. Without one, at the last such end of a
    /// character with its marks, or, when there is none either, at the first one: every line has at least one
    /// character.
    NSUInteger lineEnd(NSUInteger start, double width, TextBreak kind) const;

    /// The units from `start` to `end` without the blanks at their end.
    NSRange withoutBlanks(NSUInteger start, NSUInteger end) const;

private:
    NSUInteger nextBreak(NSUInteger index, TextBreak kind) const;
    NSUInteger lastFitting(NSUInteger start, double width, TextBreak kind) const;
    double width(NSUInteger start, NSUInteger end) const;

    const NSAttributedString& _string;
    NSRange _paragraph;
    std::vector<TextBreak> _breaks;
};
