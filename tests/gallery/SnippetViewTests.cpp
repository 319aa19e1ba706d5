// The card with a page's code.

#include "GalleryWindow.h"
#include "PageCode.h"
#include "SnippetView.h"
#include "support/Describe.h"

#include <AppKit/NSApplication.h>
#include <AppKit/NSPasteboard.h>
#include <gtest/gtest.h>

namespace {

/// The parts of a line in brackets, each after the first letter of its kind.
std::string describeSpans(const NSString& line)
{
    std::string description;
    for (const CodeSpan& span : codeSpans(line)) {
        description += "PSC"[int(span.kind)];
        description += "[" + line.substringWithRange({span.begin, span.length}).UTF8String() + "]";
    }
    return description;
}

std::string describePieces(const NSString& line, std::size_t columns)
{
    std::string description;
    for (const NSString& piece : wrappedCode(line, columns))
        description += "|" + piece.UTF8String() + "|";
    return description;
}

} // namespace

TEST(CodeSpans, AreStringsCommentsAndTheRest)
{
    EXPECT_EQ(describeSpans(""), "");
    EXPECT_EQ(describeSpans("a = 1; // \"one\""), "P[a = 1; ]C[// \"one\"]");
    EXPECT_EQ(describeSpans("f(\"x // y\", 'c');"), "P[f(]S[\"x // y\"]P[, ]S['c']P[);]");
    EXPECT_EQ(describeSpans("\"a\\\"b\" c"), "S[\"a\\\"b\"]P[ c]");
    EXPECT_EQ(describeSpans("\"open"), "S[\"open]");
    EXPECT_EQ(describeSpans("\"open\\"), "S[\"open\\]");
    EXPECT_EQ(describeSpans("a / b"), "P[a / b]");
}

TEST(WrappedCode, BreaksAfterSpacesAndIndentsFurtherLines)
{
    EXPECT_EQ(describePieces("", 10), "||");
    EXPECT_EQ(describePieces("0123456789", 10), "|0123456789|");
    EXPECT_EQ(describePieces("01234567 9a", 10), "|01234567||    9a|");
    EXPECT_EQ(describePieces("  aaaa bbbb", 10), "|  aaaa||      bbbb|");
}

TEST(WrappedCode, BreaksWordsWithoutRoomAnywhere)
{
    EXPECT_EQ(describePieces("0123456789abcdefg", 10), "|0123456789||    abcdef||    g|");
    EXPECT_EQ(describePieces("        abc", 10), "|        abc|") << "too narrow for its indentation";
}

TEST(SnippetView, CopiesItsCodeAndSaysSo)
{
    NSApplication::sharedApplication();
    NSPasteboard::generalPasteboard()->setString("old", NSPasteboardTypeString);
    const auto snippet = make<SnippetView>("auto view = make<NSView>();\nview->setFrame(frame);");
    EXPECT_EQ(snippet->copyButton()->title(), "Copy");
    snippet->copyButton()->performClick(nullptr);
    EXPECT_EQ(NSPasteboard::generalPasteboard()->stringForType(NSPasteboardTypeString),
        "auto view = make<NSView>();\nview->setFrame(frame);");
    EXPECT_EQ(snippet->copyButton()->title(), "Copied");
}

TEST(SnippetView, NeedsALineOfHeightForEachLineAndNoneMoreInItsNaturalWidth)
{
    const auto one = make<SnippetView>("first();");
    const auto two = make<SnippetView>("first();\nsecond_second_second_second_second();");
    const CGFloat line = two->heightFor(two->naturalWidth()) - one->heightFor(one->naturalWidth());
    EXPECT_EQ(line, 17);
    EXPECT_EQ(two->heightFor(two->naturalWidth() - 1) - two->heightFor(two->naturalWidth()), line);
    EXPECT_EQ(two->heightFor(two->naturalWidth() + 1000), two->heightFor(two->naturalWidth()));
}

TEST(PageCode, ExistsForEachPageWithoutEmptyLinesAroundIt)
{
    for (const GalleryPage* page : GalleryPage::all()) {
        SCOPED_TRACE(page->name);
        const std::string code = codeOfPage(page->name);
        ASSERT_FALSE(code.empty()) << "no document has code below the picture of this page";
        EXPECT_NE(code.front(), '\n');
        EXPECT_NE(code.back(), '\n');
        EXPECT_EQ(code.find("```"), std::string::npos);
    }
    EXPECT_STREQ(codeOfPage("no such page"), "");
    EXPECT_TRUE(std::string(codeOfPage("qr")).starts_with("auto code = make<ZRQRView>("));
}

TEST(PageDocument, ShowsTheCodeBelowThePageOrBesideItInAWideWindow)
{
    const auto window = make<GalleryWindow>(GalleryOptions{});
    for (const CGFloat width : {760, 1040, 1200, 1700, 2560}) {
        SCOPED_TRACE(width);
        window->setContentSize({width, 660});
        const auto& document = dynamic_cast<PageDocument&>(*window->galleryView()->pageArea()->content());
        const NSRect page = document.pageView()->frame(), code = document.snippet()->frame();
        // Cards and code are as far apart as cards, and end at the same margins.
        const NSRect cards = NSInsetRect(page, kGalleryMargin, kGalleryMargin);
        if (width < 1700) {
            EXPECT_EQ(NSMinY(cards), NSMaxY(code) + kGalleryGap);
            EXPECT_EQ(code.size.width, width - PageList::kWidth - 2 * kGalleryMargin);
            EXPECT_EQ(code.size.height, document.snippet()->heightFor(code.size.width));
            EXPECT_EQ(NSMinY(code), kGalleryMargin);
        } else {
            EXPECT_EQ(NSMinX(code), NSMaxX(cards) + kGalleryMargin);
            EXPECT_EQ(NSMaxX(code), width - PageList::kWidth - kGalleryMargin);
            EXPECT_EQ(NSMinY(code), NSMinY(cards));
            EXPECT_EQ(NSMaxY(code), NSMaxY(cards));
        }
    }
}
