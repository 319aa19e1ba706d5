#pragma once

#include <CoreGraphics/CGAffineTransform.h>
#include <CoreGraphics/CGBlendMode.h>
#include <CoreGraphics/CGColor.h>
#include <CoreGraphics/CGColorSpace.h>
#include <CoreGraphics/CGGeometry.h>
#include <CoreGraphics/CGGradient.h>
#include <CoreGraphics/CGImage.h>
#include <CoreGraphics/CGPath.h>
#include <Foundation/NSObjCRuntime.h>
#include <Foundation/RetainPtr.h>

#include <cstddef>
#include <cstdint>

/// A place to draw: pixels, a current path and a stack of graphics states.
///
/// Lengths are in user space, which the current transformation matrix (CTM) maps to base space: origin at
/// the bottom left of the pixels, y upward, one unit per pixel. Shapes are antialiased; every paint acts
/// within the shape's coverage and the clip: result = lerp(destination, mode(source, destination), coverage).
///
/// A context may be used on any thread, by one thread at a time; retaining and releasing are safe anywhere.
/// Every function takes a null context and does nothing (a query answers an empty value, the identity or
/// `CGRectNull`). A shape with a coordinate that is not a number is not drawn; coordinates further than four
/// million pixels from the origin are drawn as if they lay there.
struct CGContext;
using CGContextRef = CGContext*;

/// How `CGContextDrawPath` paints the current path.
enum CGPathDrawingMode : std::int32_t {
    kCGPathFill = 0,   ///< fills by the winding rule
    kCGPathEOFill = 1, ///< fills by the even-odd rule
    kCGPathStroke = 2,
    kCGPathFillStroke = 3,   ///< fills by the winding rule, then strokes
    kCGPathEOFillStroke = 4, ///< fills by the even-odd rule, then strokes
};

/// How images are resampled when they are not drawn pixel on pixel.
enum CGInterpolationQuality : std::int32_t {
    kCGInterpolationDefault = 0, ///< as high
    kCGInterpolationNone = 1,    ///< the nearest pixel
    kCGInterpolationLow = 2,     ///< bilinear
    kCGInterpolationHigh = 3,    ///< bilinear, and the average of all covered pixels where the image shrinks
    kCGInterpolationMedium = 4,  ///< as high
};

