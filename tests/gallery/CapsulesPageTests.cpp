#include "Contrast.h"
#include "GalleryProcess.h"
#include "Page.h"
#include "PageNamed.h"
#include "Picture.h"
#include "support/Describe.h"
#include "support/Rendering.h"
#include "support/TemporaryFolder.h"

#include <AppKit/NSAppearance.h>
#include <AppKit/NSApplication.h>
#include <AppKit/NSEvent.h>
#include <AppKit/NSWindow.h>
#include <KorvidAppKit/ZRCapsuleView.h>

#include <cmath>
#include <gtest/gtest.h>
#include <set>

namespace {

std::vector<ZRCapsuleView*> capsulesOf(const NSView& page)
{
    std::vector<ZRCapsuleView*> capsules;
    for (const auto& card : page.subviews()) {
        for (const auto& view : card->subviews())
            capsules.push_back(dynamic_cast<ZRCapsuleView*>(view.get()));
    }
    return capsules;
}

RGBColor colorOf(const CanvasPixel& pixel)
{
    return {pixel.bytes[0] / 255.0, pixel.bytes[1] / 255.0, pixel.bytes[2] / 255.0};
}

/// The contrast between a capsule's ground, which is what lies in the gap between its left edge and its text,
/// and the pixel that differs most from it, in the middle half of its height.
double textContrast(ZRCapsuleView& capsule)
{
    constexpr double kScale = 8; // so that strokes are wider than a pixel
    const NSSize size = capsule.bounds().size;
    Rendering drawing(static_cast<int>(size.width), static_cast<int>(size.height), kScale);
    CGContextSetFillColorWithColor(drawing.context(), galleryCGColor("zel-button-bg"));
    CGContextFillRect(drawing.context(), capsule.bounds());
    drawing.draw(&capsule);
    const RGBColor ground = colorOf(drawing.at(size.height * 0.15, size.height / 2));
    double best = 1;
    for (CGFloat y = size.height / 4; y < size.height * 3 / 4; y += 1 / kScale) {
        for (CGFloat x = size.height * 0.15; x < size.width - size.height * 0.15; x += 1 / kScale)
            best = std::max(best, contrastRatio(ground, colorOf(drawing.at(x, y))));
    }
    return best;
}

} // namespace

TEST(CapsulesPage, HasCapsulesOfAllTypesWithoutOverlaps)
{
    GalleryOptions longText;
    longText.text = "a text that takes a row of its own";
    for (const GalleryOptions& options : {GalleryOptions(), longText}) {
        const auto page = makePageNamed("capsules", options);
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
    const auto page = makePageNamed("capsules", options);
    std::size_t count = 0;
    for (const ZRCapsuleView* capsule : capsulesOf(*page))
        count += capsule->string() == "mine" ? 1 : 0;
    EXPECT_EQ(count, 20u) << "all but the empty ones and those of other scripts";
}

TEST(CapsulesPage, TextsAreReadableOutlinedAndFilledInBothAppearances)
{
    const auto page = makePageNamed("capsules");
    for (const auto* appearance : {NSAppearanceNameDarkAqua, NSAppearanceNameAqua}) {
        NSApplication::sharedApplication()->setAppearance(NSAppearance::appearanceNamed(appearance));
        for (ZRCapsuleView* capsule : capsulesOf(*page)) {
            for (int clicks = 0; clicks < 3; ++clicks) {
                SCOPED_TRACE(std::string(appearance) + ": " + capsule->string().UTF8String() + ", type "
                    + std::to_string(capsule->drawType()));
                if (capsule->string().length() > 0) { // an empty text has no contrast
                    EXPECT_GE(textContrast(*capsule), kReadableContrast);
                }
                capsule->mouseDown(nullptr);
            }
        }
    }
    NSApp->setAppearance(nullptr);
}

TEST(CapsulesPage, CapsulesInARowShareABaseline)
{
    // Of a capsule's intrinsic height, 3/8 lie below the baseline; its frame is rounded up.
    for (const NSSize size : {NSMakeSize(424, 424), NSMakeSize(840, 570)}) {
        const auto page = makePageNamed("capsules");
        page->setFrameSize(size);
        CGFloat lastX = 1e9;
        std::vector<CGFloat> baselines;
        for (const ZRCapsuleView* capsule : capsulesOf(*page)) {
            const NSRect frame = capsule->frame();
            if (frame.origin.x < lastX)
                baselines.clear();
            lastX = frame.origin.x;
            if (capsule->string().length() == 0)
                continue;
            const CGFloat height = capsule->intrinsicContentSize().height;
            baselines.push_back(frame.origin.y + frame.size.height / 2 - height / 8);
            EXPECT_NEAR(baselines.back(), baselines.front(), 1) << capsule->string().UTF8String();
        }
    }
}

TEST(CapsulesPage, ShortensATextOnlyWhenItIsWiderThanTheCard)
{
    const auto wholeTexts = makePageNamed("capsules");
    for (const ZRCapsuleView* capsule : capsulesOf(*wholeTexts))
        EXPECT_EQ(capsule->string().UTF8String().find("…"), std::string::npos);
    GalleryOptions options;
    options.text =
        "a text that is much wider than any card of the gallery is in its pictures, whatever its size";
    const auto page = makePageNamed("capsules", options);
    const ZRCapsuleView* first = capsulesOf(*page).front();
    EXPECT_TRUE(first->string().UTF8String().ends_with("…"));
    EXPECT_GE(first->frame().size.width, first->intrinsicContentSize().width);
}

TEST(CapsulesPage, AClickTogglesTheFillOfACapsule)
{
    const auto page = makePageNamed("capsules");
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
        runGalleryProgram({"--text", "W", "--page", "badges", "--snapshot", folder.file("short")}).exitCode,
        0);
    ASSERT_EQ(
        runGalleryProgram({"--text", "WWW", "--page", "badges", "--snapshot", folder.file("long")}).exitCode,
        0);
    // The outline of the largest badge, a circle of radius 36 around one letter, above the text.
    const NSPoint point{kGalleryMargin + 184 - std::sqrt(36.0 * 36 - 24 * 24), kGalleryMargin + 60 + 24};
    const Components white{255, 255, 255, 255};
    EXPECT_EQ(Picture(folder.file("short/badges@2x.png"), 2).at(point.x, point.y), white);
    EXPECT_NE(Picture(folder.file("long/badges@2x.png"), 2).at(point.x, point.y), white);
}

TEST(CapsulesPage, RejectsTextThatIsNotUTF8)
{
    expectRefusal(runGalleryProgram({"--text", "\xFF"}), "the text for --text is not UTF-8");
    expectRefusal(runGalleryProgram({"--text"}), "--text needs a value");
}
