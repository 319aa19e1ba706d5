#include "SoakRun.h"

#include "Page.h"

#include <AppKit/NSAppearance.h>
#include <AppKit/NSApplication.h>
#include <AppKit/NSFont.h>
#include <AppKit/NSStringAttributes.h>
#include <CoreGraphics/CoreGraphics.h>
#include <CoreText/CoreText.h>
#include <Foundation/NSAttributedString.h>
#include <Foundation/NSDictionary.h>

#include <QApplication>
#include <QTimer>

#include <cstdio>
#include <utility>

namespace {

void drawTwice(CGContextRef context, const std::string& text, CGFloat size)
{
    const auto font = NSFont::systemFontOfSize(size);
    const auto attributes = make<NSDictionary>(NSDictionary::Map{{NSFontAttributeName, font}});
    const auto string = make<NSAttributedString>(NSString(text), attributes);
    for (int time = 0; time < 2; ++time) {
        const auto line = adopt(CTLineCreateWithAttributedString(string));
        CGContextSetTextPosition(context, 0, size);
        CTLineDraw(line, context);
    }
}

/// Draws more lines of text and small shapes than the caches of layouts, glyphs and masks hold. Each is drawn
/// twice in a row, as what is drawn only once is not cached.
void fillCaches()
{
    constexpr std::size_t kWidth = 8192, kHeight = 256;
    const auto context =
        adopt(CGBitmapContextCreate(nullptr, kWidth, kHeight, 8, 0, nullptr, kCGImageAlphaOnly));
    constexpr int kShapes = 1000;
    for (int i = 0; i < kShapes; ++i) {
        const CGRect ellipse = CGRectMake(0, 0, 100 + i * 0.125, 200);
        CGContextFillEllipseInRect(context, ellipse);
        CGContextFillEllipseInRect(context, ellipse);
    }
    constexpr int kLines = 4000;
    for (int i = 0; i < kLines; ++i)
        drawTwice(context, "Line of text with the number " + std::to_string(i), 9 + i % 40);
    // Too long for the cache of masks: glyph by glyph.
    constexpr int kLargestFont = 150;
    for (int size = 40; size < kLargestFont; ++size)
        drawTwice(context, "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789", size);
}

} // namespace

SoakRun::SoakRun(const SoakOptions& options)
    : _options(options)
    , _user(options.seed)
{
}

SoakRun::~SoakRun() = default;

void SoakRun::openWindow()
{
    _window = make<GalleryWindow>(GalleryOptions());
    _window->makeKeyAndOrderFront();
    _user.setWindow(_window);
}

void SoakRun::closeWindow()
{
    _user.setWindow(nullptr);
    if (_window)
        _window->close();
    _window = nullptr;
}

void SoakRun::serveEvents()
{
    for (int turn = 0; turn < 5; ++turn) {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
    }
}

void SoakRun::tour()
{
    if (!_window->isVisible())
        openWindow(); // the user has closed it
    NSApp->setAppearance(NSAppearance::appearanceNamed(NSAppearanceNameDarkAqua));
    _window->setContentSize(GalleryWindow::kSize);
    const std::size_t count = _window->galleryView()->list()->count();
    for (std::size_t page = 0; page < count; ++page) {
        _window->galleryView()->showPage(page);
        serveEvents();
    }
    _pagesShown += count;
    _window->galleryView()->showPage(0);
    serveEvents();
}

/// The user acts once in a while, in the event loops of dialogs too: each act schedules the next one before
/// it happens, since it may not return before a dialog is closed.
void SoakRun::scheduleNext()
{
    QTimer::singleShot(_options.pause, [this] {
        if (!_isActing)
            return;
        if (isRoundOver() && !QApplication::activeModalWidget()) {
            _isActing = false;
            _loop.quit();
            return;
        }
        scheduleNext();
        if (_window && !_window->isVisible() && !QApplication::activeModalWidget())
            openWindow();
        _user.act();
    });
}

bool SoakRun::isRoundOver() const
{
    return std::chrono::steady_clock::now() >= _roundEnd && actions() >= _actionsAtRoundEnd;
}

void SoakRun::runRound(bool closesWindow)
{
    if (!_window)
        openWindow();
    _user.setMayClose(closesWindow);
    _roundEnd = std::chrono::steady_clock::now() + _options.duration / (2 * _options.rounds);
    _actionsAtRoundEnd = actions() + _options.actions / (2 * _options.rounds);
    _isActing = true;
    scheduleNext();
    _loop.exec();
    tour();
    if (closesWindow) {
        closeWindow();
        serveEvents();
    }
    auto& record = closesWindow ? _withoutWindow : _withWindow;
    record.add(heapInUse());
    if (_options.printsProgress) {
        std::fprintf(stderr, "%d events, %s: %.2f MB on the heap\n", actions(),
            closesWindow ? "no window" : "window open", double(record.samples().back()) / 1e6);
    }
}

void SoakRun::run()
{
    if (_options.fillsCaches)
        fillCaches();
    for (int round = 0; round < 2 * _options.rounds; ++round)
        runRound(round < _options.rounds);
    closeWindow();
    NSApp->setAppearance(nullptr);
}
