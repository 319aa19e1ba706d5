#pragma once

#include "GalleryView.h"

#include <AppKit/NSWindow.h>

/// The window of the gallery: fits a screen of 1280 x 720 with a title bar and a panel, and is resizable.
/// Escape, Ctrl+Q and Ctrl+W close it.
class GalleryWindow : public NSWindow {
public:
    static constexpr NSSize kSize{1040, 660};
    /// No page scrolls sideways in it.
    static constexpr NSSize kMinimumSize{760, 420};

    explicit GalleryWindow(const GalleryOptions& options);

    GalleryView* galleryView() const { return _galleryView.get(); }

    void keyDown(NSEvent* event) override;

protected:
    ~GalleryWindow() override;

private:
    const RetainPtr<GalleryView> _galleryView;
};
