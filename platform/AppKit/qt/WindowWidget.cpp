#include "WindowWidget.h"

#include "Conversions.h"
#include "PaintRegion.h"
#include "ScreenPixels.h"

#include <CoreGraphics/CGColorSpace.h>
#include <QBackingStore>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QHelpEvent>
#include <QPaintEngine>
#include <QPaintEvent>
#include <QPainter>
#include <QTextDocument>
#include <QToolTip>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

WindowWidget::WindowWidget(HostWindowEvents& events, Qt::WindowFlags flags, QWidget* parent)
    : QWidget(parent, flags)
    , _events(&events)
{
    // Every pixel is painted here, so Qt need not clear them first.
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_NoSystemBackground);
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true); // moves without a button are reported, too
}

NSRect WindowWidget::contentRect() const
{
    return upward(isEmbedded() ? QRect(mapToGlobal(QPoint()), size()) : geometry());
}

// Drawing.

void WindowWidget::setNeedsDisplayInRect(NSRect rect)
{
    if (NSIsEmptyRect(rect))
        return;
    // Clipped first, since larger numbers do not fit Qt's integers.
    rect = NSIntersectionRect(rect, NSMakeRect(0, 0, width(), height()));
    if (NSIsEmptyRect(rect))
        return;
    const int left = static_cast<int>(std::floor(NSMinX(rect)));
    const int top = static_cast<int>(std::floor(height() - NSMaxY(rect)));
    const int right = static_cast<int>(std::ceil(NSMaxX(rect)));
    const int bottom = static_cast<int>(std::ceil(height() - NSMinY(rect)));
    _dirty.add(CGRectMake(left, top, right - left, bottom - top));
    scheduleRepaint();
}

/// Qt's own update() would unite regions with each call.
void WindowWidget::scheduleRepaint()
{
    if (!std::exchange(_repaintIsScheduled, true))
        QCoreApplication::postEvent(this, new QEvent(QEvent::UpdateRequest), Qt::LowEventPriority);
}

/// The pieces of a region in the widget.
std::vector<QRect> WindowWidget::rectsOf(DirtyRegion& region) const
{
    std::vector<QRect> rects;
    for (const CGRect& piece : region.rectangles()) {
        const QRect area =
            QRectF(piece.origin.x, piece.origin.y, piece.size.width, piece.size.height).toRect() & rect();
        if (!area.isEmpty())
            rects.push_back(area);
    }
    return rects;
}

/// Draws what is dirty, and shows it.
void WindowWidget::repaintDirty()
{
    _repaintIsScheduled = false;
    const bool isPainting = _repainted || testAttribute(Qt::WA_WState_InPaintEvent);
    if (isPainting || (_dirty.isEmpty() && _unshown.isEmpty()) || !isVisible())
        return;
    Repaint repainted{rectsOf(_dirty), {}};
    const std::vector<QRect> unshown = rectsOf(_unshown);
    repainted.rects.insert(repainted.rects.end(), unshown.begin(), unshown.end());
    // At a fractional scale, pixels at the edges belong to the area only in part. All of them are drawn, and
    // one point more is copied, since Qt omits pixels of which it covers less than half.
    if (devicePixelRatioF() != std::floor(devicePixelRatioF())) {
        for (QRect& area : repainted.rects)
            area = area.adjusted(-1, -1, 1, 1) & rect();
    }
    repainted.region = paintRegion(repainted.rects) & rect();
    _repainted = &repainted;
    repaint(repainted.region);
    _repainted = nullptr;
}

