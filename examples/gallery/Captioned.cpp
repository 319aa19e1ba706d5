#include "Captioned.h"

#include "Text.h"

#include <KorvidAppKit/ZRGraphics.h>

namespace {

/// The smallest view that gets a caption.
constexpr NSSize kMinimumSize{76, 64};
/// From the view to the first baseline.
constexpr CGFloat kBaseline = 14;

} // namespace

CaptionedView::CaptionedView(RetainPtr<NSView> view, NSString caption, std::size_t lines)
    : _caption(std::move(caption))
    , _maximumLines(lines)
{
    addSubview(std::move(view));
}

CaptionedView::~CaptionedView() = default;

/// 0 where there is no room.
CGFloat CaptionedView::captionHeight() const
{
    const NSSize size = bounds().size;
    if (size.width < kMinimumSize.width || size.height < kMinimumSize.height)
        return 0;
    return kBaseline + CGFloat(_maximumLines - 1) * lineHeight(kNameText) + 4;
}

std::vector<NSString> CaptionedView::captionLines() const
{
    if (captionHeight() == 0)
        return {};
    const CGFloat width = bounds().size.width;
    auto lines = wrappedText(_caption, kNameText, width);
    if (lines.size() > _maximumLines)
        lines.resize(_maximumLines);
    return lines;
}

void CaptionedView::resizeSubviewsWithOldSize(NSSize)
{
    const CGFloat height = captionHeight();
    view()->setFrame(NSMakeRect(0, height, bounds().size.width, bounds().size.height - height));
}

void CaptionedView::drawRect(NSRect)
{
    drawLabels(ZRGraphics::sharedContext(), captionLines(), {0, captionHeight() - kBaseline}, kNameText);
}
