#pragma once

#include <AppKit/NSView.h>
#include <CoreGraphics/CGPath.h>
#include <Foundation/NSString.h>

#include <mutex>

class NSColor;

/// Shows the QR code of a text, as large a square as fits in the middle of the view.
///
/// The view is transparent; the square is filled with the background colour, and within it, `inset()` points
/// from each side, stand the dark modules in the foreground colour. Both colours replace what is below them,
/// alpha included. Modules are not snapped to pixels. Without a text the square stays empty.
///
///     auto view = make<ZRQRView>(NSMakeRect(0, 0, 200, 200));
///     view->setInset(12);
///     view->setString("https://example.org");
///
/// Main thread only, like every view, but for the two colours.
class KORVID_EXPORT ZRQRView : public NSView {
public:
    /// A view with an empty frame.
    ZRQRView();
    explicit ZRQRView(NSRect frame);
    /// What an archive tells of every view; text, margin and colours have their defaults.
    explicit ZRQRView(NSCoder* coder);

    /// The text to encode. Default null.
    NSString string() const { return _string; }
    /// Stores the text, builds its symbol and redraws; an equal text does nothing.
    ///
    /// A text beyond the capacity of a QR code stops the process: see `ZRQRCodeGenerator::textFits`.
    void setString(NSString string);

    /// Margin in points between the square and the symbol, on every side. Default 0.
    CGFloat inset() const { return static_cast<CGFloat>(_inset); }
    /// Keeps the whole points, cut off toward zero, and redraws when `inset` differs from what was kept
    /// before: setting 2.7 reads back as 2, and redraws each time.
    ///
    /// NaN counts as 0; a value beyond the range of a 64-bit integer becomes the nearest end of it. A margin
    /// of half the square or more leaves no room for the symbol, which is then not drawn; a negative one
    /// makes the symbol larger than the square.
    void setInset(CGFloat inset);

    /// Colour of the square. Null (the default) means white. Any thread.
    RetainPtr<NSColor> bgColor() const;
    /// Stores the colour, and does not redraw: it shows with the next redraw. Any thread.
    void setBgColor(RetainPtr<NSColor> color);

    /// Colour of the dark modules. Null (the default) means black. Any thread.
    RetainPtr<NSColor> fgColor() const;
    /// Stores the colour, and does not redraw: it shows with the next redraw. Any thread.
    void setFgColor(RetainPtr<NSColor> color);

    /// Draws all of the view, whatever is dirty.
    void drawRect(NSRect dirty) override;

protected:
    ~ZRQRView() override;

    /// Builds the symbol of the current text anew. `setString` calls this.
    virtual void _rebuild();

    RetainPtr<CGPath> _path; ///< the symbol, one unit square per dark module; null without a text
    NSInteger _inset = 0;
    NSInteger _dim = 0; ///< side length of the symbol in modules, 0 when there is none

private:
    NSString _string;
    RetainPtr<NSColor> _bgColor;
    RetainPtr<NSColor> _fgColor;
    mutable std::mutex _colorMutex; ///< guards the two colours
};
