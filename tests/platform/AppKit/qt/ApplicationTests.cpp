#include "QtTestSupport.h"

#include <AppKit/NSAppearance.h>
#include <AppKit/NSApplication.h>
#include <QPalette>
#include <QTimer>
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

namespace {

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

TEST(ApplicationDeathTest, ClosingTheLastWindowDoesNotEndAnApplicationOfOurOwn)
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

TEST(ApplicationDeathTest, AQCoreApplicationIsRefused)
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
