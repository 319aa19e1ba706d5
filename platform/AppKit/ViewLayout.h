#pragma once

#include <AppKit/NSLayoutConstraint.h>

/// The constraints that a view holds.
struct NSView::Layout {
    Layout() = default;
    Layout(const Layout&) = delete;
    Layout& operator=(const Layout&) = delete;
    ~Layout();

    /// Removes the constraints that name `view`.
    void removeConstraintsOf(const NSView* view);

    std::vector<RetainPtr<NSLayoutConstraint>> constraints;
    bool isNeeded = false;
    bool isRunning = false; ///< the frames of subviews change because of the layout
};
