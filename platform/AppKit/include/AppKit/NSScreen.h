#pragma once

#include <AppKit/NSGeometry.h>
#include <Foundation/NSObject.h>
#include <Foundation/NSString.h>

#include <vector>

/// A screen of the desktop, as it was when the object was made.
///
/// Coordinates are in points and run upward from the bottom left of the primary screen. Main thread only. The
/// functions make the application object if there is none.
class KORVID_EXPORT NSScreen : public NSObject {
public:
    /// All screens, the primary one first. Where there is no display, one that exists in memory only. Empty
    /// while none is connected.
    static std::vector<RetainPtr<NSScreen>> screens();
    /// The screen of the key window; without one, the primary screen. Null while none is connected.
    static RetainPtr<NSScreen> mainScreen();

    /// The whole screen.
    NSRect frame() const { return _frame; }
    /// The part that panels and docks leave free.
    NSRect visibleFrame() const { return _visibleFrame; }
    /// Pixels for each point.
    CGFloat backingScaleFactor() const { return _backingScaleFactor; }
    /// The name that the desktop gives it, such as "HDMI-1".
    NSString localizedName() const { return _name; }

    /// From points to pixels: multiplies by the backing scale factor.
    NSRect convertRectToBacking(NSRect rect) const;
    /// From pixels to points.
    NSRect convertRectFromBacking(NSRect rect) const;

    /// True for a screen of the same name and place.
    bool isEqual(const NSObject* other) const override;
    NSUInteger hash() const override { return _name.hash(); }

protected:
    ~NSScreen() override;

private:
    NSScreen(NSString name, NSRect frame, NSRect visibleFrame, CGFloat backingScaleFactor);

    const NSString _name;
    const NSRect _frame;
    const NSRect _visibleFrame;
    const CGFloat _backingScaleFactor;
};
