#include "Foundation/testing/NSLogCapture.h"
#include "QtTestSupport.h"

#include <AppKit/NSApplication.h>
#include <AppKit/NSView.h>
#include <QLoggingCategory>
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>

// Qt has one handler of messages in a process, which our application installs when it makes Qt's: each test
// runs in a process of its own.

namespace {

namespace fs = std::filesystem;
using Messages = std::vector<std::string>;

/// Lets Qt make its replacement of an unsuitable runtime folder where the tests remove it.
void letQtMakeARuntimeFolder()
{
    setenv("TMPDIR", std::getenv("KORVID_TEST_HOME"), 1);
}

/// Leaves a child process of a test, with a mark on standard error.
[[noreturn]] void finishWithMark()
{
    std::fputs("done", stderr);
    finish();
}

/// Matches a standard error that holds nothing else.
testing::Matcher<const std::string&> onlyTheMark()
{
    return testing::Eq("done");
}

TEST(QtMessagesDeathTest, AMissingRuntimeFolderIsNotReported)
{
    EXPECT_EXIT(
        {
            unsetenv("XDG_RUNTIME_DIR");
            letQtMakeARuntimeFolder();
            NSApplication::sharedApplication();
            finishWithMark();
        },
        testing::ExitedWithCode(0), onlyTheMark());
}

TEST(QtMessagesDeathTest, ARuntimeFolderThatOthersMayReadIsNotReported)
{
    EXPECT_EXIT(
        {
            const fs::path folder = fs::path(std::getenv("KORVID_TEST_HOME")) / "readable";
            fs::create_directory(folder);
            fs::permissions(folder, fs::perms(0755));
            setenv("XDG_RUNTIME_DIR", folder.c_str(), 1);
            letQtMakeARuntimeFolder();
            NSApplication::sharedApplication();
            finishWithMark();
        },
        testing::ExitedWithCode(0), onlyTheMark());
}

TEST(QtMessagesDeathTest, WhatAWindowSystemDoesNotSupportIsNotReported)
{
    EXPECT_EXIT(
        {
            NSApplication::sharedApplication();
            const auto window = shownWindow(
                NSMakeRect(0, 0, 20, 20), make<NSView>(NSZeroRect).get(), NSWindowStyleMaskTitled);
            // Changes the limits of its size and raises it, neither of which the offscreen platform supports.
            window->setFrame(NSMakeRect(0, 0, 50, 60), true);
            window->orderFront();
            finishWithMark();
        },
        testing::ExitedWithCode(0), onlyTheMark());
}

TEST(QtMessagesDeathTest, WarningsGoToTheLog)
{
    EXPECT_EXIT(
        {
            NSApplication::sharedApplication();
            const NSLogCapture log;
            static const QLoggingCategory category("korvid.test");
            qWarning("a warning");
            qCCritical(category, "a worse one");
            EXPECT_EQ(log.messages(), (Messages{"a warning", "korvid.test: a worse one"}));
            finishWithMark();
        },
        testing::ExitedWithCode(0), onlyTheMark());
}

TEST(QtMessagesDeathTest, AProgramsOwnMessageHandlerStaysInstalled)
{
    EXPECT_EXIT(
        {
            static Messages seen;
            qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& text) {
                seen.push_back(text.toStdString());
            });
            NSApplication::sharedApplication();
            seen.clear();
            const NSLogCapture log;
            qWarning("a warning");
            EXPECT_EQ(seen, Messages{"a warning"});
            EXPECT_EQ(log.messages(), Messages{});
            finishWithMark();
        },
        testing::ExitedWithCode(0), onlyTheMark());
}

} // namespace
