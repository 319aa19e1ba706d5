#include "QtStatusItem.h"

#include "Conversions.h"

#include <CoreGraphics/CGBitmapContext.h>
#include <CoreGraphics/CGColorSpace.h>
#include <QGuiApplication>
#include <QPixmap>
#include <QScreen>

namespace {

/// How often the tray is looked at.
constexpr int kInterval = 500; // milliseconds
/// The side of an icon whose tray does not report its place.
constexpr int kSide = 22;

QImage qtImage(CGImageRef image)
{
    const int width = int(CGImageGetWidth(image)), height = int(CGImageGetHeight(image));
    QImage copy(width, height, QImage::Format_RGBA8888_Premultiplied);
    copy.fill(Qt::transparent);
    const auto space = adopt(CGColorSpaceCreateWithName(kCGColorSpaceSRGB));
    const auto context = adopt(CGBitmapContextCreate(copy.bits(), std::size_t(width), std::size_t(height), 8,
        std::size_t(copy.bytesPerLine()), space, kCGImageAlphaPremultipliedLast));
    CGContextDrawImage(context, CGRectMake(0, 0, width, height), image);
    return copy;
}

} // namespace

QtStatusItem::QtStatusItem(HostStatusItemEvents& events)
    : _events(events)
{
    QObject::connect(
        &_icon, &QSystemTrayIcon::activated, &_icon, [this](QSystemTrayIcon::ActivationReason reason) {
            if (reason == QSystemTrayIcon::Trigger || reason == QSystemTrayIcon::DoubleClick)
                _events.statusItemWasPressed();
        });
    _timer.setInterval(kInterval);
    QObject::connect(&_timer, &QTimer::timeout, &_icon, [this] { lookForChange(); });
}

void QtStatusItem::setImage(CGImageRef image)
{
    _icon.setIcon(QIcon(QPixmap::fromImage(qtImage(image))));
}

void QtStatusItem::setToolTip(const NSString& text)
{
    _icon.setToolTip(toQt(text));
}

void QtStatusItem::setVisible(bool visible)
{
    _isWanted = visible;
    if (visible)
        _timer.start();
    else
        _timer.stop();
    lookForChange();
}

std::optional<NSRect> QtStatusItem::frame() const
{
    if (!_icon.isVisible())
        return std::nullopt;
    const QRect reported = _icon.geometry();
    if (!reported.isEmpty())
        return upward(reported);
    const QScreen* const screen = QGuiApplication::primaryScreen();
    if (!screen)
        return std::nullopt;
    const QRect desktop = screen->geometry();
    return upward(QRect(desktop.right() + 1 - kSide, desktop.top(), kSide, kSide));
}

void QtStatusItem::lookForChange()
{
    // Without a tray Qt warns of an icon that is shown.
    _icon.setVisible(_isWanted && QSystemTrayIcon::isSystemTrayAvailable());
    const auto now = frame();
    const bool isSame =
        now.has_value() == _lastFrame.has_value() && (!now || NSEqualRects(*now, *_lastFrame));
    if (isSame)
        return;
    _lastFrame = now;
    _events.statusItemFrameDidChange();
}