void WindowWidget::makeBacking(qreal scale)
{
    _context = nullptr;
    // Rounds as Qt does; rounding up would add a row or column.
    _backing =
        QImage(qRound(width() * scale), qRound(height() * scale), QImage::Format_RGBA8888_Premultiplied);
    _backingScale = scale;
    const auto space = adopt(CGColorSpaceCreateWithName(kCGColorSpaceSRGB));
    _context = adopt(CGBitmapContextCreate(_backing.bits(), static_cast<std::size_t>(_backing.width()),
        static_cast<std::size_t>(_backing.height()), 8, static_cast<std::size_t>(_backing.bytesPerLine()),
        space.get(), kCGImageAlphaPremultipliedLast));
    _dirty.clear();
    _dirty.add(CGRectMake(0, 0, width(), height()));
}

/// The pixels of the backing that an area of the widget touches.
QRect WindowWidget::pixelsAround(const QRect& area, qreal scale) const
{
    const QRectF exact(QPointF(area.topLeft()) * scale, QSizeF(area.size()) * scale);
    return exact.toAlignedRect() & _backing.rect();
}

void WindowWidget::drawDirty(qreal scale, const std::vector<QRect>& dirty)
{
    _dirty.clear(); // what becomes dirty during drawing is drawn at the next paint
    if (dirty.empty() || !_events)
        return;

    const int pixelHeight = _backing.height();
    std::vector<CGRect> rects;
    rects.reserve(dirty.size());
    for (const QRect& area : dirty) {
        const QRect pixels = pixelsAround(area, scale);
        rects.push_back(CGRectMake(
            pixels.x(), pixelHeight - (pixels.y() + pixels.height()), pixels.width(), pixels.height()));
    }
    // The top edge of the widget is that of the first pixel row; the bottom edge may be within one.
    _events->draw(_context, CGAffineTransformMake(scale, 0, 0, scale, 0, pixelHeight - height() * scale),
        rects.data(), rects.size());
}

void WindowWidget::paintEvent(QPaintEvent* event)
{
    // Qt 6.4 sends no event when the scale changes.
    const qreal scale = devicePixelRatioF();
    if (_backing.size() != QSize(qRound(width() * scale), qRound(height() * scale)) || _backingScale != scale)
        makeBacking(scale);
    if (!_context)
        return;
    const std::vector<QRect> dirty = rectsOf(_dirty);
    drawDirty(scale, dirty);

    // In pixels: in points, Qt would round the edges of each rectangle by itself.
    QPainter painter(this);
    if (isOpaque())
        painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.scale(1 / scale, 1 / scale);
    // At a fractional scale, pixels at the edges of the region are clipped.
    const auto screen = isOpaque() && scale == std::floor(scale) ? ScreenPixels::of(painter) : std::nullopt;
    const auto show = [&](const QRect& area) {
        const QRect pixels = pixelsAround(area, scale);
        if (screen)
            screen->copy(_backing, pixels);
        else
            painter.drawImage(pixels.topLeft(), _backing, pixels);
    };
    const QRegion& region = event->region();
    // The region may contain more than is dirty, which is on the screen unless the background was redrawn.
    if (_repainted && _repainted->region == region && isOpaque())
        std::for_each(_repainted->rects.begin(), _repainted->rects.end(), show);
    else
        std::for_each(region.begin(), region.end(), show);

    // Qt may paint by itself, another part than the dirty one or into a picture.
    if (_repainted) {
        _unshown.clear();
    } else if (!dirty.empty() && !showsAll(dirty, region, painter)) {
        for (const QRect& area : dirty)
            _unshown.add(CGRectMake(area.x(), area.y(), area.width(), area.height()));
    }
    if (!_dirty.isEmpty() || !_unshown.isEmpty())
        scheduleRepaint();
}

/// Whether a painter that is clipped to `region` has painted all of the rectangles on the screen.
bool WindowWidget::showsAll(
    const std::vector<QRect>& rects, const QRegion& region, const QPainter& painter) const
{
    QBackingStore* const screen = window()->backingStore();
    return screen && painter.paintEngine()->paintDevice() == screen->paintDevice()
        && (paintRegion(rects) - region).isEmpty();
}

// Events.

