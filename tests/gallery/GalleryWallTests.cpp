// The picture of all pages.

#include "Page.h"
#include "Stage.h"
#include "support/Describe.h"

#include <gtest/gtest.h>

TEST(GalleryWall, ShowsAllPagesInTheirOrderWithoutOverlaps)
{
    const auto wall = stageGallery({});
    EXPECT_EQ(wall.name, "gallery");
    const auto& views = wall.view->subviews();
    ASSERT_EQ(views.size(), GalleryPage::all().size());
    NSRect last = NSMakeRect(0, 1e6, 0, 0);
    for (const auto& view : views) {
        const NSRect frame = view->frame();
        EXPECT_TRUE(NSContainsRect(wall.view->bounds(), frame));
        // Further right in the same row, or in a row below. Neighbours share a margin.
        if (NSMaxY(frame) == NSMaxY(last))
            EXPECT_EQ(NSMinX(frame), NSMaxX(last) - kGalleryMargin);
        else
            EXPECT_LE(NSMaxY(frame), NSMinY(last) + kGalleryMargin);
        last = frame;
    }
}

TEST(GalleryWall, HasRowsOfEqualWidth)
{
    const auto wall = stageGallery({});
    const CGFloat width = wall.view->bounds().size.width;
    EXPECT_LE(width, 2048);
    CGFloat y = -1, right = width;
    for (const auto& view : wall.view->subviews()) {
        if (NSMaxY(view->frame()) != y) {
            EXPECT_EQ(right, width);
            EXPECT_EQ(NSMinX(view->frame()), 0);
        }
        y = NSMaxY(view->frame());
        right = NSMaxX(view->frame());
        EXPECT_EQ(describe(NSIntegralRect(view->frame())), describe(view->frame()));
    }
    EXPECT_EQ(right, width);
}
