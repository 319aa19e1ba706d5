#pragma once

#include "AppKit/Host.h"

#include <CoreGraphics/CGBitmapContext.h>
#include <QImage>
#include <QRegion>
#include <QWidget>

class QHelpEvent;

/// The widget that is one of our windows: it keeps the window's pixels and hands events on.
///
/// What is to be drawn again is drawn into an image that lasts from one paint to the next; painting copies
/// from there. So what the window system uncovers is not drawn again, and a part is drawn exactly as in the
/// whole.
class WindowWidget final : public QWidget {
public:
    /// `events` may be taken away by `detach`.
    WindowWidget(HostWindowEvents& events, Qt::WindowFlags flags);

    /// From now on nobody is told anything.
    void detach() { _events = nullptr; }
    /// True while an event is being handled, so that deleting the widget has to wait.
    bool isHandlingEvent() const { return _depth > 0; }

    /// Has a rectangle of the window, y upward, drawn at the next paint.
    void setNeedsDisplayInRect(NSRect rect);
    /// The place of the content on the screen, y upward.
    NSRect contentRect() const;
    /// Closes without asking.
    void closeByProgram();

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    bool focusNextPrevChild(bool next) override;

private:
    void makeBacking(qreal scale);
    void drawDirty(qreal scale);
    QRect pixelsAround(const QRect& area, qreal scale) const;
    void sendMouse(const QMouseEvent& event, HostAction action, Qt::MouseButton button);
    void sendKey(const QKeyEvent& event, HostAction action);
    void showToolTip(QHelpEvent& event);
    NSPoint pointInWindow(QPointF point) const { return {point.x(), height() - point.y()}; }

    HostWindowEvents* _events;
    QImage _backing;
    qreal _backingScale = 0;       ///< pixels of it for each point
    RetainPtr<CGContext> _context; ///< draws into `_backing`
    QRegion _dirty;                ///< of the widget, still to be drawn
    int _depth = 0;
    enum class Closing { No, Asked, Agreed } _closing = Closing::No;
};
