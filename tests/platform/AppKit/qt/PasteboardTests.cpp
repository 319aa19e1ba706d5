// The general pasteboard and the window system's clipboard are one.

#include <AppKit/NSApplication.h>
#include <AppKit/NSPasteboard.h>
#include <QApplication>
#include <QClipboard>
#include <QImage>
#include <gtest/gtest.h>

namespace {

NSPasteboard* pasteboard()
{
    return NSPasteboard::generalPasteboard();
}

/// Contents that another program might have put there.
QClipboard& clipboard()
{
    NSApplication::sharedApplication();
    return *QApplication::clipboard();
}

} // namespace

TEST(NSPasteboard, PutsTextOnTheClipboard)
{
    for (const std::string text : {"Straße 🎉\n\tend", ""}) {
        SCOPED_TRACE(text);
        EXPECT_TRUE(pasteboard()->setString(NSString(text), NSPasteboardTypeString));
        EXPECT_EQ(clipboard().text().toStdString(), text);
        EXPECT_EQ(pasteboard()->stringForType(NSPasteboardTypeString), NSString(text));
    }
}

TEST(NSPasteboard, ReturnsTheTextThatAnotherProgramHasCopied)
{
    clipboard().setText(QStringLiteral("of another"));
    EXPECT_EQ(pasteboard()->stringForType(NSPasteboardTypeString), "of another");
}

TEST(NSPasteboard, HasNoTextWhereThereIsNone)
{
    clipboard().setImage(QImage(2, 2, QImage::Format_ARGB32));
    EXPECT_FALSE(pasteboard()->stringForType(NSPasteboardTypeString));
    clipboard().clear();
    EXPECT_FALSE(pasteboard()->stringForType(NSPasteboardTypeString));
}

TEST(NSPasteboard, RejectsNullAndOtherTypes)
{
    clipboard().setText(QStringLiteral("old"));
    const NSInteger count = pasteboard()->changeCount();
    EXPECT_FALSE(pasteboard()->setString("new", "public.png"));
    EXPECT_FALSE(pasteboard()->setString("new", nullptr));
    EXPECT_FALSE(pasteboard()->setString(nullptr, NSPasteboardTypeString));
    EXPECT_EQ(clipboard().text().toStdString(), "old");
    EXPECT_EQ(pasteboard()->changeCount(), count);
    EXPECT_FALSE(pasteboard()->stringForType("public.png"));
    EXPECT_FALSE(pasteboard()->stringForType(nullptr));
}

TEST(NSPasteboard, ClearsItsContents)
{
    clipboard().setText(QStringLiteral("old"));
    const NSInteger before = pasteboard()->changeCount();
    const NSInteger count = pasteboard()->clearContents();
    EXPECT_GT(count, before);
    EXPECT_EQ(count, pasteboard()->changeCount());
    EXPECT_FALSE(pasteboard()->stringForType(NSPasteboardTypeString));
    EXPECT_EQ(clipboard().text().toStdString(), "");
}

TEST(NSPasteboard, CountsItsOwnChangesAndThoseOfOthers)
{
    const NSInteger first = pasteboard()->changeCount();
    pasteboard()->setString("own", NSPasteboardTypeString);
    const NSInteger second = pasteboard()->changeCount();
    EXPECT_GT(second, first);
    clipboard().setText(QStringLiteral("of another"));
    EXPECT_GT(pasteboard()->changeCount(), second);
}
