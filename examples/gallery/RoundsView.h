#pragma once

#include <AppKit/NSView.h>
#include <Foundation/NSTimer.h>

/// A view that shows something going round and round, as long as it is in a window.
class RoundsView : public NSView {
public:
    struct Pace {
        double secondsPerRound;
        double stillProgress; ///< how far into the round it is when it stands still, 0 to below 1
    };

    RoundsView(NSRect frame, const Pace& pace, bool isStill);

    void viewDidMoveToWindow() override;

protected:
    ~RoundsView() override;

    /// How far into the round it is, 0 to below 1.
    double progress() const { return _progress; }

private:
    const Pace _pace;
    const bool _isStill;
    double _progress;
    RetainPtr<NSTimer> _timer;
};
