#pragma once

#include <CoreGraphics/CGContext.h>
#include <Foundation/NSString.h>

#include <cstdint>

/// The corners of a rectangle, to be combined into a corner mask. Where y grows upward, the greatest y is the
/// top.
enum ZRCorner : std::uint32_t {
    kZRCornerMinXMaxY = 1,
    kZRCornerMaxXMaxY = 2,
    kZRCornerMaxXMinY = 4,
    kZRCornerMinXMinY = 8,
    kZRCornerAll = 15,
};

extern "C" {

/// A new path of one closed rectangle, of which the corners in `cornerMask` are rounded; the caller releases
/// it. Never null. Any thread.
///
/// The walk begins at the corner of least x and y, goes up the side of least x, along the side of greatest y,
/// down the side of greatest x and back. A rounded corner is a line to where its arc begins and the arc, as
/// CGPathAddArcToPoint adds them; the first one begins with a move instead. Bits that stand for no corner
/// are ignored.
///
///     const auto tab = adopt(ZRCreateRoundedRectPath(kZRCornerMinXMaxY | kZRCornerMaxXMaxY, bounds, 6));
///
/// A radius beyond half the longer side counts as that half. Half the shorter side is no limit: with more
/// than that, the arcs of neighbouring corners reach past each other and the sides between them run
/// backwards. A radius of 0, less, or NaN rounds nothing.
///
/// Sizes are taken as they are, not standardized: a negative one swaps what is least and greatest. A
/// rectangle with a corner that is NaN or infinite, such as the null rectangle, gives an empty path.
[[nodiscard]] KORVID_EXPORT CGPathRef ZRCreateRoundedRectPath(
    std::uint32_t cornerMask, CGRect rect, CGFloat radius);

/// Draws a badge, such as a count of new messages, around the origin of user space: white bold text on a pill
/// with a white outline, a shadow and a little sheen.
///
///     CGContextTranslateCTM(context, NSMaxX(icon), NSMaxY(icon));
///     ZRDrawBadge(context, color, "12", 11, 1);
///
/// All measures are multiplied by `scale`, which is 1 for points of user space; in each call the shadow
/// counts it as pixels per point, so give the backing scale where user space counts pixels. In points, the
/// badge is fontSize + 10 high and as wide as the ink of the text and 12 more, but not less wide than high;
/// its corners have a radius of 12, or half the width if that is less; its outline is 2 wide and half of it
/// lies outside. The shadow of CGContextSetShadow falls 5 down with a blur of 4. The half of less y darkens
/// towards its edge by up to 20 % black, and the other one brightens from 10 to 40 % white. The text is
/// Helvetica Bold, its ink in the middle to the nearest whole point, and goes through the context's text
/// matrix.
///
/// From then on the device RGB space is that of the fill and stroke colours, which are opaque black; so it
/// is designed. The current path is dropped, all else is as before.
///
/// A null text, of which no line can be made, is logged ("ZRDrawBadge() failed") and nothing is drawn; the
/// graphics state then stays saved once, with the scale applied: so it is designed, and for the caller to
/// restore. An empty text gives an empty badge. A null colour counts as black. A font size that is infinite
/// or NaN counts as 12; one that is 0 or negative gives letters of 12, and the height of the formula. A scale
/// of 0, infinity or NaN draws nothing; a negative one turns the badge upside down, with a shadow that is not
/// blurred. Any thread.
KORVID_EXPORT void ZRDrawBadge(
    CGContextRef context, CGColorRef fillColor, const NSString& text, CGFloat fontSize, CGFloat scale);

} // extern "C"
