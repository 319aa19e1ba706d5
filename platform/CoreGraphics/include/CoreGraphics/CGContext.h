#pragma once

#include <CoreGraphics/CGAffineTransform.h>
#include <CoreGraphics/CGBlendMode.h>
#include <CoreGraphics/CGColor.h>
#include <CoreGraphics/CGColorSpace.h>
#include <CoreGraphics/CGGeometry.h>
#include <CoreGraphics/CGGradient.h>
#include <CoreGraphics/CGImage.h>
#include <CoreGraphics/CGPath.h>

/// A drawing destination: a bitmap, a current path and a stack of graphics states.
///
/// Lengths are in user space, which the current transformation matrix (CTM) maps to base space: origin at
/// the bottom left of the bitmap, y upward, one unit per pixel. Shapes are antialiased; every paint is
/// limited to the shape's coverage times the clip's: result = lerp(destination, mode(source, destination),
/// coverage).
///
/// A context may be used on any thread, by one thread at a time; retaining and releasing are safe anywhere.
/// Every function accepts a null context and does nothing (a query returns an empty value, the identity or
/// `CGRectNull`). A shape with a NaN coordinate is not drawn. Coordinates beyond four million pixels from the
/// origin are clamped to that distance when drawn.
struct CGContext;
/// A pointer to a context.
typedef struct CGContext* CGContextRef;

/// How `CGContextDrawPath` paints the current path. Strokes use the line attributes.
typedef enum KORVID_ENUM(CGPathDrawingMode, int32_t) {
    kCGPathFill = 0,         ///< fills by the winding rule
    kCGPathEOFill = 1,       ///< fills by the even-odd rule
    kCGPathStroke = 2,       ///< strokes
    kCGPathFillStroke = 3,   ///< fills by the winding rule, then strokes
    kCGPathEOFillStroke = 4, ///< fills by the even-odd rule, then strokes
} CGPathDrawingMode;

/// How images are resampled when they are drawn scaled, rotated or not pixel-aligned.
typedef enum KORVID_ENUM(CGInterpolationQuality, int32_t) {
    kCGInterpolationDefault = 0, ///< the same as high
    kCGInterpolationNone = 1,    ///< the nearest pixel
    kCGInterpolationLow = 2,     ///< bilinear
    kCGInterpolationHigh = 3,    ///< bilinear, and the average of all covered pixels where the image shrinks
    kCGInterpolationMedium = 4,  ///< the same as high
} CGInterpolationQuality;

KORVID_EXTERN_C_BEGIN

/// Adds a reference and returns `context`.
KORVID_EXPORT CGContextRef CGContextRetain(CGContextRef context);
/// Removes a reference; removing the last one destroys the context.
KORVID_EXPORT void CGContextRelease(CGContextRef context);

// The stack of graphics states. A state is all of: CTM, clip, colours, alpha, blend mode, shadow, line
// attributes, antialiasing, font quantization and interpolation. The current path, the text matrix and the
// text position are not part of it: saving and restoring do not change them.

/// Pushes a copy of the graphics state.
KORVID_EXPORT void CGContextSaveGState(CGContextRef context);
/// Pops the graphics state that was saved last. Without a saved state the call is logged and changes nothing.
/// Transparency layers that were begun since the state was saved are ended first; that is logged, too.
KORVID_EXPORT void CGContextRestoreGState(CGContextRef context);

// The transform. Each call prepends its transform to the CTM: points of the new user space go through the new
// transform first, then through the previous CTM.

