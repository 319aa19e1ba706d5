#pragma once

#include <CoreGraphics/CGContext.h>
#include <CoreText/CTStringAttributes.h>
#include <Foundation/NSAttributedString.h>

/// The kind of a line's bounds, as bits.
enum CTLineBoundsOptions : std::uint32_t {
    kCTLineBoundsExcludeTypographicLeading = 1 << 0, ///< from descent to ascent, without the leading
    kCTLineBoundsUseGlyphPathBounds = 1 << 3,        ///< the exact bounds of the ink
    /// From descent to ascent, and as wide as the line looks: the typographic width, as the supported fonts
    /// have no data on optical margins.
    kCTLineBoundsUseOpticalBounds = 1 << 4,
};

/// One line of text, laid out: its glyphs and their positions.
///
/// Lengths are in points, in text space: the line starts at the origin and runs along its baseline, the x
/// axis, to the right; y is upward. Right-to-left text is reordered (Unicode's bidirectional algorithm). The
/// text is composed (Unicode's form C) before glyphs are chosen. Characters that a face lacks come from
/// fallback fonts; characters that no font has are drawn as the face's sign for a missing glyph.
/// A letter takes up to 64 combining marks and joiners; further ones are left out, as the time of a layout
/// grows with the square of their number.
///
/// Layouts are cached: laying out and drawing the same text again costs little. Immutable: a line may be laid
/// out on one thread and drawn on others.
class CTLine;
/// A pointer to a line.
using CTLineRef = const CTLine*;

extern "C" {

/// A line of the text of `string` with the attributes of CTStringAttributes.h; the caller owns it: `adopt`
/// it. Line breaks and tabs in the text start no line and leave no ink. An empty text gives a line without
/// glyphs, width and height; null gives null.
[[nodiscard]] KORVID_EXPORT CTLineRef CTLineCreateWithAttributedString(CFAttributedStringRef string);

/// The width of the line, to the end of its last advance: kerning after the last character and blanks at
/// either end count. Writes the largest ascent, descent (counted downward) and leading of the fonts that
/// glyphs were taken from; the pointers may be null. All are 0 for null and for an empty line.
KORVID_EXPORT double CTLineGetTypographicBounds(
    CTLineRef line, CGFloat* ascent, CGFloat* descent, CGFloat* leading);

/// The bounds of the line, its start at the origin. Of several options, the ink goes first, then the optical
/// bounds. Without any: from descent and leading to ascent. A line without ink has empty glyph path bounds at
/// the origin. The null rectangle for null.
KORVID_EXPORT CGRect CTLineGetBoundsWithOptions(CTLineRef line, CTLineBoundsOptions options);

/// The exact bounds of the ink that CTLineDraw draws, in user space: mapped by the text matrix, which
/// includes the text position. A line without ink has empty bounds at the text position. A null context
/// counts as a new one. The null rectangle for a null line.
KORVID_EXPORT CGRect CTLineGetImageBounds(CTLineRef line, CGContextRef context);

/// Draws the line with its start at the text position, mapped by the text matrix, with the graphics state's
/// clip, alpha, blend mode and shadow. Each part is filled in its own colour; colour glyphs (emoji) show
/// their own. Leaves the current path, the colours and the text position as they are.
KORVID_EXPORT void CTLineDraw(CTLineRef line, CGContextRef context);

} // extern "C"

template <> struct RetainTraits<CTLine> {
    KORVID_EXPORT static void retain(CTLine* line) noexcept;
    KORVID_EXPORT static void release(CTLine* line) noexcept;
};
