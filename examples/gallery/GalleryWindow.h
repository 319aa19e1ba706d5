#pragma once

#include "GalleryView.h"

#include <AppKit/NSWindow.h>

/// The window of the gallery: resizable, and at its normal size on screens from 1280 x 720 with a title bar
/// and a panel. Escape, Ctrl+Q and Ctrl+W close it.
class GalleryWindow : public NSWindow {
public:
    static constexpr NSSize kSize{1040, 660};
    /// No page scrolls sideways in it.
    static constexpr NSSize kMinimumSize{760, 420};

    /// The size of a new window's content on a screen with so much room between its panels: `kSize`, or less
    /// where that and a title bar do not fit.
    static NSSize sizeOnScreen(NSSize room);

    explicit GalleryWindow(const GalleryOptions& options);

    GalleryView* galleryView() const { return _galleryView.get(); }

    void keyDown(NSEvent* event) override;

protected:
    ~GalleryWindow() override;

private:
    const RetainPtr<GalleryView> _galleryView;
};
