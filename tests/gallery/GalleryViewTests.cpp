#include "GalleryWindow.h"
#include "support/Describe.h"

#include <AppKit/NSEvent.h>
#include <gtest/gtest.h>

#include <cstring>

namespace {

/// The window with all pages.
class GalleryKeys : public testing::Test {
protected:
    void press(char16_t key, NSEventModifierFlags flags = 0)
    {
        const NSString characters(std::u16string(1, key));
        window->sendEvent(NSEvent::keyEventWithType(NSEventTypeKeyDown, NSZeroPoint, flags, 0,
            window->windowNumber(), nullptr, characters, characters, false)
                              .get());
    }
    const char* shownPage() const { return view->page().name; }
    ScrollArea* pages() const { return view->pageArea(); }

    RetainPtr<GalleryWindow> window = make<GalleryWindow>(GalleryOptions());
    GalleryView* view = window->galleryView();
};

constexpr char16_t kTab = 0x09, kEscape = 0x1B;

} // namespace

TEST_F(GalleryKeys, WindowFitsASmallScreenAndIsResizable)
{
    // 1280 x 720 less a title bar and a panel of 30 points each.
    EXPECT_LE(window->contentView()->frame().size.width, 1280);
    EXPECT_LE(window->contentView()->frame().size.height, 720 - 2 * 30);
    EXPECT_TRUE(window->styleMask() & NSWindowStyleMaskResizable);
    window->setContentSize({10, 10});
    EXPECT_EQ(describe(window->contentView()->frame().size), "760 420");
}

TEST_F(GalleryKeys, ListsAllPagesAndShowsTheFirst)
{
    EXPECT_EQ(view->list()->count(), GalleryPage::all().size());
    EXPECT_STREQ(shownPage(), "qr");
    EXPECT_EQ(window->firstResponder(), view->list());
}

TEST_F(GalleryKeys, ShowsThePageThatIsSelectedInTheList)
{
    press(NSDownArrowFunctionKey);
    EXPECT_STREQ(shownPage(), "colors");
    const auto* colors = pages()->content();
    EXPECT_EQ(colors->window(), window);
    press(NSEndFunctionKey);
    EXPECT_EQ(&view->page(), GalleryPage::all().back());
    EXPECT_EQ(colors->window(), nullptr);
    press(NSHomeFunctionKey);
    press(NSDownArrowFunctionKey);
    EXPECT_EQ(pages()->content(), colors) << "a page is made once";
}

TEST_F(GalleryKeys, ControlWithPageKeysShowsTheNextAndThePreviousPage)
{
    press(NSPageUpFunctionKey, NSEventModifierFlagControl);
    EXPECT_STREQ(shownPage(), "qr");
    press(NSPageDownFunctionKey, NSEventModifierFlagControl);
    EXPECT_STREQ(shownPage(), "colors");
    EXPECT_EQ(view->list()->selectedRow(), 1u);
    press(NSPageUpFunctionKey, NSEventModifierFlagControl);
    EXPECT_STREQ(shownPage(), "qr");
}

TEST_F(GalleryKeys, PageKeysScrollThePage)
{
    window->setContentSize(GalleryWindow::kMinimumSize);
    press(NSPageDownFunctionKey);
    EXPECT_GT(pages()->offset().y, 0);
    press(NSPageUpFunctionKey);
    EXPECT_EQ(pages()->offset().y, 0);
    EXPECT_STREQ(shownPage(), "qr");
}

TEST_F(GalleryKeys, AnotherPageStartsAtItsTop)
{
    window->setContentSize(GalleryWindow::kMinimumSize);
    press(NSPageDownFunctionKey);
    press(NSDownArrowFunctionKey);
    EXPECT_EQ(pages()->offset().y, 0);
}

TEST_F(GalleryKeys, KeepsTheSelectedRowVisibleInALowWindow)
{
    window->setContentSize(GalleryWindow::kMinimumSize);
    press(NSEndFunctionKey);
    const NSRect row = view->list()->rectOfRow(view->list()->selectedRow());
    EXPECT_TRUE(
        NSContainsRect(view->listArea()->bounds(), view->listArea()->convertRectFromView(row, view->list())));
}

TEST_F(GalleryKeys, GivesTheFocusBackToTheListWhenTheFocusedViewLeaves)
{
    class Focused : public NSView {
    public:
        using NSView::NSView;
        bool acceptsFirstResponder() const override { return true; }

    protected:
        ~Focused() override = default;
    };
    const auto focused = make<Focused>(NSMakeRect(0, 0, 10, 10));
    pages()->content()->addSubview(focused);
    press(kTab); // to the button that copies the code
    press(kTab);
    EXPECT_EQ(window->firstResponder(), focused);
    press(NSPageDownFunctionKey, NSEventModifierFlagControl);
    EXPECT_EQ(window->firstResponder(), view->list());
}

TEST_F(GalleryKeys, ScrollsToTheViewThatGetsTheFocus)
{
    class Focused : public NSView {
    public:
        using NSView::NSView;
        bool acceptsFirstResponder() const override { return true; }

    protected:
        ~Focused() override = default;
    };
    window->setContentSize(GalleryWindow::kMinimumSize);
    const auto focused = make<Focused>(NSMakeRect(0, 0, 10, 10)); // at the bottom of the page
    pages()->content()->addSubview(focused);
    press(kTab); // to the button that copies the code
    press(kTab);
    EXPECT_EQ(describe(focused->visibleRect()), "0 0 10 10");
    EXPECT_GT(pages()->offset().y, 0);
}

TEST_F(GalleryKeys, ClosesOnEscapeControlQAndControlWOnly)
{
    const struct {
        char16_t key;
        NSEventModifierFlags flags;
        bool closes;
    } cases[] = {{kEscape, 0, true}, {u'q', NSEventModifierFlagControl, true},
        {u'w', NSEventModifierFlagControl, true}, {u'q', 0, false}, {u'w', NSEventModifierFlagShift, false},
        {u'x', NSEventModifierFlagControl, false}};
    for (const auto& test : cases) {
        SCOPED_TRACE(int(test.key));
        window->orderFront();
        press(test.key, test.flags);
        EXPECT_EQ(window->isVisible(), !test.closes);
    }
    window->orderOut();
}

TEST(GalleryView, ListsOnlyThePagesOfTheOptionsUnlessTheWholeGalleryIsAmongThem)
{
    GalleryOptions options;
    options.pages = {"noise", "qr"};
    const auto some = make<GalleryView>(NSMakeRect(0, 0, 640, 400), options);
    EXPECT_EQ(some->list()->count(), 2u);
    EXPECT_STREQ(some->page().name, "qr");
    options.pages.emplace_back(kWholeGallery);
    EXPECT_EQ(
        make<GalleryView>(NSMakeRect(0, 0, 640, 400), options)->list()->count(), GalleryPage::all().size());
}