/// Moves the origin of user space to (tx, ty), in units of user space.
KORVID_EXPORT void CGContextTranslateCTM(CGContextRef context, CGFloat tx, CGFloat ty);
/// Multiplies the unit lengths of user space; a negative factor flips. While a factor is 0 nothing is drawn.
KORVID_EXPORT void CGContextScaleCTM(CGContextRef context, CGFloat sx, CGFloat sy);
/// Rotates user space by `angle` radians, from +x towards +y.
KORVID_EXPORT void CGContextRotateCTM(CGContextRef context, CGFloat angle);
/// Prepends `transform` to the CTM.
KORVID_EXPORT void CGContextConcatCTM(CGContextRef context, CGAffineTransform transform);
/// The CTM, which maps user space to base space. The identity in a new context and for a null context.
KORVID_EXPORT CGAffineTransform CGContextGetCTM(CGContextRef context);
/// Maps user space to device space, which in a bitmap context has its origin at the top left corner, y
/// downward, one unit per pixel: in a new context of height 100, (0, 0) maps to (0, 100). The CTM, in
/// contrast, maps to base space, y upward. The identity for a null context.
KORVID_EXPORT CGAffineTransform CGContextGetUserSpaceToDeviceSpaceTransform(CGContextRef context);
/// Maps a point from user space to device space.
KORVID_EXPORT CGPoint CGContextConvertPointToDeviceSpace(CGContextRef context, CGPoint point);
/// Maps a point from device space to user space. When the CTM has no inverse, this and the other conversions
/// to user space return their argument unchanged.
KORVID_EXPORT CGPoint CGContextConvertPointToUserSpace(CGContextRef context, CGPoint point);
/// Converts a size as a vector: the translation is not applied, and signs may change.
KORVID_EXPORT CGSize CGContextConvertSizeToDeviceSpace(CGContextRef context, CGSize size);
/// The inverse of `CGContextConvertSizeToDeviceSpace`.
KORVID_EXPORT CGSize CGContextConvertSizeToUserSpace(CGContextRef context, CGSize size);
/// The smallest axis-aligned rectangle in device space that contains the converted corners.
KORVID_EXPORT CGRect CGContextConvertRectToDeviceSpace(CGContextRef context, CGRect rect);
/// The smallest axis-aligned rectangle in user space that contains the converted corners.
KORVID_EXPORT CGRect CGContextConvertRectToUserSpace(CGContextRef context, CGRect rect);

// The current path. Points are transformed by the CTM when they are added: a later change of the CTM does not
// move them. Each function appends the same elements as the CGPath function of the same name, and handles
// invalid input as that one does.

/// Discards the current path and starts an empty one.
KORVID_EXPORT void CGContextBeginPath(CGContextRef context);
/// Starts a subpath at (x, y), which becomes the current point.
KORVID_EXPORT void CGContextMoveToPoint(CGContextRef context, CGFloat x, CGFloat y);
/// Appends a line from the current point to (x, y). Without a current point the call is logged and adds
/// nothing, as with the curves below.
KORVID_EXPORT void CGContextAddLineToPoint(CGContextRef context, CGFloat x, CGFloat y);
/// Appends a cubic curve from the current point to (x, y) with two control points.
KORVID_EXPORT void CGContextAddCurveToPoint(
    CGContextRef context, CGFloat cp1x, CGFloat cp1y, CGFloat cp2x, CGFloat cp2y, CGFloat x, CGFloat y);
/// Appends a quadratic curve from the current point to (x, y) with one control point.
KORVID_EXPORT void CGContextAddQuadCurveToPoint(
    CGContextRef context, CGFloat cpx, CGFloat cpy, CGFloat x, CGFloat y);
/// Appends a line back to the start of the subpath, which becomes the current point.
KORVID_EXPORT void CGContextClosePath(CGContextRef context);
/// Appends a closed rectangle. The null rectangle adds nothing.
KORVID_EXPORT void CGContextAddRect(CGContextRef context, CGRect rect);
/// Appends `count` closed rectangles in order. A null `rects` adds nothing.
KORVID_EXPORT void CGContextAddRects(CGContextRef context, const CGRect* rects, size_t count);
/// Starts a subpath at the first point and appends lines through the others. A null `points` adds nothing.
KORVID_EXPORT void CGContextAddLines(CGContextRef context, const CGPoint* points, size_t count);
/// Appends a closed ellipse that touches the sides of `rect`. The null rectangle adds nothing.
KORVID_EXPORT void CGContextAddEllipseInRect(CGContextRef context, CGRect rect);
/// Appends an arc around (x, y), connected by a line to the current point if there is one. Angles are in
/// radians; a nonzero `clockwise` means decreasing angle in user space.
KORVID_EXPORT void CGContextAddArc(CGContextRef context, CGFloat x, CGFloat y, CGFloat radius,
    CGFloat startAngle, CGFloat endAngle, int clockwise);
/// Appends a line towards (x1, y1) and an arc that rounds the corner there and ends on the line from (x1, y1)
/// to (x2, y2).
KORVID_EXPORT void CGContextAddArcToPoint(
    CGContextRef context, CGFloat x1, CGFloat y1, CGFloat x2, CGFloat y2, CGFloat radius);
