#include "Host.h"

#include <AppKit/NSApplication.h>
#include <AppKit/NSScreen.h>

#include <utility>

NSScreen::NSScreen(NSString name, NSRect frame, NSRect visibleFrame, CGFloat backingScaleFactor)
    : _name(std::move(name))
    , _frame(frame)
    , _visibleFrame(visibleFrame)
    , _backingScaleFactor(backingScaleFactor)
{
}

NSScreen::~NSScreen() = default;

std::vector<RetainPtr<NSScreen>> NSScreen::screens()
{
    NSApplication::sharedApplication();
    std::vector<RetainPtr<NSScreen>> screens;
    for (HostScreen& screen : Host::shared().screens())
        screens.push_back(adopt(new NSScreen(
            std::move(screen.name), screen.frame, screen.visibleFrame, screen.backingScaleFactor)));
    return screens;
}

RetainPtr<NSScreen> NSScreen::mainScreen()
{
    const NSWindow* const keyWindow = NSApplication::sharedApplication()->keyWindow();
    if (auto screen = keyWindow ? keyWindow->screen() : nullptr)
        return screen;
    const auto all = screens();
    return all.empty() ? nullptr : all.front();
}

NSRect NSScreen::convertRectToBacking(NSRect rect) const
{
    return CGRectApplyAffineTransform(
        rect, CGAffineTransformMakeScale(_backingScaleFactor, _backingScaleFactor));
}

NSRect NSScreen::convertRectFromBacking(NSRect rect) const
{
    return CGRectApplyAffineTransform(
        rect, CGAffineTransformMakeScale(1 / _backingScaleFactor, 1 / _backingScaleFactor));
}

bool NSScreen::isEqual(const NSObject* other) const
{
    const auto* screen = dynamic_cast<const NSScreen*>(other);
    return screen && screen->_name == _name && NSEqualRects(screen->_frame, _frame);
}
