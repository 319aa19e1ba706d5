#pragma once

#include <AppKit/NSView.h>
#include <AppKit/NSWindow.h>

#include <functional>

/// A window within another program's window: it fills a container of the window system, and shows one view.
///
/// Its place and visibility are the container's. It is transparent where nothing is drawn, unless it has a
/// background colour. Main thread only. Exported for the library of the container.
class KORVID_EXPORT EmbeddedWindow final : public NSWindow {
public:
    /// What a view prefers along one axis.
    struct Side {
        CGFloat length;
        CGFloat least;
        bool isFlexible; ///< longer is better; otherwise the length is fixed
    };
    struct Size {
        Side width;
        Side height;
    };

    /// `parent` is the container, for Qt a QWidget: borrowed until `leaveParent`. A null view shows nothing.
    /// `preferredSizeDidChange` is called when that of the view may have changed.
    EmbeddedWindow(void* parent, RetainPtr<NSView> view, std::function<void()> preferredSizeDidChange);

    /// Removes the view. To be called before the container is destroyed.
    void leaveParent();

    /// Borrowed. Null without one, and once it has been removed from the window.
    NSView* view() const;

    /// A side with an intrinsic size has that; one without has the view's last frame that the program set.
    /// It is flexible if the view's autoresizing mask says so or the frame has no length there.
    Size preferredSize() const;

    NSResponder* nextResponder() const override;

protected:
    ~EmbeddedWindow() override;

private:
    class Root;
    class Rest;

    RetainPtr<Root> _root;
    RetainPtr<Rest> _rest;
};
