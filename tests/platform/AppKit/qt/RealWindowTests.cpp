#include "../RecordingView.h"
#include "QtTestSupport.h"
#include "XServer.h"

#include <AppKit/NSApplication.h>
#include <QPixmap>
#include <QScreen>
#include <gtest/gtest.h>

#include <cstdlib>

// Windows of a real X server, with a mouse that is moved from outside. Each test runs in a process of its
// own, since Qt connects to one window system only.

namespace {

/// A window at the top left of the screen, so that the screen's pixels are its own, with a view of 50 x 30
/// points in it.
struct Stage {
    Log log;
    RetainPtr<RecordingView> root = make<RecordingView>(NSZeroRect, "root", log);
    RetainPtr<RecordingView> view = make<RecordingView>(NSMakeRect(20, 10, 50, 30), "view", log);
    RetainPtr<NSWindow> window;

    Stage()
    {
        root->color = NSColor::colorWithSRGBRed(2 / 255.0, 2 / 255.0, 29 / 255.0, 1);
        view->color = NSColor::redColor();
        root->addSubview(view);
        window =
            shownWindow(NSMakeRect(0, 0, 120, 90), root, NSWindowStyleMaskTitled | NSWindowStyleMaskClosable);
        const CGFloat screenHeight =
            window->frame().origin.y + widgetOf(*window)->screen()->geometry().height();
        window->setFrameOrigin(NSMakePoint(0, screenHeight - 90));
        EXPECT_TRUE(serveUntil([&] { return widgetOf(*window)->geometry().topLeft() == QPoint(0, 0); }));
        log.clear();
    }

    /// Waits until as many events have been logged as expected.
    void expect(const Log& expected) const
    {
        serveUntil([&] { return log.size() >= expected.size(); });
        EXPECT_EQ(log, expected);
    }
    QImage screen() const
    {
        return widgetOf(*window)
            ->screen()
            ->grabWindow(widgetOf(*window)->winId())
            .toImage()
            .convertToFormat(QImage::Format_RGB32);
    }
};

void clickAndDrag()
{
    const XServer server;
    Stage stage;
    xdotool({"mousemove", "25", "75", "click", "1"});
    stage.expect({"view down 5 5 x1", "view up 5 5 x1"});
    stage.log.clear();

    xdotool({"mousemove", "5", "5", "click", "1"});
    stage.expect({"root down 5 85 x1", "root up 5 85 x1"});
    stage.log.clear();

    // The view receives the mouse until the release, also far outside the window.
    xdotool({"mousemove", "25", "75", "mousedown", "1"});
    stage.expect({"view down 5 5 x1"});
    xdotool({"mousemove", "300", "400"});
    EXPECT_TRUE(serveUntil([&] { return stage.log.back() == "view dragged 280 -320 x1"; }))
        << stage.log.back();
    xdotool({"mouseup", "1"});
    EXPECT_TRUE(serveUntil([&] { return stage.log.back() == "view up 280 -320 x1"; })) << stage.log.back();
    stage.log.clear();

    xdotool({"mousemove", "25", "75", "click", "3"});
    stage.expect({"view right down 5 5 x1", "view right up 5 5 x1"});
    stage.log.clear();

    xdotool({"click", "--repeat", "3", "--delay", "20", "1"});
    stage.expect({"view down 5 5 x1", "view up 5 5 x1", "view down 5 5 x2", "view up 5 5 x2",
        "view down 5 5 x3", "view up 5 5 x3"});
}

TEST(RealWindowDeathTest, ClicksAndDragsArrive)
{
    EXPECT_EXIT((clickAndDrag(), finish()), testing::ExitedWithCode(0), "");
}

void turnWheel()
{
    const XServer server;
    Stage stage;
    // The X server's buttons 4 to 7 are the wheel's up, down, left and right.
    xdotool({"mousemove", "25", "75", "click", "4"});
    stage.expect({"view scrolls 0 3 lines 5 5"});
    xdotool({"click", "5", "click", "6", "click", "7"});
    stage.expect({"view scrolls 0 3 lines 5 5", "view scrolls 0 -3 lines 5 5", "view scrolls 3 0 lines 5 5",
        "view scrolls -3 0 lines 5 5"});
}

TEST(RealWindowDeathTest, TheWheelArrives)
{
    EXPECT_EXIT((turnWheel(), finish()), testing::ExitedWithCode(0), "");
}

void typeKeys()
{
    const XServer server;
    Stage stage;
    stage.view->acceptsKeys = true;
    stage.window->makeFirstResponder(stage.view);
    stage.log.clear();
    EXPECT_TRUE(serveUntil([&] { return stage.window->isKeyWindow(); }));
    xdotool({"key", "a"});
    stage.expect({"view key a", "view key up a"});
    stage.log.clear();
    xdotool({"key", "Left"});
    stage.expect({"view key \xEF\x9C\x82", "view key up \xEF\x9C\x82"});
}

TEST(RealWindowDeathTest, KeysArrive)
{
    EXPECT_EXIT((typeKeys(), finish()), testing::ExitedWithCode(0), "");
}

void showPixels(const char* scale)
{
    setenv("QT_SCALE_FACTOR", scale, 1);
    const int factor = std::atoi(scale);
    const XServer server;
    Stage stage;
    ASSERT_EQ(stage.window->backingScaleFactor(), factor);
    const QImage image = stage.screen();
    ASSERT_EQ(image.size(), QSize(120 * factor, 90 * factor));
    int wrong = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const bool isView = x >= 20 * factor && x < 70 * factor && y >= 50 * factor && y < 80 * factor;
            wrong += image.pixel(x, y) != (isView ? 0xFFFF0000 : 0xFF02021D);
        }
    }
    EXPECT_EQ(wrong, 0);
    if (factor == 2) {
        // An odd pixel is half a point, which whole-point positions would lose.
        xdotool({"mousemove", "41", "149", "mousedown", "1"});
        stage.expect({"view down 0.5 5.5 x1"});
        xdotool({"mouseup", "1"});
    }
}

