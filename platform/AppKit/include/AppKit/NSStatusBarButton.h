#pragma once

#include <AppKit/NSButton.h>

class NSImage;
class NSStatusItem;

/// The button of a status item. The desktop's tray draws it as a square icon: its image, scaled to fit.
///
/// A click on the icon does what `performClick` does. Made by NSStatusBar. Main thread only.
///
/// Differs: the title is not shown.
class KORVID_EXPORT NSStatusBarButton : public NSButton {
public:
    /// Borrowed. Default null: the icon is transparent.
    NSImage* image() const { return _image.get(); }
    /// Retains the image and changes the icon at once. What is drawn into the image later does not appear
    /// until it is set again.
    void setImage(RetainPtr<NSImage> image);

    void drawRect(NSRect dirtyRect) override;

protected:
    ~NSStatusBarButton() override;

private:
    friend class NSStatusItem;

    explicit NSStatusBarButton(NSStatusItem& item);

    NSStatusItem* _item; ///< sets null when it is destroyed
    RetainPtr<NSImage> _image;
};
