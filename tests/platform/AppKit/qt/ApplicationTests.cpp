#include "QtTestSupport.h"

#include <AppKit/NSAppearance.h>
#include <AppKit/NSApplication.h>
#include <QPalette>
#include <QTimer>
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

/// Takes every variable away that names a display.
void forgetDisplays()
{
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "XDG_SESSION_TYPE"})
        unsetenv(name);
}

[[noreturn]] void tellPlatform()
{
    NSApplication::sharedApplication();
    const auto window =
        make<NSWindow>(NSMakeRect(0, 0, 20, 20), NSWindowStyleMaskTitled, NSBackingStoreBuffered, false);
    window->makeKeyAndOrderFront();
    std::fprintf(stderr, "platform %s", qPrintable(QGuiApplication::platformName()));
    std::exit(window->isVisible() && !NSApp->hasDisplay() ? 0 : 1);
}

TEST(DisplayChoiceDeathTest, WithoutADisplayWindowsLiveInMemory)
{
    EXPECT_EXIT((forgetDisplays(), tellPlatform()), testing::ExitedWithCode(0), "platform offscreen");
}

TEST(DisplayChoiceDeathTest, AnXServerThatDoesNotAnswerIsNoDisplay)
{
    EXPECT_EXIT((forgetDisplays(), setenv("DISPLAY", ":4711", 1), tellPlatform()), testing::ExitedWithCode(0),
        "platform offscreen");
    EXPECT_EXIT((forgetDisplays(), setenv("DISPLAY", "nonsense", 1), tellPlatform()),
        testing::ExitedWithCode(0), "platform offscreen");
}

TEST(DisplayChoiceDeathTest, AWaylandCompositorThatDoesNotAnswerIsNoDisplay)
{
    EXPECT_EXIT((forgetDisplays(), setenv("WAYLAND_DISPLAY", "wayland-4711", 1), tellPlatform()),
        testing::ExitedWithCode(0), "platform offscreen");
    EXPECT_EXIT(
        (forgetDisplays(), setenv("WAYLAND_DISPLAY", std::string(200, '/').c_str(), 1), tellPlatform()),
        testing::ExitedWithCode(0), "platform offscreen");
}

TEST(DisplayChoiceDeathTest, ThePlatformThatTheUserChoseIsTaken)
{
    EXPECT_EXIT((forgetDisplays(), setenv("QT_QPA_PLATFORM", "minimal", 1), tellPlatform()),
        testing::ExitedWithCode(0), "platform minimal");
}

void useExistingApplication()
{
    QApplication* existing = makeQApplication();
    NSApplication::sharedApplication();
    EXPECT_EQ(qApp, existing);
    EXPECT_TRUE(QApplication::quitOnLastWindowClosed());
    // Its own loop serves our windows, and ends with the last of them.
    const auto window =
        make<NSWindow>(NSMakeRect(0, 0, 20, 20), NSWindowStyleMaskTitled, NSBackingStoreBuffered, false);
    window->makeKeyAndOrderFront();
    QTimer::singleShot(0, existing, [&] { window->close(); });
    QApplication::exec();
    // And run() is a loop within it.
    QTimer::singleShot(0, existing, [&] {
        QTimer::singleShot(0, existing, [] { NSApp->stop(); });
        NSApp->run();
        QCoreApplication::exit(7);
    });
    EXPECT_EQ(QApplication::exec(), 7);
}

TEST(ApplicationDeathTest, AnExistingQApplicationIsUsed)
{
    EXPECT_EXIT((useExistingApplication(), finish()), testing::ExitedWithCode(0), "");
}

TEST(ApplicationDeathTest, OurOwnApplicationGoesOnWithoutWindows)
{
    EXPECT_EXIT(
        {
            NSApplication::sharedApplication();
            const auto window = make<NSWindow>(
                NSMakeRect(0, 0, 20, 20), NSWindowStyleMaskTitled, NSBackingStoreBuffered, false);
            window->makeKeyAndOrderFront();
            bool wentOn = false;
            QTimer::singleShot(0, qApp, [&] {
                window->close();
                QTimer::singleShot(1, qApp, [&] {
                    wentOn = true;
                    NSApp->stop();
                });
            });
            NSApp->run();
            std::_Exit(wentOn ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

void useCoreApplication()
{
    static char name[] = "test";
    static char* arguments[] = {name, nullptr};
    static int count = 1;
    const QCoreApplication existing(count, arguments);
    NSApplication::sharedApplication();
}

TEST(ApplicationDeathTest, AnApplicationWithoutWindowsIsAMistake)
{
    EXPECT_DEATH(useCoreApplication(), "AppKit needs a QApplication");
}

TEST(ApplicationDeathTest, WithoutAPortalThePaletteDecidesLive)
{
    EXPECT_EXIT(
        {
            const auto name = [] { return NSApp->effectiveAppearance()->name().UTF8String(); };
            NSApplication::sharedApplication();
            std::string names = name();
            QPalette palette = QApplication::palette();
            palette.setColor(QPalette::Window, QColor(20, 20, 20));
            QApplication::setPalette(palette);
            QCoreApplication::processEvents();
            names += " " + name();
            palette.setColor(QPalette::Window, QColor(240, 240, 240));
            QApplication::setPalette(palette);
            QCoreApplication::processEvents();
            names += " " + name();
            std::fprintf(stderr, "%s.", names.c_str());
            std::_Exit(0);
        },
        testing::ExitedWithCode(0), "NSAppearanceNameAqua NSAppearanceNameDarkAqua NSAppearanceNameAqua");
}

} // namespace
