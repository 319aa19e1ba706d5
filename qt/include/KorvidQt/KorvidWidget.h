#pragma once

#ifndef Q_MOC_RUN // which cannot read all of C++20
#include <AppKit/NSView.h>
#include <Foundation/RetainPtr.h>
#endif
#include <QWidget>

class EmbeddedWindow;

/// Shows a view in a Qt program: a widget like any other.
///
///     layout->addWidget(new KorvidWidget(make<ZRSwitchControl>(NSMakeRect(0, 0, 66, 24))));
///
/// The view fills the widget. What it does not paint shows the widget's background, style sheets included.
/// The view is in a window (`NSView::window`) that ends with the widget: its place on the screen and its
/// scale are the widget's, and what moves, resizes, shows or closes it has no effect. Views redraw, animate
/// and follow the mouse in Qt's own event loop. Qt's application object is used as it is: make it first.
///
/// **Size.** A side with an intrinsic content size has that, also as its minimum, and follows its changes. A
/// side without one has the length of the view's frame: resize the view to change it. The size policy is
/// Fixed, or Expanding along a side that is flexible: if the view's autoresizing mask has NSViewWidthSizable
/// or NSViewHeightSizable, or without any length to begin with. `setSizePolicy` overrides that.
///
/// **Keyboard.** Tab moves through the views that take keys, and enters and leaves them in Qt's tab order;
/// `QWidget::setTabOrder` and `setFocus` work as for other widgets. A click moves the focus if the view under
/// it takes keys. Keys and the wheel, where no view handles them, go on to the parent widget.
///
/// **Appearance.** The views are drawn dark if the window colour of the widget's palette is, else light;
/// `NSApplication::setAppearance` overrides that.
///
/// Main thread only, like every view.
class KORVID_EXPORT KorvidWidget : public QWidget {
    Q_OBJECT

public:
    /// Retains the view, after removing it from its superview or window. Null gives an empty widget.
    ///
    /// Throws NSException when the library's module for Qt is not installed.
    explicit KorvidWidget(RetainPtr<NSView> view, QWidget* parent = nullptr);
    KorvidWidget(const KorvidWidget&) = delete;
    KorvidWidget& operator=(const KorvidWidget&) = delete;
    /// Releases the view, which then is in no window. May be called while the view handles an event.
    ~KorvidWidget() override;

    /// Borrowed. Null without one, and once the view was removed from its window.
    NSView* view() const;
    /// The size that the view prefers, in whole points; see above.
    QSize sizeHint() const override;
    /// The intrinsic content size of the view, in whole points; 0 along a side without one.
    QSize minimumSizeHint() const override;

private:
    const RetainPtr<EmbeddedWindow> _window;
};
