#include "Page.h"

#include "support/Describe.h"

#include <gtest/gtest.h>

#include <set>

namespace {

RetainPtr<NSView> makeCard()
{
    return make<NSView>();
}

} // namespace

TEST(GalleryPage, HasATitleOfItsOwnAndWordsInWholeSentences)
{
    std::set<std::string> titles;
    for (const GalleryPage* page : GalleryPage::all()) {
        SCOPED_TRACE(page->name);
        EXPECT_TRUE(titles.insert(page->title).second);
        const std::string words = page->words;
        ASSERT_GT(words.size(), 20u);
        EXPECT_TRUE(std::isupper(static_cast<unsigned char>(words.front())));
        EXPECT_EQ(words.back(), '.');
    }
}

TEST(GalleryPage, LaysItsCardsOutWhenItIsResized)
{
    const auto page = makeGalleryPage({makeCard(), makeCard()}, galleryGrid(2, 2), {116, 50}, {80, 40});
    EXPECT_EQ(describe(page->frame()), describe(NSMakeRect(0, 0, 116 + 48, 50 + 48)));
    EXPECT_EQ(describe(page->intrinsicContentSize()), describe(NSMakeSize(80 + 48, 40 + 48)));
    EXPECT_EQ(describe(page->subviews()[0]->frame()), describe(NSMakeRect(24, 24, 50, 50)));
    EXPECT_EQ(describe(page->subviews()[1]->frame()), describe(NSMakeRect(90, 24, 50, 50)));
    page->setFrameSize({48 + 216, 48 + 60});
    EXPECT_EQ(describe(page->subviews()[1]->frame()), describe(NSMakeRect(24 + 116, 24, 100, 60)));
}

TEST(GalleryPage, HidesACardWithoutAPlace)
{
    const auto page = makeGalleryPage({makeCard(), makeCard()}, [](NSRect inside) {
        return std::vector<NSRect>{inside, inside.size.width > 200 ? inside : NSZeroRect};
    });
    EXPECT_FALSE(page->subviews()[1]->isHidden());
    page->setFrameSize({248, 300});
    EXPECT_TRUE(page->subviews()[1]->isHidden());
    EXPECT_FALSE(page->subviews()[0]->isHidden());
    page->setFrameSize({249, 300});
    EXPECT_FALSE(page->subviews()[1]->isHidden());
}

TEST(GalleryGrid, FillsTheRectangleRowByRowFromTheTopLeftOnWholePoints)
{
    const auto frames = galleryGrid(2, 3)(NSMakeRect(10, 20, 101, 116));
    ASSERT_EQ(frames.size(), 3u);
    // Half of 101 + 16 is 58.5: the left column ends at 59 - 16.
    EXPECT_EQ(describe(frames[0]), describe(NSMakeRect(10, 86, 43, 50)));
    EXPECT_EQ(describe(frames[1]), describe(NSMakeRect(69, 86, 42, 50)));
    EXPECT_EQ(describe(frames[2]), describe(NSMakeRect(10, 20, 43, 50)));
}