/// Appends a path; null adds nothing.
KORVID_EXPORT void CGContextAddPath(CGContextRef context, CGPathRef path);
/// An immutable copy of the current path in user space, which the caller owns. Null when the path is empty.
KORVID_EXPORT CGPathRef CGContextCopyPath(CGContextRef context);
/// The smallest axis-aligned rectangle in user space that contains all points of the current path, control
/// points included; `CGRectNull` when the path is empty.
KORVID_EXPORT CGRect CGContextGetPathBoundingBox(CGContextRef context);
/// The current point in user space; (0, 0) when the path is empty.
KORVID_EXPORT CGPoint CGContextGetPathCurrentPoint(CGContextRef context);
/// True when the current path has no elements, and for a null context.
KORVID_EXPORT bool CGContextIsPathEmpty(CGContextRef context);
/// Replaces the current path by the outline of its stroke with the line attributes, dashes included, and the
/// CTM at the time of this call. Filled by the winding rule, it covers what `CGContextStrokePath` covers, so
/// a stroke can become a clip or be filled with a gradient. Curves become lines that are at most 1/50 pixel
/// from the exact outline. The path is empty afterwards where a stroke paints nothing.
KORVID_EXPORT void CGContextReplacePathWithStrokedPath(CGContextRef context);

// Painting. Functions that paint the current path also clear it.

/// Paints the current path and clears it. An invalid `mode` paints nothing, but clears the path too.
KORVID_EXPORT void CGContextDrawPath(CGContextRef context, CGPathDrawingMode mode);
/// Fills by the winding rule. Open subpaths are filled as if closed.
KORVID_EXPORT void CGContextFillPath(CGContextRef context);
/// Fills by the even-odd rule.
KORVID_EXPORT void CGContextEOFillPath(CGContextRef context);
/// Strokes with the line attributes; the pen is transformed by the CTM at the time of this call.
KORVID_EXPORT void CGContextStrokePath(CGContextRef context);
/// Fills a rectangle. This and the next five functions clear the current path.
KORVID_EXPORT void CGContextFillRect(CGContextRef context, CGRect rect);
/// Fills the union of the rectangles: a translucent colour is painted once where two of them overlap. A null
/// `rects` paints nothing.
KORVID_EXPORT void CGContextFillRects(CGContextRef context, const CGRect* rects, size_t count);
/// Strokes the outline of a rectangle with the line attributes.
KORVID_EXPORT void CGContextStrokeRect(CGContextRef context, CGRect rect);
/// Strokes the outline of a rectangle with `width`, which counts as in `CGContextSetLineWidth`. Does not
/// change the line width of the graphics state.
KORVID_EXPORT void CGContextStrokeRectWithWidth(CGContextRef context, CGRect rect, CGFloat width);
/// Fills the ellipse that touches the sides of `rect`.
KORVID_EXPORT void CGContextFillEllipseInRect(CGContextRef context, CGRect rect);
/// Strokes the ellipse that touches the sides of `rect`.
KORVID_EXPORT void CGContextStrokeEllipseInRect(CGContextRef context, CGRect rect);
/// Makes a rectangle transparent, or black in a bitmap without alpha, regardless of blend mode and alpha. The
/// clip applies; the current path does not change.
KORVID_EXPORT void CGContextClearRect(CGContextRef context, CGRect rect);
/// Draws an image into a rectangle, its first row along the edge of greatest y, with the state's alpha, blend
/// mode and interpolation. An image mask or alpha-only image is a coverage mask, through which the fill
/// colour is painted in the blend mode. Exception: in an alpha-only context an alpha-only image is the source
/// itself, multiplied by the fill colour's alpha, and the blend mode applies to the whole rectangle. The
/// rectangle is standardized first. Images of any size draw at any scale and any position in the context,
/// with an error of at most 3 of 255 levels. A null image or an empty rectangle draws nothing.
KORVID_EXPORT void CGContextDrawImage(CGContextRef context, CGRect rect, CGImageRef image);
/// Paints the whole clip with a gradient along the line from `startPoint` to `endPoint`: each point takes the
/// colour of the nearest point of the line, and `options` select whether the gradient extends beyond its
/// ends. If both points are equal, an extended gradient paints its last colour, or its first one when it
/// extends only before its start. The state's alpha and blend mode apply; pixels outside the gradient do not
/// change in any mode. A null gradient or points that are not finite draw nothing. The current path does not
/// change.
KORVID_EXPORT void CGContextDrawLinearGradient(CGContextRef context, CGGradientRef gradient,
    CGPoint startPoint, CGPoint endPoint, CGGradientDrawingOptions options);
