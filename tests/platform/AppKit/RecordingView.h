#pragma once

#include "support/Describe.h"

#include <AppKit/NSColor.h>
#include <AppKit/NSEvent.h>
#include <AppKit/NSGraphicsContext.h>
#include <AppKit/NSView.h>

#include <functional>
#include <string>
#include <vector>

/// The calls that several views received, in order, one per line.
using Log = std::vector<std::string>;

/// A view that logs its calls, and fills itself with a colour if it has one.
class RecordingView : public NSView {
public:
    RecordingView(NSRect frame, std::string name, Log& log)
        : NSView(frame)
        , _name(std::move(name))
        , _log(log)
    {
    }

    bool flipped = false;
    bool acceptsKeys = false;
    bool resigns = true;
    bool becomes = true;
    RetainPtr<NSColor> color;
    std::function<void(NSRect)> onDraw;
    std::function<void(NSEvent*)> onMouseDown;

    bool isFlipped() const override { return flipped; }
    void drawRect(NSRect dirty) override
    {
        _log.push_back(_name + " draws " + describe(dirty));
        CGContextRef context = NSGraphicsContext::currentContext()->CGContext();
        if (color) {
            CGContextSetFillColorWithColor(context, color->CGColor());
            CGContextFillRect(context, bounds());
        }
        if (onDraw)
            onDraw(dirty);
    }
    void viewDidMoveToWindow() override { _log.push_back(_name + (window() ? " enters" : " leaves")); }
    void subviewIntrinsicContentSizeDidChange(NSView*) override { _log.push_back(_name + " lays out"); }

    void mouseDown(NSEvent* event) override
    {
        note("down", event);
        if (onMouseDown)
            onMouseDown(event);
    }
    void mouseDragged(NSEvent* event) override { note("dragged", event); }
    void mouseUp(NSEvent* event) override { note("up", event); }
    void rightMouseDown(NSEvent* event) override { note("right down", event); }
    void rightMouseDragged(NSEvent* event) override { note("right dragged", event); }
    void rightMouseUp(NSEvent* event) override { note("right up", event); }
    void otherMouseDown(NSEvent* event) override { note("other down", event); }
    void otherMouseDragged(NSEvent* event) override { note("other dragged", event); }
    void otherMouseUp(NSEvent* event) override { note("other up", event); }

    void mouseMoved(NSEvent* event) override { note("moved", event); }
    void mouseEntered(NSEvent* event) override { note("entered", event); }
    void mouseExited(NSEvent* event) override { note("exited", event); }
    /// "name scrolls dx dy unit x y"
    void scrollWheel(NSEvent* event) override
    {
        _log.push_back(_name + " scrolls " + describe(event->scrollingDeltaX()) + " "
            + describe(event->scrollingDeltaY())
            + (event->hasPreciseScrollingDeltas() ? " points " : " lines ")
            + describe(convertPointFromView(event->locationInWindow(), nullptr)));
    }

    bool acceptsFirstResponder() const override { return acceptsKeys; }
    bool becomeFirstResponder() override
    {
        _log.push_back(_name + " becomes");
        return becomes;
    }
    bool resignFirstResponder() override
    {
        _log.push_back(_name + " resigns");
        return resigns;
    }
    void keyDown(NSEvent* event) override
    {
        _log.push_back(_name + " key " + event->characters().UTF8String());
    }
    void keyUp(NSEvent* event) override
    {
        _log.push_back(_name + " key up " + event->characters().UTF8String());
    }

protected:
    ~RecordingView() override = default;

private:
    /// "name what x y ×clicks", in the view's coordinates.
    void note(const char* what, NSEvent* event)
    {
        _log.push_back(_name + " " + what + " "
            + describe(convertPointFromView(event->locationInWindow(), nullptr)) + " x"
            + std::to_string(event->clickCount()));
    }

    std::string _name;
    Log& _log;
};
