#pragma once

#include "AccessibleWindow.h"
#include "AppKit/DirtyRegion.h"
#include "AppKit/Host.h"

#include <CoreGraphics/CGBitmapContext.h>
#include <QImage>
#include <QRegion>
#include <QWidget>

#include <optional>
#include <vector>

class QHelpEvent;
class QSinglePointEvent;

/// The widget of a window, a top-level one at first: owns its pixels and dispatches its events.
///
/// Dirty areas are drawn into a backing image that persists between paints, and painting copies from it. So
/// areas that the window system uncovers are not redrawn, and a part is drawn exactly as within the whole.
class WindowWidget : public QWidget {
public:
    /// `events` is borrowed until `detach`.
    WindowWidget(HostWindowEvents& events, Qt::WindowFlags flags, QWidget* parent = nullptr);

    /// Stops dispatching events.
    void detach()
    {
        _events = nullptr;
        _accessibleViews.clear();
    }
    /// True while an event is being handled, so that deleting the widget has to wait.
    bool isHandlingEvent() const { return _depth > 0; }

    /// Schedules a repaint of a rectangle of the window, y upward.
    void setNeedsDisplayInRect(NSRect rect);
    /// The frame of the content on the screen, y upward.
    NSRect contentRect() const;
    /// Whether this is a part of another window.
    bool isEmbedded() const { return !isWindow(); }
    /// Whether keys come here.
    bool isKey() const;
    /// Whether what is around this one is dark; nothing where this draws its own background.
    std::optional<bool> isDark() const;
    /// To be called when the window around this one has moved.
    void placeMayHaveChanged();
    /// The root of the view tree; null without one.
    NSView* contentView() const { return _events ? _events->contentView() : nullptr; }
    AccessibleViews& accessibleViews() { return _accessibleViews; }
    /// Closes without asking the window's delegate.
    void closeByProgram();

protected:
    /// Null after `detach`.
    HostWindowEvents* events() const { return _events; }
    /// Whether every pixel is painted here; otherwise what is below shows.
    bool isOpaque() const { return testAttribute(Qt::WA_OpaquePaintEvent); }

    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    bool focusNextPrevChild(bool next) override;

private:
    /// Rectangles, and the region around them for Qt.
    struct Repaint {
        std::vector<QRect> rects;
        QRegion region;
    };

    void makeBacking(qreal scale);
    std::vector<QRect> rectsOf(DirtyRegion& region) const;
    void drawDirty(qreal scale, const std::vector<QRect>& dirty);
    bool showsAll(const std::vector<QRect>& rects, const QRegion& region, const QPainter& painter) const;
    void scheduleRepaint();
    void repaintDirty();
    QRect pixelsAround(const QRect& area, qreal scale) const;
    void sendMouse(const QSinglePointEvent& event, HostAction action, Qt::MouseButton button);
    bool sendKey(const QKeyEvent& event, HostAction action);
    bool passFocusOn(bool isForward);
    void showToolTip(QHelpEvent& event);
    NSPoint pointInWindow(QPointF point) const { return {point.x(), height() - point.y()}; }

    HostWindowEvents* _events;
    AccessibleViews _accessibleViews{*this};
    QImage _backing;
    qreal _backingScale = 0;             ///< pixels of the backing per point
    RetainPtr<CGContext> _context;       ///< draws into `_backing`
    DirtyRegion _dirty;                  ///< the part of the widget to redraw, in Qt's coordinates
    DirtyRegion _unshown;                ///< drawn into `_backing`, and not yet on the screen
    const Repaint* _repainted = nullptr; ///< while `repaintDirty` is painting it
    bool _repaintIsScheduled = false;
    bool _isPassingFocusOn = false;
    int _depth = 0; ///< of events being handled, one within another
    enum class Closing { None, Requested, Allowed } _closing = Closing::None;
};
