#pragma once

#include <AppKit/NSStatusItem.h>

/// As wide as the tray is high.
inline constexpr CGFloat NSSquareStatusItemLength = -2;
/// As wide as its image.
inline constexpr CGFloat NSVariableStatusItemLength = -1;

/// The desktop's tray. Main thread only.
class KORVID_EXPORT NSStatusBar : public NSObject {
public:
    /// The only one. Never null, never destroyed, also on a desktop without a tray.
    static NSStatusBar* systemStatusBar();

    /// A new item, visible from now on. The caller retains it: without references it leaves the tray.
    RetainPtr<NSStatusItem> statusItemWithLength(CGFloat length);
    /// Removes an item from the tray, as `setVisible(false)` does. Null does nothing.
    void removeStatusItem(NSStatusItem* item);
    /// The usual height of an icon, in points: 22.
    CGFloat thickness() const;

protected:
    ~NSStatusBar() override;

private:
    NSStatusBar();
};