bool WindowWidget::event(QEvent* event)
{
    if (!_events)
        return QWidget::event(event);

    struct Depth {
        int& depth;
        explicit Depth(int& counter)
            : depth(counter)
        {
            ++depth;
        }
        ~Depth() { --depth; }
    } const depth(_depth);

    switch (event->type()) {
    case QEvent::UpdateRequest:
        repaintDirty();
        return QWidget::event(event);
    case QEvent::ToolTip:
        showToolTip(static_cast<QHelpEvent&>(*event));
        return true;
    case QEvent::Move:
    case QEvent::Resize: {
        const bool handled = QWidget::event(event);
        if (_events)
            _events->contentRectDidChange(contentRect());
        return handled;
    }
    case QEvent::WindowActivate:
    case QEvent::WindowDeactivate: {
        const bool handled = QWidget::event(event);
        if (_events && isEmbedded())
            _events->activeStatusDidChange();
        else if (_events)
            _events->keyStatusDidChange(event->type() == QEvent::WindowActivate);
        return handled;
    }
    case QEvent::PaletteChange: {
        const bool handled = QWidget::event(event);
        if (_events && !isOpaque())
            _events->appearanceDidChange();
        return handled;
    }
    case QEvent::WindowBlocked:
        _events->inputWasBlocked();
        return _events ? QWidget::event(event) : true;
    default:
        return QWidget::event(event);
    }
}

void WindowWidget::closeByProgram()
{
    if (_closing == Closing::Requested) {
        // The close event that is being handled does the rest; a nested close() has no effect.
        _closing = Closing::Allowed;
        hide();
        return;
    }
    // Closed, not only hidden, for applications that end with their last window.
    _closing = Closing::Allowed;
    close();
    _closing = Closing::None;
}

void WindowWidget::closeEvent(QCloseEvent* event)
{
    if (_closing == Closing::Allowed || !_events)
        return;
    _closing = Closing::Requested;
    _events->closeRequested();
    event->setAccepted(_closing == Closing::Allowed);
    _closing = Closing::None;
}

void WindowWidget::focusInEvent(QFocusEvent* event)
{
    if (_events && isEmbedded()) {
        const bool isForward = event->reason() == Qt::TabFocusReason;
        const bool isTab = isForward || event->reason() == Qt::BacktabFocusReason;
        if (isTab && !_events->selectKeyView(isForward) && passFocusOn(isForward))
            return;
        if (_events)
            _events->keyStatusDidChange(true);
    }
    _accessibleViews.windowDidBecomeKey();
}

/// Gives the focus to the next widget, or the one before this, since no view takes it. False when no other
/// widget takes it either.
bool WindowWidget::passFocusOn(bool isForward)
{
    if (_isPassingFocusOn)
        return false;
    _isPassingFocusOn = true;
    const bool isTaken = QWidget::focusNextPrevChild(isForward) && !hasFocus();
    _isPassingFocusOn = false;
    return isTaken;
}

void WindowWidget::focusOutEvent(QFocusEvent*)
{
    if (_events && isEmbedded())
        _events->keyStatusDidChange(false);
}

bool WindowWidget::isKey() const
{
    return isActiveWindow() && (!isEmbedded() || hasFocus());
}

std::optional<bool> WindowWidget::isDark() const
{
    if (isOpaque())
        return std::nullopt;
    return isDarkPalette(palette());
}

void WindowWidget::placeMayHaveChanged()
{
    if (_events)
        _events->contentRectDidChange(contentRect());
}

void WindowWidget::mousePressEvent(QMouseEvent* event)
{
    sendMouse(*event, HostAction::Down, event->button());
}

void WindowWidget::mouseDoubleClickEvent(QMouseEvent* event)
{
    // Replaces the second press; the third comes as a press again. The window counts clicks itself.
    sendMouse(*event, HostAction::Down, event->button());
}

