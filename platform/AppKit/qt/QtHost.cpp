#include "QtHost.h"

#include "AccessibleWindow.h"
#include "AlertDialog.h"
#include "Conversions.h"
#include "PlatformChoice.h"
#include "QtEmbeddedWindow.h"
#include "QtMessages.h"
#include "QtStatusItem.h"
#include "QtWindow.h"

#include <QApplication>
#include <QByteArray>
#include <QClipboard>
#include <QEvent>
#include <QEventLoop>
#include <QMimeData>
#include <QPalette>
#include <QScreen>
#include <QThread>

#include <cerrno>
#include <cstdio>
#include <cstdlib>

namespace {

/// Makes the QApplication, which lives as long as the process. Throws NSException when the user's choice of a
/// platform cannot be opened.
void makeApplication()
{
    sendQtMessagesToLog();
    const PlatformChoice choice = choosePlatform();
    // Qt keeps a reference to the count, and the pointers.
    static QByteArray platform;
    platform = choice.name;
    static char option[] = "-platform";
    static char* arguments[] = {program_invocation_name, option, platform.data(), nullptr};
    static int count = 3;
    if (platform.isEmpty()) {
        count = 1;
        arguments[1] = nullptr;
    }
    new QApplication(count, arguments);
    // As in AppKit, closing the last window does not end the application.
    QApplication::setQuitOnLastWindowClosed(false);
}

} // namespace

/// Makes the host, which lives as long as the process.
extern "C" KORVID_EXPORT Host* makeQtHost()
{
    return new QtHost;
}

QtHost::QtHost()
{
    if (!QCoreApplication::instance())
        makeApplication();
    if (!qobject_cast<QApplication*>(QCoreApplication::instance())) {
        std::fputs("AppKit needs a QApplication, but the process has made another kind of Qt application.\n",
            stderr);
        std::abort();
    }
    installAccessibleWindows();
    qApp->installEventFilter(this);
    _colorScheme.follow([this] { appearanceMayHaveChanged(); });
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this, [this] { ++_clipboardChanges; });
}

std::unique_ptr<HostWindow> QtHost::makeWindow(
    HostWindowEvents& events, NSWindowStyleMask style, NSRect content)
{
    return std::make_unique<QtWindow>(events, style, content);
}

std::unique_ptr<HostWindow> QtHost::makeEmbeddedWindow(HostWindowEvents& events, void* parent)
{
    return std::make_unique<QtEmbeddedWindow>(events, *static_cast<QWidget*>(parent));
}

std::unique_ptr<HostStatusItem> QtHost::makeStatusItem(HostStatusItemEvents& events)
{
    return std::make_unique<QtStatusItem>(events);
}

bool QtHost::isActive() const
{
    return QApplication::activeWindow() != nullptr;
}

bool QtHost::hasDisplay() const
{
    const QString platform = QGuiApplication::platformName();
    return platform != QLatin1String("offscreen") && platform != QLatin1String("minimal");
}

// The event loop.

void QtHost::run()
{
    // The application's own loop, which Qt's quit() ends, cannot be nested.
    if (_loops.empty() && QThread::currentThread()->loopLevel() == 0) {
        _loops.push_back(nullptr);
        QApplication::exec();
    } else {
        QEventLoop loop;
        _loops.push_back(&loop);
        loop.exec();
    }
    _loops.pop_back();
}

std::optional<std::size_t> QtHost::runAlert(const HostAlert& alert)
{
    AlertDialog dialog(alert);
    QEventLoop loop;
    _loops.push_back(&loop);
    const auto button = dialog.run(loop);
    _loops.pop_back();
    return button;
}

void QtHost::stop(std::size_t count)
{
    for (auto loop = _loops.rbegin(); loop != _loops.rend() && count > 0; ++loop, --count) {
        if (*loop)
            (*loop)->exit();
        else
            QCoreApplication::exit();
    }
}

void QtHost::stopAll()
{
    // Unlike quit(), this does not close all windows first.
    QCoreApplication::exit();
}

// Appearance.

bool QtHost::isDark() const
{
    switch (_colorScheme.preference()) {
    case ColorScheme::Preference::Dark:
        return true;
    case ColorScheme::Preference::Light:
        return false;
    case ColorScheme::Preference::None:
        break;
    }
    return isDarkPalette(QApplication::palette());
}

void QtHost::setAppearanceObserver(std::function<void()> observer)
{
    _appearanceObserver = std::move(observer);
}

void QtHost::appearanceMayHaveChanged()
{
    if (_appearanceObserver)
        _appearanceObserver();
}

bool QtHost::eventFilter(QObject* object, QEvent* event)
{
    if (object == qApp && event->type() == QEvent::ApplicationPaletteChange)
        appearanceMayHaveChanged();
    return false;
}

// Screen and settings.

std::vector<HostScreen> QtHost::screens() const
{
    std::vector<HostScreen> screens;
    for (const QScreen* screen : QGuiApplication::screens()) {
        screens.push_back({fromQt(screen->name()), upward(screen->geometry()),
            upward(screen->availableGeometry()), screen->devicePixelRatio()});
    }
    return screens;
}

NSRect QtHost::visibleScreenFrame() const
{
    const QScreen* screen = QGuiApplication::primaryScreen();
    return screen ? upward(screen->availableGeometry()) : NSZeroRect;
}

CGFloat QtHost::backingScaleFactor() const
{
    return qApp->devicePixelRatio();
}

double QtHost::doubleClickInterval() const
{
    return QApplication::doubleClickInterval() / 1000.0;
}

// Clipboard.

NSString QtHost::clipboardText() const
{
    const QMimeData* const data = QGuiApplication::clipboard()->mimeData();
    return data && data->hasText() ? fromQt(data->text()) : NSString(nullptr);
}

void QtHost::setClipboardText(const NSString& text)
{
    if (text)
        QGuiApplication::clipboard()->setText(toQt(text));
    else
        QGuiApplication::clipboard()->clear();
}
