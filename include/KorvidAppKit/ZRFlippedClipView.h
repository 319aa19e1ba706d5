#pragma once

#include <AppKit/NSClipView.h>

/// A clip view with y downward: its document is laid out from the top, and shown from there at first. Main
/// thread only.
class KORVID_EXPORT ZRFlippedClipView : public NSClipView {
public:
    using NSClipView::NSClipView;

    /// True.
    bool isFlipped() const override { return true; }

protected:
    ~ZRFlippedClipView() override;
};