/// Like `CGContextDrawLinearGradient`, with a gradient over a family of circles whose centre and radius are
/// interpolated linearly from the start circle to the end circle. Where several circles pass through a point,
/// the last one decides. Extended beyond the ends, the family continues until the radius is 0. Two equal
/// circles, a negative radius and numbers that are not finite draw nothing.
KORVID_EXPORT void CGContextDrawRadialGradient(CGContextRef context, CGGradientRef gradient,
    CGPoint startCenter, CGFloat startRadius, CGPoint endCenter, CGFloat endRadius,
    CGGradientDrawingOptions options);

// The clip. It starts as the whole bitmap and can only shrink until a saved state is restored; the coverage
// of antialiased clips multiplies. Later changes of the CTM do not move it.

/// Clips to the inside of the current path by the winding rule and clears the path. An empty path does not
/// change the clip; a path without area makes the clip empty.
KORVID_EXPORT void CGContextClip(CGContextRef context);
/// Like `CGContextClip`, by the even-odd rule.
KORVID_EXPORT void CGContextEOClip(CGContextRef context);
/// Clips to a rectangle and clears the current path. A rectangle without area makes the clip empty.
KORVID_EXPORT void CGContextClipToRect(CGContextRef context, CGRect rect);
/// Clips to the union of the rectangles and clears the current path. Without rectangles the clip does not
/// change.
KORVID_EXPORT void CGContextClipToRects(CGContextRef context, const CGRect* rects, size_t count);
/// Clips to a rectangle and multiplies the clip by a coverage mask from an image stretched over it, first row
/// along the edge of greatest y. Coverage is full where an image mask is 0 and none where it is 255; it is
/// the value of a gray image, and the alpha of an alpha-only image. A null `mask` clips to the rectangle
/// alone; an image of another kind is logged and changes nothing.
KORVID_EXPORT void CGContextClipToMask(CGContextRef context, CGRect rect, CGImageRef mask);
/// The smallest axis-aligned rectangle in user space that contains all pixels that the clip may leave
/// visible; `CGRectNull` when there are none.
KORVID_EXPORT CGRect CGContextGetClipBoundingBox(CGContextRef context);

// Line attributes.

/// Sets the line width in units of user space. Default 1. A negative width is ignored and the current width
/// remains. Lines of width 0, an infinite width or NaN are not drawn.
KORVID_EXPORT void CGContextSetLineWidth(CGContextRef context, CGFloat width);
/// Sets how lines end. Default butt. An invalid value is ignored.
KORVID_EXPORT void CGContextSetLineCap(CGContextRef context, CGLineCap cap);
/// Sets how lines join. Default miter. An invalid value is ignored.
KORVID_EXPORT void CGContextSetLineJoin(CGContextRef context, CGLineJoin join);
/// Sets the ratio of miter length to line width beyond which a miter join becomes a bevel. Default 10; values
/// below 1 and NaN count as 1. Under a CTM that shears or scales unevenly, the angle of the join is measured
/// in device space.
KORVID_EXPORT void CGContextSetMiterLimit(CGContextRef context, CGFloat limit);
/// Sets alternating lengths of dashes and gaps in units of user space; a line starts `phase` units into the
/// pattern. `lengths` is copied. Null `lengths`, a count of 0, a negative length, a length or phase that is
/// not finite, or lengths that are all 0 mean a solid line (the default). Lengths above 1e15 count as 1e15. A
/// stroke that would have more than 100,000 dashes is drawn as a solid line.
KORVID_EXPORT void CGContextSetLineDash(
    CGContextRef context, CGFloat phase, const CGFloat* lengths, size_t count);

// Colours. The default is opaque black in the device gray space. Components are stored unchanged and clamped
// to 0 to 1 when drawn; NaN is drawn as 0. An alpha-only context uses the alpha alone.

