#include "GalleryProcess.h"
#include "Page.h"
#include "Picture.h"
#include "support/Describe.h"
#include "support/TemporaryFolder.h"

#include <AppKit/NSEvent.h>
#include <AppKit/NSWindow.h>
#include <KorvidAppKit/ZRCapsuleView.h>

#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <set>

namespace {

RetainPtr<NSView> makePage(const GalleryOptions& options = {})
{
    for (const GalleryPage* page : GalleryPage::all()) {
        if (std::strcmp(page->name, "capsules") == 0)
            return page->makeView(options);
    }
    return nullptr;
}

std::vector<ZRCapsuleView*> capsulesOf(const NSView& page)
{
    std::vector<ZRCapsuleView*> capsules;
    for (const auto& card : page.subviews()) {
        for (const auto& view : card->subviews())
            capsules.push_back(dynamic_cast<ZRCapsuleView*>(view.get()));
    }
    return capsules;
}

} // namespace

TEST(CapsulesPage, HasCapsulesOfAllTypesWithoutOverlaps)
{
    GalleryOptions longText;
    longText.text = "a text that takes a row of its own";
    for (const GalleryOptions& options : {GalleryOptions(), longText}) {
        const auto page = makePage(options);
        const auto capsules = capsulesOf(*page);
        std::set<std::int32_t> types;
        for (const ZRCapsuleView* capsule : capsules) {
            types.insert(capsule->drawType());
            EXPECT_TRUE(NSContainsRect(capsule->superview()->bounds(), capsule->frame()));
            EXPECT_EQ(describe(NSIntegralRect(capsule->frame())), describe(capsule->frame()))
                << "whole points";
            for (const ZRCapsuleView* other : capsules)
                EXPECT_TRUE(other == capsule || other->superview() != capsule->superview()
                    || !NSIntersectsRect(other->frame(), capsule->frame()));
        }
        EXPECT_EQ(types, (std::set<std::int32_t>{0, 1, 2}));
        for (const auto& card : page->subviews())
            EXPECT_TRUE(NSContainsRect(page->bounds(), card->frame()));
        EXPECT_EQ(std::floor(page->frame().size.height), page->frame().size.height) << "whole pixels";
    }
}

TEST(CapsulesPage, ShowsTheUsersText)
{
    GalleryOptions options;
    options.text = "mine";
    const auto page = makePage(options);
    std::size_t count = 0;
    for (const ZRCapsuleView* capsule : capsulesOf(*page))
        count += capsule->string() == "mine" ? 1 : 0;
    EXPECT_EQ(count, 20u) << "all but the empty ones and those of other scripts";
}

TEST(CapsulesPage, AClickTogglesTheFillOfACapsule)
{
    const auto page = makePage();
    const auto window = make<NSWindow>(NSMakeRect(0, 0, page->frame().size.width, page->frame().size.height),
        NSWindowStyleMaskTitled, NSBackingStoreBuffered, true);
    window->setContentView(page);
    ZRCapsuleView* capsule = capsulesOf(*page).front();
    const NSPoint point = capsule->convertPointToView({5, 5}, nullptr);
    for (const std::int32_t type : {kZRCapsuleDrawTypeFilled, kZRCapsuleDrawTypeOutline}) {
        window->sendEvent(NSEvent::mouseEventWithType(
            NSEventTypeLeftMouseDown, point, 0, 0, window->windowNumber(), nullptr, 0, 1, 1)
                              .get());
        EXPECT_EQ(capsule->drawType(), type);
    }
}

TEST(CapsulesPage, ShowsTheTextOptionInBadges)
{
    const TemporaryFolder folder;
    ASSERT_EQ(
        runGallery({"--text", "W", "--page", "badges", "--snapshot", folder.file("short")}).exitCode, 0);
    ASSERT_EQ(
        runGallery({"--text", "WWW", "--page", "badges", "--snapshot", folder.file("long")}).exitCode, 0);
    // The outline of the largest badge, a circle of radius 36 around one letter, above the text.
    const NSPoint point{kGalleryMargin + 188 - std::sqrt(36.0 * 36 - 24 * 24), kGalleryMargin + 60 + 24};
    const Components white{255, 255, 255, 255};
    EXPECT_EQ(Picture(folder.file("short/badges@2x.png"), 2).at(point.x, point.y), white);
    EXPECT_NE(Picture(folder.file("long/badges@2x.png"), 2).at(point.x, point.y), white);
}

TEST(CapsulesPage, RejectsTextThatIsNotUTF8)
{
    expectRefusal(runGallery({"--text", "\xFF"}), "the text for --text is not UTF-8");
    expectRefusal(runGallery({"--text"}), "--text needs a value");
}
