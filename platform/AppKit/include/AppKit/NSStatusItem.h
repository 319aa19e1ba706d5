#pragma once

#include <AppKit/NSStatusBarButton.h>

#include <memory>

class HostStatusItem;
class NSWindow;

/// A small picture in the desktop's tray that the user can click.
///
///     auto item = NSStatusBar::systemStatusBar()->statusItemWithLength(NSSquareStatusItemLength);
///     item->button()->setImage(icon);
///     item->button()->setToolTip("Two new messages");
///     item->button()->setTarget(controller);
///     item->button()->setAction(selector<&Controller::showMessages>);
///
/// It is in the tray as long as it exists and is visible, and appears by itself where a tray starts later.
/// Main thread only.
class KORVID_EXPORT NSStatusItem : public NSObject {
public:
    /// Borrowed; never null. While the item is in a tray, the button is in a window of its own that is as
    /// large as the icon and in its place; otherwise it has no window. A tray that does not report the place
    /// of its icons counts as the top right corner of the primary screen. The tool tip is read when the item
    /// becomes visible and when the image is set.
    NSStatusBarButton* button() const { return _button.get(); }

    /// The width that the program requested. The tray determines the actual one.
    CGFloat length() const { return _length; }

    /// Default true.
    bool isVisible() const { return _isVisible; }
    /// Adds the item to the tray, or removes it. The same value does nothing.
    void setVisible(bool visible);

protected:
    ~NSStatusItem() override;

private:
    friend class NSStatusBar;
    friend class NSStatusBarButton;
    friend class StatusTray;
    class Events;

    explicit NSStatusItem(CGFloat length);
    void frameDidChange();
    void imageDidChange();

    const CGFloat _length;
    bool _isVisible = false;
    RetainPtr<NSStatusBarButton> _button;
    RetainPtr<NSWindow> _window; ///< while the item is in a tray
    std::unique_ptr<Events> _events;
    std::unique_ptr<HostStatusItem> _host;
};
