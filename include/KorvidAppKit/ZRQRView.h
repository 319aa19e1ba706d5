#pragma once

#include <AppKit/NSView.h>
#include <CoreGraphics/CGPath.h>
#include <Foundation/NSString.h>

#include <mutex>

class NSColor;

/// Shows the QR code of a string in the largest square that fits, centred in the view.
///
/// The view is transparent around the square, which is filled with the background colour. The dark modules
/// are drawn in the foreground colour, `inset()` points inside the square. Both colours replace what is below
/// them, alpha included. Modules are not pixel-aligned. Without a string the square is empty.
///
/// Bounds with an origin other than (0, 0) move the square only where they are square themselves; others are
/// treated as if their origin were (0, 0).
///
///     auto view = make<ZRQRView>(NSMakeRect(0, 0, 200, 200));
///     view->setInset(12);
///     view->setString("https://example.org");
///
/// Main thread only, like every view, except for the two colours.
class KORVID_EXPORT ZRQRView : public NSView {
public:
    /// A view with an empty frame.
    ZRQRView();
    /// A view at `frame`, in the coordinates of its future superview.
    explicit ZRQRView(NSRect frame);
    /// Decodes what an archive stores of every view; string, inset and colours have their defaults.
    explicit ZRQRView(NSCoder* coder);

    /// The string to encode. Default null.
    NSString string() const { return _string; }
    /// Stores the string, builds its symbol and redraws; an equal string does nothing.
    ///
    /// A string that exceeds the capacity of a QR code stops the process: see `ZRQRCodeGenerator::textFits`.
    void setString(NSString string);

    /// Margin in points between the square and the symbol, on every side. Default 0.
    CGFloat inset() const { return static_cast<CGFloat>(_inset); }
    /// Stores whole points, truncated toward zero, and redraws if `inset` differs from the stored value:
    /// setting 2.7 reads back as 2, and redraws each time.
    ///
    /// NaN counts as 0; other values are clamped to the range of a 64-bit integer. With half the square's
    /// side or more no room is left and the symbol is not drawn; a negative inset makes the symbol larger
    /// than the square.
    void setInset(CGFloat inset);

    /// Colour of the square. Null (the default) means white. Any thread.
    RetainPtr<NSColor> bgColor() const;
    /// Stores the colour without redrawing: it takes effect when the view next draws. Any thread.
    void setBgColor(RetainPtr<NSColor> color);

    /// Colour of the dark modules. Null (the default) means black. Any thread.
    RetainPtr<NSColor> fgColor() const;
    /// Stores the colour without redrawing: it takes effect when the view next draws. Any thread.
    void setFgColor(RetainPtr<NSColor> color);

    /// Draws the whole view, whatever `dirty` is.
    void drawRect(NSRect dirty) override;

protected:
    ~ZRQRView() override;

    /// Rebuilds the symbol from the current string. Called by `setString`.
    virtual void _rebuild();

    RetainPtr<CGPath> _path; ///< the symbol, one unit square per dark module; null without a string
    NSInteger _inset = 0;    ///< the value of `inset()`
    NSInteger _dim = 0;      ///< side length of the symbol in modules, 0 when there is none

private:
    NSString _string;
    RetainPtr<NSColor> _bgColor;
    RetainPtr<NSColor> _fgColor;
    mutable std::mutex _colorMutex; ///< guards the two colours
};
