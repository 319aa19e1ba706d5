#include "RoundsView.h"

#include <Foundation/CFDate.h>

#include <cmath>

RoundsView::RoundsView(NSRect frame, const Pace& pace, bool isStill)
    : NSView(frame)
    , _pace(pace)
    , _isStill(isStill)
    , _progress(pace.stillProgress)
{
}

RoundsView::~RoundsView()
{
    if (_timer)
        _timer->invalidate();
}

void RoundsView::viewDidMoveToWindow()
{
    if (_timer)
        _timer->invalidate();
    _timer = nullptr;
    if (!window() || _isStill)
        return;
    const CFAbsoluteTime start = CFAbsoluteTimeGetCurrent();
    _timer = NSTimer::scheduledTimerWithTimeInterval(1 / 60.0, true, [this, start](NSTimer*) {
        _progress = std::fmod((CFAbsoluteTimeGetCurrent() - start) / _pace.secondsPerRound, 1);
        setNeedsDisplay(true);
    });
}