void WindowWidget::mouseMoveEvent(QMouseEvent* event)
{
    if (event->buttons() == Qt::NoButton)
        sendMouse(*event, HostAction::Moved, Qt::LeftButton);
    else
        sendMouse(*event, HostAction::Dragged, firstButton(event->buttons()));
}

void WindowWidget::enterEvent(QEnterEvent* event)
{
    // No move follows until the pointer moves on.
    if (event->buttons() == Qt::NoButton)
        sendMouse(*event, HostAction::Moved, Qt::LeftButton);
}

void WindowWidget::leaveEvent(QEvent*)
{
    if (_events)
        _events->mouseLeft(pointInWindow(mapFromGlobal(QPointF(QCursor::pos()))),
            modifierFlags(QGuiApplication::keyboardModifiers()));
}

void WindowWidget::mouseReleaseEvent(QMouseEvent* event)
{
    sendMouse(*event, HostAction::Up, event->button());
}

void WindowWidget::sendMouse(const QSinglePointEvent& event, HostAction action, Qt::MouseButton button)
{
    if (!_events)
        return;
    // A real event's position is rounded to whole points and only its scene position has the fraction; an
    // event that a program made for a widget may have the right one only in its position.
    const QPointF rounded = event.position();
    const QPointF exact = mapFrom(window(), event.scenePosition());
    const QPointF difference = exact - rounded;
    const bool isReal = std::fabs(difference.x()) <= 1 && std::fabs(difference.y()) <= 1;
    _events->mouseEvent({action, buttonNumber(button), pointInWindow(isReal ? exact : rounded),
        modifierFlags(event.modifiers())});
}

void WindowWidget::wheelEvent(QWheelEvent* event)
{
    if (!_events)
        return;
    const ScrollDelta scroll = scrollDelta(*event);
    // The end of a gesture scrolls by nothing.
    if (scroll.delta.width != 0 || scroll.delta.height != 0)
        event->setAccepted(_events->scrollEvent({pointInWindow(event->position()), scroll.delta,
            scroll.isPrecise, modifierFlags(event->modifiers())}));
}

void WindowWidget::keyPressEvent(QKeyEvent* event)
{
    event->setAccepted(sendKey(*event, HostAction::Down));
}

void WindowWidget::keyReleaseEvent(QKeyEvent* event)
{
    event->setAccepted(sendKey(*event, HostAction::Up));
}

/// Whether a view has handled the key.
bool WindowWidget::sendKey(const QKeyEvent& event, HostAction action)
{
    KeyCharacters keys = keyCharacters(event);
    // A modifier key alone has no characters and is not reported.
    if (!_events || (keys.characters.length() == 0 && keys.ignoringModifiers.length() == 0))
        return false;
    return _events->keyEvent({action, modifierFlags(event.modifiers()), std::move(keys.characters),
        std::move(keys.ignoringModifiers), event.isAutoRepeat(),
        pointInWindow(mapFromGlobal(QCursor::pos()))});
}

/// Tab is a key like any other, as long as there are views to move the focus to.
bool WindowWidget::focusNextPrevChild(bool next)
{
    return isEmbedded() && !(_events && _events->hasKeyView(next)) && QWidget::focusNextPrevChild(next);
}

void WindowWidget::showToolTip(QHelpEvent& event)
{
    const HostToolTip tip = _events->toolTipAt(pointInWindow(event.pos()));
    QString text = toQt(tip.text);
    if (text.isEmpty()) {
        QToolTip::hideText();
        event.ignore();
        return;
    }
    // Qt would render text that looks like HTML as HTML.
    if (Qt::mightBeRichText(text))
        text = Qt::convertFromPlainText(text, Qt::WhiteSpaceNormal);
    const QRectF area(
        NSMinX(tip.area), height() - NSMaxY(tip.area), tip.area.size.width, tip.area.size.height);
    QToolTip::showText(event.globalPos(), text, this, area.toAlignedRect());
}
