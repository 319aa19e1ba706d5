#include <AppKit/NSCursor.h>

#include "Host.h"

#include <AppKit/NSApplication.h>

namespace {

NSCursor* theCurrentCursor = nullptr;

} // namespace

NSCursor::~NSCursor() = default;

template <HostCursor kShape> NSCursor* NSCursor::shared()
{
    static auto* const cursor = new NSCursor(kShape);
    return cursor;
}

NSCursor* NSCursor::arrowCursor()
{
    return shared<HostCursor::Arrow>();
}

NSCursor* NSCursor::IBeamCursor()
{
    return shared<HostCursor::IBeam>();
}

NSCursor* NSCursor::crosshairCursor()
{
    return shared<HostCursor::Crosshair>();
}

NSCursor* NSCursor::closedHandCursor()
{
    return shared<HostCursor::ClosedHand>();
}

NSCursor* NSCursor::openHandCursor()
{
    return shared<HostCursor::OpenHand>();
}

NSCursor* NSCursor::pointingHandCursor()
{
    return shared<HostCursor::PointingHand>();
}

NSCursor* NSCursor::resizeLeftRightCursor()
{
    return shared<HostCursor::ResizeLeftRight>();
}

NSCursor* NSCursor::resizeUpDownCursor()
{
    return shared<HostCursor::ResizeUpDown>();
}

NSCursor* NSCursor::operationNotAllowedCursor()
{
    return shared<HostCursor::OperationNotAllowed>();
}

void NSCursor::set()
{
    theCurrentCursor = this;
    if (NSApp)
        NSApp->showCursor(_shape);
}

NSCursor* NSCursor::currentCursor()
{
    return theCurrentCursor ? theCurrentCursor : arrowCursor();
}