TEST(RealWindowDeathTest, ShowsExactlyWhatWasDrawnAtScaleOne)
{
    EXPECT_EXIT((showPixels("1"), finish()), testing::ExitedWithCode(0), "");
}

TEST(RealWindowDeathTest, ShowsExactlyWhatWasDrawnAtScaleTwo)
{
    EXPECT_EXIT((showPixels("2"), finish()), testing::ExitedWithCode(0), "");
}

void showToolTip()
{
    const XServer server;
    Stage stage;
    stage.view->setToolTip("what it is");
    xdotool({"mousemove", "5", "5", "mousemove", "25", "75", "mousemove", "26", "75"});
    QWidget* tip = nullptr;
    EXPECT_TRUE(serveUntil([&] {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (widget->isVisible() && widget->windowType() == Qt::ToolTip)
                tip = widget;
        }
        return tip != nullptr;
    }));
}

TEST(RealWindowDeathTest, AToolTipAppearsUnderARestingPointer)
{
    EXPECT_EXIT((showToolTip(), finish()), testing::ExitedWithCode(0), "");
}

void uncover()
{
    const XServer server;
    Stage stage;
    const QImage before = stage.screen();
    {
        const auto cover =
            shownWindow(NSMakeRect(0, 0, 60, 60), make<NSView>().get(), NSWindowStyleMaskBorderless);
        cover->setFrameOrigin(NSMakePoint(0, stage.window->frame().origin.y + 30));
        QCoreApplication::processEvents();
    }
    EXPECT_TRUE(serveUntil([&] { return stage.screen() == before; }));
    EXPECT_EQ(stage.log, Log{});
}

TEST(RealWindowDeathTest, WhatAnotherWindowCoveredIsNotDrawnAgain)
{
    EXPECT_EXIT((uncover(), finish()), testing::ExitedWithCode(0), "");
}

void openByDisplayAlone()
{
    // Terminating is a reset that no client survives by luck.
    const XServer server("-terminate");
    unsetenv("QT_QPA_PLATFORM");
    unsetenv("XDG_SESSION_TYPE");
    unsetenv("WAYLAND_DISPLAY");
    const Stage stage;
    EXPECT_EQ(QGuiApplication::platformName(), QStringLiteral("xcb"));
    EXPECT_TRUE(NSApp->hasDisplay());
}

TEST(RealWindowDeathTest, TheFirstClientOfAnXServerOpensItWithoutResettingIt)
{
    EXPECT_EXIT((openByDisplayAlone(), finish()), testing::ExitedWithCode(0), "");
}

} // namespace