/// Sets the space in which `CGContextSetFillColor` interprets components, and the fill colour to the space's
/// default: opaque black, or no paint at all in a pattern space. Retains the space. Null changes nothing.
KORVID_EXPORT void CGContextSetFillColorSpace(CGContextRef context, CGColorSpaceRef space);
/// Like `CGContextSetFillColorSpace`, for the stroke colour.
KORVID_EXPORT void CGContextSetStrokeColorSpace(CGContextRef context, CGColorSpaceRef space);
/// Sets the fill colour: one value per component of the current fill colour space, then alpha. `components`
/// is copied. Has no effect when it is null or the space is a pattern space.
KORVID_EXPORT void CGContextSetFillColor(CGContextRef context, const CGFloat* components);
/// Like `CGContextSetFillColor`, for the stroke colour.
KORVID_EXPORT void CGContextSetStrokeColor(CGContextRef context, const CGFloat* components);
/// Sets the fill colour and its space. Copies the components and retains the space. Null changes nothing.
KORVID_EXPORT void CGContextSetFillColorWithColor(CGContextRef context, CGColorRef color);
/// Sets the stroke colour and its space. Copies the components and retains the space. Null changes nothing.
KORVID_EXPORT void CGContextSetStrokeColorWithColor(CGContextRef context, CGColorRef color);
/// Sets the fill colour, and its space to device RGB.
KORVID_EXPORT void CGContextSetRGBFillColor(
    CGContextRef context, CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha);
/// Sets the stroke colour, and its space to device RGB.
KORVID_EXPORT void CGContextSetRGBStrokeColor(
    CGContextRef context, CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha);
/// Sets the fill colour, and its space to device gray.
KORVID_EXPORT void CGContextSetGrayFillColor(CGContextRef context, CGFloat gray, CGFloat alpha);
/// Sets the stroke colour, and its space to device gray.
KORVID_EXPORT void CGContextSetGrayStrokeColor(CGContextRef context, CGFloat gray, CGFloat alpha);

// Compositing.

/// Sets a factor for the alpha of every paint. Default 1; clamped to 0 to 1, NaN counts as 0.
KORVID_EXPORT void CGContextSetAlpha(CGContextRef context, CGFloat alpha);
/// Sets the blend mode. Default normal. An unsupported mode is logged and changes nothing.
KORVID_EXPORT void CGContextSetBlendMode(CGContextRef context, CGBlendMode mode);
/// Turns antialiasing on or off. Default true. Without antialiasing a pixel is painted if the shape contains
/// its centre; a centre exactly on an edge counts as inside at the left and top edges. The outline of a
/// stroke is first rounded to 1/256 pixel.
KORVID_EXPORT void CGContextSetShouldAntialias(CGContextRef context, bool shouldAntialias);
/// Sets how images are resampled. The default is `kCGInterpolationDefault`, for which invalid values also
/// count.
KORVID_EXPORT void CGContextSetInterpolationQuality(CGContextRef context, CGInterpolationQuality quality);
/// The interpolation quality; `kCGInterpolationDefault` for a null context.
KORVID_EXPORT CGInterpolationQuality CGContextGetInterpolationQuality(CGContextRef context);

// Shadows. While a shadow is set, fills, strokes, images and text cast it. It is painted before them, within
// the clip, in the current blend mode, and its alpha is multiplied by that of the paint that casts it. A path
// that is filled and stroked casts two shadows: the stroke's falls on the fill. Gradients and
// CGContextClearRect cast none.

/// Sets a shadow in black at an alpha of 1/3. Default: none.
///
/// Offset and blur are in base space, independent of the CTM: `offset.height` is upward, one unit is a pixel.
/// The offset is rounded to whole pixels. The blur is a Gaussian with a standard deviation of blur / 2,
/// truncated at the blur rounded up to whole pixels: a blur of 5 extends exactly 5 pixels beyond each side. A
/// blur that is 0, negative or NaN gives hard edges, one above 500 counts as 500; an offset that is NaN
/// counts as 0.
///
/// Differs: an offset of (0, 0) with a blur of 0 turns the shadow off. Apple documents only a null or
/// transparent colour for that; such a shadow would lie exactly under the shape.
KORVID_EXPORT void CGContextSetShadow(CGContextRef context, CGSize offset, CGFloat blur);
/// Sets a shadow in a colour of the caller's choice, which is not retained. Offset and blur as in
/// `CGContextSetShadow`. Null or a transparent colour turns the shadow off; an offset and a blur of 0 do not.
KORVID_EXPORT void CGContextSetShadowWithColor(
    CGContextRef context, CGSize offset, CGFloat blur, CGColorRef color);

