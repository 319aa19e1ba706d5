#include <AppKit/NSTrackingArea.h>

#include <AppKit/NSResponder.h>

NSTrackingArea::NSTrackingArea(
    NSRect rect, NSTrackingAreaOptions options, NSResponder* owner, RetainPtr<NSObject> userInfo)
    : _rect(CGRectStandardize(rect))
    , _options(options)
    , _owner(owner)
    , _userInfo(std::move(userInfo))
{
}

NSTrackingArea::~NSTrackingArea() = default;

RetainPtr<NSResponder> NSTrackingArea::owner() const
{
    return _owner.lock();
}
