#include "QtWindow.h"

#include "Conversions.h"
#include "WindowWidget.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QScreen>

namespace {

Qt::WindowFlags flagsFor(NSWindowStyleMask style)
{
    Qt::WindowFlags flags = Qt::Window;
    if (!(style & NSWindowStyleMaskTitled))
        return flags | Qt::FramelessWindowHint;
    flags |= Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint;
    if (style & NSWindowStyleMaskClosable)
        flags |= Qt::WindowCloseButtonHint;
    if (style & NSWindowStyleMaskMiniaturizable)
        flags |= Qt::WindowMinimizeButtonHint;
    if (style & NSWindowStyleMaskResizable)
        flags |= Qt::WindowMaximizeButtonHint;
    return flags;
}

} // namespace

QtWindow::QtWindow(HostWindowEvents& events, NSWindowStyleMask style, NSRect content)
    : QtWindow(new WindowWidget(events, flagsFor(style)), (style & NSWindowStyleMaskResizable) != 0)
{
    QtWindow::setContentRect(content);
}

QtWindow::QtWindow(WindowWidget* widget, bool isResizable)
    : _widget(widget)
    , _isResizable(isResizable)
{
}

QtWindow::~QtWindow()
{
    _widget->detach();
    _widget->hide();
    if (_widget->isHandlingEvent()) {
        _widget->setParent(nullptr); // which may be about to be destroyed
        _widget->deleteLater();
    } else {
        delete _widget;
    }
}

void QtWindow::setTitle(const NSString& title)
{
    _widget->setWindowTitle(toQt(title));
}

void QtWindow::setContentRect(NSRect content)
{
    const int width = static_cast<int>(content.size.width);
    const int height = static_cast<int>(content.size.height);
    const QScreen* screen = QGuiApplication::primaryScreen();
    const int screenHeight = screen ? screen->geometry().height() : 0;
    if (!_isResizable)
        _widget->setFixedSize(width, height);
    _widget->setGeometry(
        static_cast<int>(content.origin.x), screenHeight - static_cast<int>(NSMaxY(content)), width, height);
}

void QtWindow::setMinimumContentSize(NSSize size)
{
    if (_isResizable) // the size of others is fixed
        _widget->setMinimumSize(static_cast<int>(size.width), static_cast<int>(size.height));
}

NSRect QtWindow::frameForContentRect(NSRect content) const
{
    const QRect inner = _widget->geometry();
    const QRect outer = _widget->frameGeometry();
    const int left = inner.left() - outer.left();
    const int bottom = outer.bottom() - inner.bottom();
    return NSMakeRect(content.origin.x - left, content.origin.y - bottom,
        content.size.width + (outer.width() - inner.width()),
        content.size.height + (outer.height() - inner.height()));
}

CGFloat QtWindow::backingScaleFactor() const
{
    return _widget->devicePixelRatioF();
}

void QtWindow::show(bool makeKey)
{
    _widget->setAttribute(Qt::WA_ShowWithoutActivating, !makeKey);
    // A window that is shown appears in front.
    if (_widget->isVisible())
        _widget->raise();
    else
        _widget->show();
    if (makeKey)
        _widget->activateWindow();
}

void QtWindow::hide()
{
    _widget->hide();
}

void QtWindow::close()
{
    _widget->closeByProgram();
}

bool QtWindow::isVisible() const
{
    return _widget->isVisible();
}

bool QtWindow::isKey() const
{
    return _widget->isKey();
}

bool QtWindow::isActive() const
{
    return _widget->isActiveWindow();
}

std::optional<bool> QtWindow::isDark() const
{
    return _widget->isDark();
}

void QtWindow::makeKey()
{
    if (_widget->isEmbedded())
        _widget->setFocus();
    _widget->activateWindow();
}

void QtWindow::setCursor(HostCursor cursor)
{
    const Qt::CursorShape shape = cursorShape(cursor);
    if (shape != _widget->cursor().shape())
        _widget->setCursor(shape);
}

void QtWindow::setNeedsDisplayInRect(NSRect rect)
{
    _widget->setNeedsDisplayInRect(rect);
}

void QtWindow::displayIfNeeded()
{
    // Qt has posted one update request for everything that is dirty.
    QCoreApplication::sendPostedEvents(_widget, QEvent::UpdateRequest);
}

void QtWindow::accessibilityDidChange(NSView& view, HostAccessibilityChange change)
{
    _widget->accessibleViews().viewDidChange(view, change);
}
