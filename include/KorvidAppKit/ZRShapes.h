#pragma once

#include <CoreGraphics/CGContext.h>
#ifdef __cplusplus
#include <Foundation/NSString.h>
#endif

/// The corners of a rectangle, combined into a corner mask. Where y grows upward, the greatest y is the top.
typedef enum KORVID_ENUM(ZRCorner, uint32_t) {
    kZRCornerMinXMaxY = 1, ///< top left
    kZRCornerMaxXMaxY = 2, ///< top right
    kZRCornerMaxXMinY = 4, ///< bottom right
    kZRCornerMinXMinY = 8, ///< bottom left
    kZRCornerAll = 15,     ///< all four
} ZRCorner;

KORVID_EXTERN_C_BEGIN

/// A new immutable path of one closed rectangle with the corners in `cornerMask` rounded; the caller releases
/// it. Never null. Any thread.
///
/// The path starts at the corner of least x and y and runs up the side of least x, along the side of greatest
/// y, down the side of greatest x and back. A rounded corner is a line to the start of its arc and the arc,
/// as CGPathAddArcToPoint adds them; the first corner starts with a move instead of the line. Bits that stand
/// for no corner are ignored.
///
///     const auto tab = adopt(ZRCreateRoundedRectPath(kZRCornerMinXMaxY | kZRCornerMaxXMaxY, bounds, 6));
///
/// The radius is limited to half the longer side, not to half the shorter one: above that, the arcs of
/// neighbouring corners reach past each other and the side between them runs backwards. A radius of 0, a
/// negative one and NaN round nothing.
///
/// The rectangle is not standardized: a negative size swaps the least and the greatest coordinate. A
/// rectangle with a corner that is NaN or infinite, such as the null rectangle, gives an empty path.
KORVID_NODISCARD KORVID_EXPORT CGPathRef ZRCreateRoundedRectPath(
    uint32_t cornerMask, CGRect rect, CGFloat radius);

#ifdef __cplusplus
/// Draws a badge, such as a count of new messages, centred on the origin of user space: white bold text on a
/// pill with a white outline, a shadow and a slight sheen.
///
///     CGContextTranslateCTM(context, NSMaxX(icon), NSMaxY(icon));
///     ZRDrawBadge(context, color, "12", 11, 1);
///
/// All lengths are multiplied by `scale`: 1 where user space counts points. The shadow's offset and blur are
/// in pixels, `scale` of them per point: pass the backing scale where user space counts pixels. In points,
/// the badge is fontSize + 10 high and 12 wider than the text's ink, at least as wide as high; its corners
/// have a radius of 12, or of half the width if that is less; its outline is 2 wide and lies half outside.
/// The shadow, in CGContextSetShadow's colour, falls 5 down with a blur of 4. The half of lower y darkens
/// towards its edge by up to 20 % black, the other half brightens from 10 to 40 % white. The text is in
/// Helvetica Bold or the face that CTFontCreateWithName takes for it, its ink centred to the nearest whole
/// point; the context's text matrix applies.
///
/// Afterwards the fill and stroke colour spaces are device RGB and both colours opaque black, for what the
/// caller draws next; the current path is empty; the rest of the graphics state is restored.
///
/// A null string draws nothing and logs "ZRDrawBadge() failed"; the graphics state then stays saved once,
/// with the scale applied, and the caller restores it. An empty string draws a badge without text. A null
/// colour counts as black. A font size that is infinite or NaN counts as 12; one of 0 or less sets the text
/// at 12 points and enters the height as it is. A scale of 0, infinity or NaN draws nothing; a negative one
/// turns the badge upside down, without a blur of its shadow. Any thread. For C++.
KORVID_EXPORT void ZRDrawBadge(
    CGContextRef context, CGColorRef fillColor, const NSString& text, CGFloat fontSize, CGFloat scale);
#endif

KORVID_EXTERN_C_END
