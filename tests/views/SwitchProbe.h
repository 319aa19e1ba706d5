#pragma once

#include <KorvidAppKit/ZRSwitchControl.h>

#include <Foundation/NSTimer.h>

#include <functional>
#include <gtest/gtest.h>
#include <string>

/// A switch that shows what it does at present.
class SwitchProbe : public ZRSwitchControl {
public:
    using ZRSwitchControl::ZRSwitchControl;

    bool isAnimating() const { return _animTimer != nullptr; }
    NSTimer* timer() const { return _animTimer.get(); }

protected:
    ~SwitchProbe() override = default;
};

/// The target of a switch: logs "on " or "off " for each action, by the state at that time.
class SwitchController : public NSObject {
public:
    void toggled(ZRSwitchControl* sender)
    {
        log += sender->isOn() ? "on " : "off ";
        if (onToggle)
            onToggle();
    }

    std::string log;
    std::function<void()> onToggle;

protected:
    ~SwitchController() override = default;
};

/// A switch of 100 x 40 points, whose knob moves by 40, that is not marked for redisplay.
inline RetainPtr<SwitchProbe> makeSwitch()
{
    auto control = make<SwitchProbe>(NSMakeRect(0, 0, 100, 40));
    control->setNeedsDisplay(false);
    return control;
}
