#pragma once

#include <AppKit/NSView.h>
#include <Foundation/NSTimer.h>

/// A view with an endless animation in rounds, which runs while the view is in a window.
class RoundsView : public NSView {
public:
    struct Pace {
        double secondsPerRound;
        double stillProgress; ///< the progress that a still view shows, from 0 to below 1
    };

    RoundsView(NSRect frame, const Pace& pace, bool isStill);

    void viewDidMoveToWindow() override;

protected:
    ~RoundsView() override;

    /// The part of the current round that is over, from 0 to below 1.
    double progress() const { return _progress; }

private:
    const Pace _pace;
    const bool _isStill;
    double _progress;
    RetainPtr<NSTimer> _timer;
};
