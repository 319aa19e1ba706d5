// How pages use the place that the window gives them.

#include "Captioned.h"
#include "GalleryWindow.h"
#include "Text.h"
#include "support/Describe.h"

#include <AppKit/NSClipView.h>

#include <gtest/gtest.h>

namespace {

/// Calls `visit` for the view and all views in it that are visible.
template <std::invocable<NSView&> Visit> void visitVisible(NSView& view, const Visit& visit)
{
    if (view.isHidden())
        return;
    visit(view);
    for (const auto& subview : view.subviews())
        visitVisible(*subview, visit);
}

std::string withoutSpaces(std::string text)
{
    std::erase(text, ' ');
    return text;
}

/// The pages, each in a window of some size.
class PageLayout : public testing::TestWithParam<NSSize> {
protected:
    PageLayout()
    {
        _options.isStill = true;
        window = make<GalleryWindow>(_options);
        window->setContentSize(GetParam());
    }

    template <std::invocable<PageDocument&> Visit> void visitPages(const Visit& visit)
    {
        GalleryView* view = window->galleryView();
        for (std::size_t i = 0; i < view->list()->count(); ++i) {
            view->showPage(i);
            SCOPED_TRACE(view->page().name);
            visit(dynamic_cast<PageDocument&>(*view->pageArea()->content()));
        }
    }

    RetainPtr<GalleryWindow> window;

private:
    GalleryOptions _options;
};

} // namespace

TEST_P(PageLayout, NothingIsOutsideOfItsSuperview)
{
    visitPages([](PageDocument& document) {
        visitVisible(*document.pageView(), [](NSView& view) {
            if (dynamic_cast<NSClipView*>(view.superview()))
                return; // scrolled: larger than what shows it
            EXPECT_TRUE(NSContainsRect(view.superview()->bounds(), view.frame()))
                << describe(view.frame()) << " in " << describe(view.superview()->bounds());
        });
    });
}

TEST_P(PageLayout, NoPageScrollsSideways)
{
    visitPages([this](PageDocument& document) {
        EXPECT_EQ(document.frame().size.width, window->galleryView()->pageArea()->bounds().size.width);
    });
}

TEST_P(PageLayout, EverythingIsOnWholePoints)
{
    visitPages([](PageDocument& document) {
        visitVisible(document,
            [](NSView& view) { EXPECT_EQ(describe(NSIntegralRect(view.frame())), describe(view.frame())); });
    });
}

TEST_P(PageLayout, CardsDoNotOverlapAndFillThePage)
{
    visitPages([](PageDocument& document) {
        const NSView* const page = document.pageView();
        NSRect all = NSZeroRect;
        for (const auto& card : page->subviews()) {
            if (card->isHidden())
                continue;
            all = NSUnionRect(all, card->frame());
            for (const auto& other : page->subviews())
                EXPECT_TRUE(
                    other == card || other->isHidden() || !NSIntersectsRect(other->frame(), card->frame()));
        }
        const NSRect inside = NSInsetRect(page->bounds(), kGalleryMargin, kGalleryMargin);
        EXPECT_EQ(describe(all), describe(inside));
    });
}

TEST_P(PageLayout, CaptionsAreWhole)
{
    visitPages([](PageDocument& document) {
        visitVisible(*document.pageView(), [](NSView& view) {
            const auto* captioned = dynamic_cast<CaptionedView*>(&view);
            if (!captioned)
                return;
            std::string all;
            for (const NSString& line : captioned->captionLines()) {
                EXPECT_LE(textWidth(line, kNameText), view.bounds().size.width) << line.UTF8String();
                all += line.UTF8String();
            }
            if (!all.empty()) {
                EXPECT_EQ(withoutSpaces(all), withoutSpaces(captioned->caption().UTF8String()));
            }
        });
    });
}

INSTANTIATE_TEST_SUITE_P(InTheWindow, PageLayout,
    testing::Values(
        GalleryWindow::kSize, GalleryWindow::kMinimumSize, NSMakeSize(1600, 900), NSMakeSize(801, 1003)));

TEST(CaptionedView, LeavesItsCaptionOutWhereItHasNoRoom)
{
    const auto captioned = make<CaptionedView>(make<NSView>(), "a caption of two lines", 2);
    captioned->setFrameSize({80, 80});
    EXPECT_EQ(captioned->captionLines().size(), 2u);
    EXPECT_EQ(describe(captioned->view()->frame()), "0 34 80 46");
    captioned->setFrameSize({75, 80});
    EXPECT_TRUE(captioned->captionLines().empty());
    EXPECT_EQ(describe(captioned->view()->frame()), "0 0 75 80");
    captioned->setFrameSize({80, 63});
    EXPECT_TRUE(captioned->captionLines().empty());
}
