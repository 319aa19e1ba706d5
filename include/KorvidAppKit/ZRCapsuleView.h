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
    kZRCapsuleDrawTypeFilled = 2,  ///< text in white or near black on a capsule in the view's colour
};

/// A tag, a count or a status word in a rounded capsule.
///
/// The capsule fills `bounds()`; its corners have a radius of a quarter of its height. The text is one line,
/// centred; it may reach beyond a view that is smaller than `intrinsicContentSize()` asks for, where it is
/// cut off. Letters are spaced by an eighth of the font size. The origin of bounds that were moved does not
/// move the text. Bounds without room for the outline have none.
///
///     auto tag = make<ZRCapsuleView>(NSZeroRect);
///     tag->setString("beta");
///     tag->setDrawType(kZRCapsuleDrawTypeFilled);
///     tag->setFrameSize(tag->intrinsicContentSize());
///
/// The view keeps nothing of its drawing: font, text and line are made anew each time, which the platform
/// layer makes cheap. Main thread only, like every view, but for `fontName`.
class KORVID_EXPORT ZRCapsuleView : public NSView {
public:
    /// A view with an empty frame.
    ZRCapsuleView();
    explicit ZRCapsuleView(NSRect frame);
    /// What an archive tells of a view; text, colour and the rest get their defaults, whatever it holds.
    explicit ZRCapsuleView(NSCoder* coder);

    /// Draws all of the view, whatever is dirty.
    ///
    /// An outline is 0.03 of the height wide, at least 0.5 and at most 2 points, and lies within the bounds.
    /// The text on a filled capsule is gray 0.1 where the luminance of the capsule, 0.299 red + 0.587 green +
    /// 0.114 blue in sRGB (Rec. 601), is above 0.8 or unknown, and white elsewhere. Any other draw type
    /// shows that something is wrong: the bounds are red, without a capsule. The baseline is 0.3 of the
    /// ascent below the middle.
    void drawRect(NSRect dirtyRect) override;

    /// Room for the text: as wide as its letters and 1.4 ascents, 2.4 ascents high. The kern after the last
    /// letter does not count, so for an empty text the width is that much below 0, and the height is 0.
    NSSize intrinsicContentSize() const override;

    /// In points. Default 9. Sizes that are 0, negative, infinite or NaN give the default sizes of `NSFont`.
    double fontSize() const { return _fontSize; }
    /// Invalidates the intrinsic size and redraws; the same size does nothing.
    void setFontSize(double size);

    /// The text. Default null, which is shown as the empty text.
    NSString string() const { return _string; }
    /// Invalidates the intrinsic size and redraws; an equal text does nothing.
    void setString(NSString string);

    /// Default white. Borrowed.
    NSColor* color() const { return _color.get(); }
    /// Retains the colour and redraws; an equal one does nothing. Null is a mistake: the capsule becomes
    /// purple and the outlined text black.
    void setColor(RetainPtr<NSColor> color);

    /// `ZRCapsuleDrawType`. Default 1, the outline.
    std::int32_t drawType() const { return _drawType; }
    /// Redraws; the same type does nothing.
    void setDrawType(std::int32_t drawType);

    /// The name of the font, see `NSFont::fontWithName`. Default "Helvetica Neue Regular". A name that no
    /// font has, and null, give the system font. Any thread.
    NSString fontName() const;
    /// Only stores: it shows with the next drawing or size request. Any thread.
    void setFontName(NSString name);

    /// "fontSize" and "string".
    static std::vector<NSString> keyPathsForValuesAffectingIntrinsicContentSize();

protected:
    ~ZRCapsuleView() override;

    /// Sets the defaults.
    void _postInit();
    /// The spacing of letters, in points: an eighth of the font size, added after each one. 0 where the size
    /// is not finite.
    double _kern() const;
    /// The text with font, kern and colour.
    RetainPtr<NSAttributedString> _attributedString() const;

    NSString _string;
    double _fontSize = 0;
    RetainPtr<NSColor> _color;
    std::int32_t _drawType = 0;
    mutable double _pad = 0; ///< that of the last request for the intrinsic size
    NSString _fontName;      ///< under `_fontNameMutex`

private:
    void drawText(CGContextRef context, const NSAttributedString* text) const;

    mutable std::mutex _fontNameMutex;
};
