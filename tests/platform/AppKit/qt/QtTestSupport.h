#pragma once

#include <AppKit/NSWindow.h>
#include <QApplication>
#include <QBackingStore>
#include <QImage>
#include <QWidget>
#include <QtTest/qtestsystem.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <string>

/// The widget behind a window that is on screen: the top-level one of that title.
inline QWidget* widgetOf(const NSWindow& window)
{
    const std::string title = window.title().UTF8String();
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (widget->isVisible() && widget->windowTitle().toStdString() == title)
            return widget;
    }
    return nullptr;
}

/// What has been painted of the window, copied: the offscreen platform paints into an image. A null image on
/// other platforms.
inline QImage pixelsOf(const NSWindow& window)
{
    QPaintDevice* device = widgetOf(window)->backingStore()->paintDevice();
    if (device->devType() != QInternal::Image)
        return {};
    return static_cast<QImage*>(device)->convertToFormat(QImage::Format_RGB32).copy();
}

/// Serves events until `condition` holds. False when it does not within ten seconds, which is far more than
/// any correct run takes.
template <class Condition> bool serveUntil(Condition condition)
{
    constexpr int kTimeout = 10000; // milliseconds
    return QTest::qWaitFor(condition, kTimeout);
}

/// Makes a window with a title that no other one has, and shows it.
inline RetainPtr<NSWindow> shownWindow(NSRect content, NSView* view,
    NSWindowStyleMask style = NSWindowStyleMaskTitled | NSWindowStyleMaskClosable
        | NSWindowStyleMaskResizable)
{
    auto window = make<NSWindow>(content, style, NSBackingStoreBuffered, false);
    window->setTitle(NSString("window " + std::to_string(window->windowNumber())));
    window->setContentView(view);
    window->makeKeyAndOrderFront();
    QWidget* widget = widgetOf(*window);
    if (!widget || !QTest::qWaitForWindowExposed(widget))
        ADD_FAILURE() << "the window does not appear";
    QCoreApplication::processEvents();
    return window;
}

/// Makes a window the one that the user works with, as Qt sees it.
inline void activate(const NSWindow& window)
{
    QWidget* const widget = widgetOf(window);
    widget->activateWindow();
    if (!serveUntil([widget] { return QApplication::activeWindow() == widget; }))
        ADD_FAILURE() << "the window does not become active";
}

/// Makes Qt's application as a Qt program does.
inline QApplication* makeQApplication()
{
    static char name[] = "test";
    static char* arguments[] = {name, nullptr};
    static int count = 1;
    return new QApplication(count, arguments);
}

/// Leaves a child process of a test: 0 if no expectation has failed.
[[noreturn]] inline void finish()
{
    // Prints what failed, since a child process prints no results.
    const testing::TestResult& result = *testing::UnitTest::GetInstance()->current_test_info()->result();
    for (int i = 0; i < result.total_part_count(); ++i)
        std::fprintf(stderr, "%s\n", result.GetTestPartResult(i).summary());
    std::_Exit(result.Failed() ? 1 : 0);
}