// Transparency layers. What is drawn between Begin and End goes into a layer of its own, transparent at
// first, which End paints as if it were one image: overlapping shapes fade as a whole and cast one common
// shadow. Layers can be nested. A layer that is never ended is not painted.

/// Begins a transparency layer and saves the graphics state, in which alpha is then 1, the blend mode normal,
/// and no shadow set. The clip of that state becomes the pixels of the layer: the bounds of the current clip,
/// and up to 1024 pixels around it that can cast a shadow into it. Without memory for them, a line is logged
/// and the layer stays empty.
///
/// `auxiliaryInfo` is not used; Apple documents it as a pair of options that may be null.
KORVID_EXPORT void CGContextBeginTransparencyLayer(CGContextRef context, const void* auxiliaryInfo);
/// Like `CGContextBeginTransparencyLayer`, with a layer that only has the pixels that `rect` touches, in user
/// space. A small rectangle saves memory and time.
KORVID_EXPORT void CGContextBeginTransparencyLayerWithRect(
    CGContextRef context, CGRect rect, const void* auxiliaryInfo);
/// Ends the layer that was begun last. Restores the graphics state that was current at its beginning, and
/// paints all pixels of the layer with the alpha, shadow, blend mode and clip of that state; states that were
/// saved in the layer are dropped. The current path and the text matrix do not change. Without a layer the
/// call is logged and changes nothing.
KORVID_EXPORT void CGContextEndTransparencyLayer(CGContextRef context);

// Text. Lines are drawn by CTLineDraw, in <CoreText/CTLine.h>.

/// Sets the transform from text space, where a line starts at the origin and y is upward, to user space. Its
/// translation is the text position. The identity in a new context. Not part of the graphics state.
KORVID_EXPORT void CGContextSetTextMatrix(CGContextRef context, CGAffineTransform matrix);
/// The text matrix, its translation included. The identity for a null context.
KORVID_EXPORT CGAffineTransform CGContextGetTextMatrix(CGContextRef context);
/// Sets where the next line starts, in user space. Replaces the translation of the text matrix.
KORVID_EXPORT void CGContextSetTextPosition(CGContextRef context, CGFloat x, CGFloat y);
/// The translation of the text matrix; (0, 0) for a null context.
KORVID_EXPORT CGPoint CGContextGetTextPosition(CGContextRef context);

/// Allows drawing glyphs at quarters of a pixel, from cached masks, which makes text that moves or changes
/// several times as fast and places each glyph up to an eighth of a pixel beside its exact position in each
/// direction. Default true; part of the graphics state. Glyphs are quantized only while this and
/// `CGContextSetShouldSubpixelQuantizeFonts` are both true; otherwise their exact outlines are drawn. Text of
/// more than 64 pixels per em, text on a slanted baseline and text that is not antialiased always have exact
/// outlines. A null context is ignored.
KORVID_EXPORT void CGContextSetAllowsFontSubpixelQuantization(CGContextRef context, bool allowsQuantization);
/// Requests glyphs at quarters of a pixel where `CGContextSetAllowsFontSubpixelQuantization` allows them.
/// Default true; part of the graphics state. A null context is ignored.
KORVID_EXPORT void CGContextSetShouldSubpixelQuantizeFonts(CGContextRef context, bool shouldQuantize);
/// Has no effect: text is antialiased without colour fringes, as it is where smoothing is off.
KORVID_EXPORT void CGContextSetAllowsFontSmoothing(CGContextRef context, bool allowsSmoothing);
/// Has no effect, like `CGContextSetAllowsFontSmoothing`.
KORVID_EXPORT void CGContextSetShouldSmoothFonts(CGContextRef context, bool shouldSmooth);

/// Has no effect: every drawing function has written its pixels when it returns.
KORVID_EXPORT void CGContextFlush(CGContextRef context);
/// Has no effect, like `CGContextFlush`.
KORVID_EXPORT void CGContextSynchronize(CGContextRef context);

KORVID_EXTERN_C_END

#ifdef __cplusplus
template <> struct RetainTraits<CGContext> {
    static void retain(CGContext* context) noexcept { CGContextRetain(context); }
    static void release(CGContext* context) noexcept { CGContextRelease(context); }
};
#endif
