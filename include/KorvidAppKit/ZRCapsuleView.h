#pragma once

#include <AppKit/NSView.h>
#include <CoreGraphics/CGContext.h>
#include <Foundation/NSAttributedString.h>

#include <mutex>
#include <vector>

class NSColor;

/// Values of `ZRCapsuleView::drawType()`.
enum ZRCapsuleDrawType : std::int32_t {
    kZRCapsuleDrawTypeOutline = 1, ///< capsule and text in the view's colour
    kZRCapsuleDrawTypeFilled = 2,  ///< white or nearly black text on a capsule in the view's colour
};

/// A tag, a count or a status word in a rounded capsule.
///
/// The capsule fills `bounds()`; its corners have a radius of a quarter of its height. The text is one
/// centred line with letters spaced by an eighth of the font size. A view smaller than
/// `intrinsicContentSize()` clips it. The size of the bounds alone places the text: an origin other than (0,
/// 0) moves the capsule only. Bounds too small for the outline have no capsule.
///
///     auto tag = make<ZRCapsuleView>(NSZeroRect);
///     tag->setString("beta");
///     tag->setDrawType(kZRCapsuleDrawTypeFilled);
///     tag->setFrameSize(tag->intrinsicContentSize());
///
/// The view caches nothing: it looks up the font and lays out the text each time, which the platform layer's
/// own caches make cheap. Main thread only, like every view, except for `fontName`.
class KORVID_EXPORT ZRCapsuleView : public NSView {
public:
    /// A view with an empty frame.
    ZRCapsuleView();
    /// A view at `frame`, in the coordinates of its future superview.
    explicit ZRCapsuleView(NSRect frame);
    /// Decodes the properties that every view archives; text, colour and the rest get their defaults.
    explicit ZRCapsuleView(NSCoder* coder);

    /// Draws the whole view, whatever `dirtyRect` is.
    ///
    /// An outline is 0.03 of the height wide, at least 0.5 and at most 2 points, and lies within the bounds.
    /// The text on a filled capsule is gray 0.1 if the luminance of the capsule, 0.299 red + 0.587 green +
    /// 0.114 blue in sRGB (Rec. 601), is above 0.8 or if its colour cannot be converted to sRGB, and
    /// otherwise white. Any other draw type makes the mistake visible: red bounds without a capsule, and the
    /// text. The baseline is 0.3 of the ascent below the middle.
    void drawRect(NSRect dirtyRect) override;

    /// The width of the text and 1.4 ascents, by 2.4 ascents. The kern after the last letter does not count:
    /// for an empty text the width is the negative kern, and the height is 0.
    NSSize intrinsicContentSize() const override;

    /// In points. Default 9. With 0, a negative size, infinity or NaN the text has the default size of
    /// `NSFont`.
    double fontSize() const { return _fontSize; }
    /// Invalidates the intrinsic content size and redraws, unless the size is the current one.
    void setFontSize(double size);

    /// The text. Null (the default) is drawn as the empty text.
    NSString string() const { return _string; }
    /// Invalidates the intrinsic content size and redraws, unless the text is equal to the current one.
    void setString(NSString string);

    /// Colour of the capsule, and of the text unless the capsule is filled. Default white. Borrowed.
    NSColor* color() const { return _color.get(); }
    /// Retains the colour and redraws, unless it is equal to the current one. Null is a mistake, made visible
    /// by a purple capsule; the text is then black, or white on a filled capsule.
    void setColor(RetainPtr<NSColor> color);

    /// A `ZRCapsuleDrawType`. Default 1, the outline.
    std::int32_t drawType() const { return _drawType; }
    /// Redraws, unless the type is the current one.
    void setDrawType(std::int32_t drawType);

    /// The name of the font, see `NSFont::fontWithName`. Default "Helvetica Neue Regular". Without an
    /// installed font of that name the text is in the system font. Any thread.
    NSString fontName() const;
    /// Only stores: takes effect the next time the view draws or computes its intrinsic size. Any thread.
    void setFontName(NSString name);

    /// The properties that the intrinsic content size depends on: "fontSize" and "string".
    static std::vector<NSString> keyPathsForValuesAffectingIntrinsicContentSize();

protected:
    ~ZRCapsuleView() override;

    /// Sets the defaults.
    void _postInit();
    /// The space added after each letter, in points: an eighth of the font size; 0 if the size is not finite.
    double _kern() const;
    /// A new attributed string: the text with its font, kern and colour.
    RetainPtr<NSAttributedString> _attributedString() const;

    NSString _string;           ///< the value of `string()`
    double _fontSize = 0;       ///< the value of `fontSize()`
    RetainPtr<NSColor> _color;  ///< the value of `color()`
    std::int32_t _drawType = 0; ///< the value of `drawType()`
    mutable double _pad = 0;    ///< padding of the intrinsic content size, as last computed
    NSString _fontName;         ///< guarded by `_fontNameMutex`

private:
    void drawText(CGContextRef context, const NSAttributedString* text) const;

    mutable std::mutex _fontNameMutex;
};
