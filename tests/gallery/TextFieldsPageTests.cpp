#include "Page.h"
#include "PageNamed.h"
#include "support/Canvas.h"
#include "support/Describe.h"

#include <AppKit/NSEvent.h>
#include <AppKit/NSGraphicsContext.h>
#include <AppKit/NSTextField.h>
#include <AppKit/NSWindow.h>

namespace {

RetainPtr<NSView> makeFieldsPage(const NSString& text = nullptr)
{
    GalleryOptions options;
    options.text = text;
    return makePageNamed("fields", options);
}

/// The fields of a card.
std::vector<NSTextField*> fieldsOf(const NSView& card)
{
    std::vector<NSTextField*> fields;
    for (const auto& view : card.subviews())
        fields.push_back(dynamic_cast<NSTextField*>(view.get()));
    return fields;
}

void draw(NSView* view)
{
    const Canvas canvas(int(view->bounds().size.width), int(view->bounds().size.height));
    const auto context = NSGraphicsContext::graphicsContextWithCGContext(canvas.context(), false);
    view->displayRectIgnoringOpacity(view->bounds(), context);
}

} // namespace

TEST(TextFieldsPage, HasFieldsOnWholePointsWithoutOverlaps)
{
    const auto page = makeFieldsPage();
    for (const NSSize size : {page->frame().size, NSMakeSize(900, 700), NSMakeSize(1400, 500)}) {
        page->setFrameSize(size);
        std::size_t count = 0;
        for (const auto& card : page->subviews())
            for (const NSTextField* field : fieldsOf(*card)) {
                ++count;
                EXPECT_TRUE(NSContainsRect(card->bounds(), field->frame()));
                EXPECT_EQ(describe(NSIntegralRect(field->frame())), describe(field->frame()));
                for (const auto& other : card->subviews())
                    EXPECT_TRUE(other == field || !NSIntersectsRect(other->frame(), field->frame()));
            }
        EXPECT_EQ(count, 8U);
    }
}

TEST(TextFieldsPage, ADragChangesTheWidthsOfShortenedFields)
{
    const auto page = makeFieldsPage();
    const auto window =
        make<NSWindow>(page->frame(), NSWindowStyleMaskBorderless, NSBackingStoreBuffered, false);
    window->contentView()->addSubview(page);
    const std::vector<NSTextField*> fields = fieldsOf(*page->subviews().front());
    ASSERT_EQ(fields.size(), 3U);
    const auto drag = [&](CGFloat x) {
        const NSPoint point = fields[0]->convertPointToView({x, 5}, nullptr);
        for (const NSEventType type :
            {NSEventTypeLeftMouseDown, NSEventTypeLeftMouseDragged, NSEventTypeLeftMouseUp}) {
            const auto event =
                NSEvent::mouseEventWithType(type, point, 0, 0, window->windowNumber(), nullptr, 0, 1, 1);
            window->sendEvent(event);
        }
    };
    drag(100);
    EXPECT_EQ(fields[0]->frame().size.width, 100);
    EXPECT_EQ(fields[1]->frame().size.width, 70);
    EXPECT_EQ(fields[2]->frame().size.width, 45);
    draw(page);
    EXPECT_EQ(fields[2]->toolTip(), fields[2]->stringValue()) << "shortened";
    drag(-50);
    EXPECT_GT(fields[2]->frame().size.width, 0);
}

TEST(TextFieldsPage, ShortensTheUsersText)
{
    const auto page = makeFieldsPage("i");
    draw(page);
    for (const NSTextField* field : fieldsOf(*page->subviews().front())) {
        EXPECT_EQ(field->stringValue(), "i");
        EXPECT_TRUE(field->toolTip().isNull()) << "it fits";
    }
}