extern "C" {

/// Takes one more reference and returns `context`.
KORVID_EXPORT CGContextRef CGContextRetain(CGContextRef context);
/// Gives up one reference; the last one destroys the context.
KORVID_EXPORT void CGContextRelease(CGContextRef context);

// The stack of graphics states. A state is all of: CTM, clip, colours, alpha, blend mode, shadow, line
// attributes, antialiasing and interpolation. The current path, the text matrix and the text position are not
// part of it: saving and restoring leave them alone.

/// Pushes a copy of the graphics state.
KORVID_EXPORT void CGContextSaveGState(CGContextRef context);
/// Returns to the state last saved. Without one: logged, nothing changes.
KORVID_EXPORT void CGContextRestoreGState(CGContextRef context);

// The transform. Each call puts its change before what is there: it acts on user space.

/// Moves the origin of user space.
KORVID_EXPORT void CGContextTranslateCTM(CGContextRef context, CGFloat tx, CGFloat ty);
/// Multiplies the unit lengths of user space; a negative factor flips. While a factor is 0 nothing is drawn.
KORVID_EXPORT void CGContextScaleCTM(CGContextRef context, CGFloat sx, CGFloat sy);
/// Turns user space by `angle` radians, from +x towards +y.
KORVID_EXPORT void CGContextRotateCTM(CGContextRef context, CGFloat angle);
/// Puts `transform` before the CTM.
KORVID_EXPORT void CGContextConcatCTM(CGContextRef context, CGAffineTransform transform);
/// From user space to base space. The identity in a new context.
KORVID_EXPORT CGAffineTransform CGContextGetCTM(CGContextRef context);
/// From user space to device space, which in a bitmap context counts pixels from the top left corner, y
/// downward: in a new context of height 100, (0, 0) becomes (0, 100). The CTM, in contrast, leads to base
/// space, y upward. The identity for a null context.
KORVID_EXPORT CGAffineTransform CGContextGetUserSpaceToDeviceSpaceTransform(CGContextRef context);
KORVID_EXPORT CGPoint CGContextConvertPointToDeviceSpace(CGContextRef context, CGPoint point);
/// A CTM without inverse leaves the point as it is; so do the other conversions to user space.
KORVID_EXPORT CGPoint CGContextConvertPointToUserSpace(CGContextRef context, CGPoint point);
/// Converts width and height as a vector: nothing is added, signs may change.
KORVID_EXPORT CGSize CGContextConvertSizeToDeviceSpace(CGContextRef context, CGSize size);
KORVID_EXPORT CGSize CGContextConvertSizeToUserSpace(CGContextRef context, CGSize size);
/// The smallest upright rectangle around the converted one.
KORVID_EXPORT CGRect CGContextConvertRectToDeviceSpace(CGContextRef context, CGRect rect);
KORVID_EXPORT CGRect CGContextConvertRectToUserSpace(CGContextRef context, CGRect rect);

// The current path. Points are transformed by the CTM of the moment: a later change of the CTM does not move
// them. The elements are those of the CGPath function of the same name.

/// Drops the current path.
KORVID_EXPORT void CGContextBeginPath(CGContextRef context);
/// Starts a subpath.
KORVID_EXPORT void CGContextMoveToPoint(CGContextRef context, CGFloat x, CGFloat y);
/// Without a current point nothing is added (logged); so it is with the curves.
KORVID_EXPORT void CGContextAddLineToPoint(CGContextRef context, CGFloat x, CGFloat y);
KORVID_EXPORT void CGContextAddCurveToPoint(
    CGContextRef context, CGFloat cp1x, CGFloat cp1y, CGFloat cp2x, CGFloat cp2y, CGFloat x, CGFloat y);
KORVID_EXPORT void CGContextAddQuadCurveToPoint(
    CGContextRef context, CGFloat cpx, CGFloat cpy, CGFloat x, CGFloat y);
/// Draws a line back to the start of the subpath, where the current point then is.
KORVID_EXPORT void CGContextClosePath(CGContextRef context);
KORVID_EXPORT void CGContextAddRect(CGContextRef context, CGRect rect);
KORVID_EXPORT void CGContextAddRects(CGContextRef context, const CGRect* rects, std::size_t count);
/// Starts a subpath at the first point and draws lines through the others.
KORVID_EXPORT void CGContextAddLines(CGContextRef context, const CGPoint* points, std::size_t count);
KORVID_EXPORT void CGContextAddEllipseInRect(CGContextRef context, CGRect rect);
/// An arc around (x, y), joined by a line to the current point where there is one. Angles in radians;
/// a `clockwise` other than 0 means decreasing angle in user space.
KORVID_EXPORT void CGContextAddArc(CGContextRef context, CGFloat x, CGFloat y, CGFloat radius,
    CGFloat startAngle, CGFloat endAngle, int clockwise);
/// A line towards (x1, y1), rounded there by an arc that ends on the line from (x1, y1) to (x2, y2).
KORVID_EXPORT void CGContextAddArcToPoint(
    CGContextRef context, CGFloat x1, CGFloat y1, CGFloat x2, CGFloat y2, CGFloat radius);
/// Appends a path; null adds nothing.
KORVID_EXPORT void CGContextAddPath(CGContextRef context, CGPathRef path);
/// A copy of the current path in user space, the caller's to release. Null when the path is empty.
KORVID_EXPORT CGPathRef CGContextCopyPath(CGContextRef context);
/// The smallest upright rectangle in user space around all points, control points included;
/// `CGRectNull` when the path is empty.
KORVID_EXPORT CGRect CGContextGetPathBoundingBox(CGContextRef context);
/// In user space; (0, 0) when the path is empty.
KORVID_EXPORT CGPoint CGContextGetPathCurrentPoint(CGContextRef context);
KORVID_EXPORT bool CGContextIsPathEmpty(CGContextRef context);

// Painting. Whatever paints the current path leaves it empty.

/// Paints the current path. A value that is no mode paints nothing.
KORVID_EXPORT void CGContextDrawPath(CGContextRef context, CGPathDrawingMode mode);
/// Fills by the winding rule. Open subpaths are filled as if closed.
KORVID_EXPORT void CGContextFillPath(CGContextRef context);
/// Fills by the even-odd rule.
KORVID_EXPORT void CGContextEOFillPath(CGContextRef context);
/// Strokes with the line attributes; the pen is shaped by the CTM of now.
KORVID_EXPORT void CGContextStrokePath(CGContextRef context);
/// Fills a rectangle. Empties the current path, as do the five that follow.
KORVID_EXPORT void CGContextFillRect(CGContextRef context, CGRect rect);
/// Fills the union of the rectangles once: where two overlap, a translucent colour is not doubled.
KORVID_EXPORT void CGContextFillRects(CGContextRef context, const CGRect* rects, std::size_t count);
KORVID_EXPORT void CGContextStrokeRect(CGContextRef context, CGRect rect);
/// Strokes with `width`, as if set by `CGContextSetLineWidth`; the line width of the state stays.
KORVID_EXPORT void CGContextStrokeRectWithWidth(CGContextRef context, CGRect rect, CGFloat width);
KORVID_EXPORT void CGContextFillEllipseInRect(CGContextRef context, CGRect rect);
KORVID_EXPORT void CGContextStrokeEllipseInRect(CGContextRef context, CGRect rect);
/// Makes a rectangle transparent (black where the pixels have no alpha), whatever the blend mode and alpha;
/// the clip holds, the current path stays.
KORVID_EXPORT void CGContextClearRect(CGContextRef context, CGRect rect);
/// Draws an image into a rectangle, its first row along the edge of greatest y, with the state's alpha, blend
/// mode and interpolation. An image mask or alpha-only image is painted in the fill colour, the blend mode
/// acting as far as it lets paint through. But in an alpha-only context an alpha-only image is the source
/// itself, multiplied by the fill colour's alpha, and the blend mode acts on all of the rectangle. The
/// rectangle is standardized first. Images of every size draw at every scale, anywhere in the context, within
/// 3 steps of 255. Null or an empty rectangle draws nothing.
KORVID_EXPORT void CGContextDrawImage(CGContextRef context, CGRect rect, CGImageRef image);
/// Paints all of the clip with a gradient along the line from `startPoint` to `endPoint`: each point takes
/// the colour of the nearest point of the line, and `options` say what is painted beyond its ends. Where the
/// two points are the same that is the last colour, or the first if the gradient goes on only before its
/// start. Alpha and blend mode of the state hold; what the gradient does not reach is left alone in every
/// mode. No gradient and points that are not finite draw nothing. The current path stays.
KORVID_EXPORT void CGContextDrawLinearGradient(CGContextRef context, CGGradientRef gradient,
    CGPoint startPoint, CGPoint endPoint, CGGradientDrawingOptions options);
/// The same with a gradient along the circles between two circles, which move and grow evenly from one to the
/// other. Of several circles through a point the last one counts, and beyond the ends they go on until they
/// have no radius. Two equal circles, a negative radius and numbers that are not finite draw nothing.
KORVID_EXPORT void CGContextDrawRadialGradient(CGContextRef context, CGGradientRef gradient,
    CGPoint startCenter, CGFloat startRadius, CGPoint endCenter, CGFloat endRadius,
    CGGradientDrawingOptions options);

// The clip starts as the whole of the pixels and only ever shrinks; coverages of antialiased clips multiply.
// It stays where it was set, whatever happens to the CTM afterwards.

/// Clips to the inside of the current path by the winding rule and empties the path. An empty path leaves the
/// clip as it is; a path without area clips everything away.
KORVID_EXPORT void CGContextClip(CGContextRef context);
/// The same by the even-odd rule.
KORVID_EXPORT void CGContextEOClip(CGContextRef context);
/// Clips to a rectangle and empties the current path. A rectangle without area clips everything away.
KORVID_EXPORT void CGContextClipToRect(CGContextRef context, CGRect rect);
/// Clips to the union of the rectangles and empties the current path. No rectangles: the clip stays.
KORVID_EXPORT void CGContextClipToRects(CGContextRef context, const CGRect* rects, std::size_t count);
/// Clips to a rectangle and multiplies the clip by an image stretched over it, first row along the edge of
/// greatest y. An image mask lets paint through where its samples are 0, a gray image in proportion to its
/// value, an alpha-only image in proportion to its alpha. Null clips to the rectangle alone; an image of
/// another kind is logged and changes nothing.
KORVID_EXPORT void CGContextClipToMask(CGContextRef context, CGRect rect, CGImageRef mask);
/// The smallest upright rectangle in user space around the pixels that the clip may leave open;
/// `CGRectNull` when there are none.
KORVID_EXPORT CGRect CGContextGetClipBoundingBox(CGContextRef context);

// Line attributes.

/// In user space units, default 1. A negative width is ignored: the line width stays as it is. Lines of width
/// 0, an infinite width or NaN are not drawn.
KORVID_EXPORT void CGContextSetLineWidth(CGContextRef context, CGFloat width);
/// Default butt.
KORVID_EXPORT void CGContextSetLineCap(CGContextRef context, CGLineCap cap);
/// Default miter.
KORVID_EXPORT void CGContextSetLineJoin(CGContextRef context, CGLineJoin join);
/// The ratio of miter length to line width beyond which a join is cut off. Default 10; below 1 and NaN count
/// as 1. Where the CTM leans or stretches, the angle counts as it lies on the pixels.
KORVID_EXPORT void CGContextSetMiterLimit(CGContextRef context, CGFloat limit);
/// Lengths of dashes and gaps in turn, starting `phase` units into the pattern. A count of 0, a negative
/// length, a length or phase that is not finite, or lengths that are all 0, mean a solid line. Lengths above
/// 1e15 count as 1e15. A stroke that would have more than 100,000 dashes is drawn as a solid line. Copied.
KORVID_EXPORT void CGContextSetLineDash(
    CGContextRef context, CGFloat phase, const CGFloat* lengths, std::size_t count);

// Colours. They start as opaque black in the device gray space. Components are kept as given and brought into
// the range 0 to 1 when they are drawn; NaN is drawn as 0. An alpha-only context takes the alpha alone.

/// Sets the space of the components that follow, and the colour to the space's default: opaque black, or
/// nothing in a pattern space. Null changes nothing.
KORVID_EXPORT void CGContextSetFillColorSpace(CGContextRef context, CGColorSpaceRef space);
KORVID_EXPORT void CGContextSetStrokeColorSpace(CGContextRef context, CGColorSpaceRef space);
/// One value per component of the colour space, then alpha. Null changes nothing; so does a pattern space.
KORVID_EXPORT void CGContextSetFillColor(CGContextRef context, const CGFloat* components);
KORVID_EXPORT void CGContextSetStrokeColor(CGContextRef context, const CGFloat* components);
/// Sets space and colour. Retains the colour; null changes nothing.
KORVID_EXPORT void CGContextSetFillColorWithColor(CGContextRef context, CGColorRef color);
KORVID_EXPORT void CGContextSetStrokeColorWithColor(CGContextRef context, CGColorRef color);
/// Sets the space to device RGB.
KORVID_EXPORT void CGContextSetRGBFillColor(
    CGContextRef context, CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha);
KORVID_EXPORT void CGContextSetRGBStrokeColor(
    CGContextRef context, CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha);
/// Sets the space to device gray.
KORVID_EXPORT void CGContextSetGrayFillColor(CGContextRef context, CGFloat gray, CGFloat alpha);
KORVID_EXPORT void CGContextSetGrayStrokeColor(CGContextRef context, CGFloat gray, CGFloat alpha);

// How paint meets pixels.

/// Multiplies the alpha of every paint. Default 1; brought into 0 to 1, NaN counts as 0.
KORVID_EXPORT void CGContextSetAlpha(CGContextRef context, CGFloat alpha);
/// Default normal. A mode that is not offered is logged and changes nothing.
KORVID_EXPORT void CGContextSetBlendMode(CGContextRef context, CGBlendMode mode);
/// Default true. Without antialiasing a pixel is painted where the shape contains its centre; a centre
/// exactly on an edge counts as inside at the left and top edges. The outline of a stroke is rounded to 1/256
/// pixel before.
KORVID_EXPORT void CGContextSetShouldAntialias(CGContextRef context, bool shouldAntialias);
/// A value that is no quality counts as the default.
KORVID_EXPORT void CGContextSetInterpolationQuality(CGContextRef context, CGInterpolationQuality quality);
KORVID_EXPORT CGInterpolationQuality CGContextGetInterpolationQuality(CGContextRef context);

// Shadows. While one is set, whatever is painted casts it: fills, strokes, images, text. It is painted first,
// within the clip, in the blend mode in force, and is as dense as what casts it has alpha. A path that is
// filled and stroked casts two: that of the stroke falls on the fill. Gradients and CGContextClearRect cast
// none.

/// A shadow in black at an alpha of 1/3, until the state is restored or another is set. Default: none.
///
/// Offset and blur count in base space, whatever the CTM: `offset.height` is upward, one unit is a pixel. The
/// offset is rounded to whole pixels. The blur is that of a Gaussian with a standard deviation of blur / 2,
/// cut off at the blur in whole pixels, rounded up: a blur of 5 reaches exactly 5 pixels beyond each side. A
/// blur of 0, less, or NaN gives hard edges, one above 500 counts as 500; an offset that is NaN counts as 0.
///
/// Differs: an offset of (0, 0) with a blur of 0 turns the shadow off. Apple names only a null or transparent
/// colour for that; what it would paint lies exactly under the shape.
KORVID_EXPORT void CGContextSetShadow(CGContextRef context, CGSize offset, CGFloat blur);
/// The same in another colour, which is retained no longer than the call. Null or a transparent colour turns
/// the shadow off; nothing else does.
KORVID_EXPORT void CGContextSetShadowWithColor(
    CGContextRef context, CGSize offset, CGFloat blur, CGColorRef color);

// Text. Lines are drawn by CTLineDraw, in <CoreText/CTLine.h>.

/// From text space, where a line starts at the origin and y is upward, to user space; the text position is
/// its translation. The identity in a new context. Not part of the graphics state.
KORVID_EXPORT void CGContextSetTextMatrix(CGContextRef context, CGAffineTransform matrix);
KORVID_EXPORT CGAffineTransform CGContextGetTextMatrix(CGContextRef context);
/// Where in user space the next line starts: replaces the translation of the text matrix.
KORVID_EXPORT void CGContextSetTextPosition(CGContextRef context, CGFloat x, CGFloat y);
KORVID_EXPORT CGPoint CGContextGetTextPosition(CGContextRef context);

/// Every drawing function leaves its result in the pixels before it returns: these two have nothing to do.
KORVID_EXPORT void CGContextFlush(CGContextRef context);
KORVID_EXPORT void CGContextSynchronize(CGContextRef context);

} // extern "C"

template <> struct RetainTraits<CGContext> {
    static void retain(CGContext* context) noexcept { CGContextRetain(context); }
    static void release(CGContext* context) noexcept { CGContextRelease(context); }
};
