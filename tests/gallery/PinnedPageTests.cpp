#include "Page.h"
#include "PageNamed.h"
#include "support/Describe.h"

#include <gtest/gtest.h>

namespace {

/// The area of panels in a card.
NSView* area(const NSView& page, std::size_t card)
{
    return page.subviews()[card]->subviews().front().get();
}

NSRect panel(const NSView& page, std::size_t card, std::size_t number)
{
    return area(page, card)->subviews()[number]->frame();
}

} // namespace

TEST(PinnedPage, PanelsFollowThePagesSize)
{
    const auto page = makePageNamed("pinned");
    for (const NSSize size : {page->frame().size, NSMakeSize(900, 700), NSMakeSize(1400, 500)}) {
        SCOPED_TRACE(describe(size));
        page->setFrameSize(size);
        page->layoutSubtreeIfNeeded();
        const NSSize all = area(*page, 0)->bounds().size;
        EXPECT_EQ(describe(panel(*page, 0, 0)), describe(NSRect{NSZeroPoint, all}));

        const NSRect sidebar = panel(*page, 1, 0), rest = panel(*page, 1, 1);
        EXPECT_NEAR(sidebar.size.width, std::clamp(all.width / 3, 60.0, 140.0), 0.5);
        EXPECT_EQ(NSMinX(rest), NSMaxX(sidebar) + 8);
        EXPECT_EQ(NSMaxX(rest), all.width);

        // Rounded to pixels, so that widths differ by one at most.
        EXPECT_NEAR(panel(*page, 2, 0).size.width, panel(*page, 2, 1).size.width, 1);
        EXPECT_NEAR(panel(*page, 2, 1).size.width, panel(*page, 2, 2).size.width, 1);
        EXPECT_EQ(NSMaxX(panel(*page, 2, 2)), all.width);

        const NSRect centred = panel(*page, 3, 0);
        EXPECT_NEAR(NSMidX(centred), all.width / 2, 1);
        EXPECT_NEAR(NSMidY(centred), all.height / 2, 1);
        EXPECT_LE(centred.size.height, all.height);
        EXPECT_NEAR(centred.size.height, centred.size.width * 0.75, 1);
    }
}
