#include "EmbeddedWindow.h"

#include "Host.h"
#include "NSWindowEvents.h"

#include <algorithm>
#include <utility>

/// The content view: the view that the window shows fills it.
class EmbeddedWindow::Root final : public NSView {
public:
    explicit Root(std::function<void()> preferredSizeDidChange)
        : _preferredSizeDidChange(std::move(preferredSizeDidChange))
    {
    }

    void add(const RetainPtr<NSView>& view)
    {
        _frameSize = view->frame().size;
        addSubview(view);
        fill();
    }
    /// The last frame that the program gave the view.
    NSSize frameSize() const { return _frameSize; }
    void forgetObserver() { _preferredSizeDidChange = nullptr; }

    void resizeSubviewsWithOldSize(NSSize) override { fill(); }
    void subviewIntrinsicContentSizeDidChange(NSView*) override { notify(); }
    void subviewFrameDidChange(NSView* view) override
    {
        NSView::subviewFrameDidChange(view);
        if (_isFilling || NSEqualRects(view->frame(), bounds()))
            return;
        _frameSize = view->frame().size;
        fill();
        notify();
    }

private:
    void fill()
    {
        const bool wasFilling = std::exchange(_isFilling, true);
        for (const auto& view : std::vector(subviews()))
            view->setFrame(bounds());
        _isFilling = wasFilling;
    }
    void notify() const
    {
        if (_preferredSizeDidChange)
            _preferredSizeDidChange();
    }

    std::function<void()> _preferredSizeDidChange;
    NSSize _frameSize = NSZeroSize;
    bool _isFilling = false;
};

/// The end of the responder chain: what arrives here, no view has handled.
class EmbeddedWindow::Rest final : public NSResponder {
public:
    explicit Rest(Events& events)
        : _events(&events)
    {
    }

    void forgetWindow() { _events = nullptr; }
    void scrollWheel(NSEvent* event) override { leave(event); }
    void keyDown(NSEvent* event) override { leave(event); }

private:
    void leave(NSEvent* event)
    {
        if (_events)
            _events->wasNotHandled(event);
    }

    Events* _events;
};

EmbeddedWindow::EmbeddedWindow(
    void* parent, RetainPtr<NSView> view, std::function<void()> preferredSizeDidChange)
    : NSWindow(NSMakeRect(0, 0, 1, 1), NSWindowStyleMaskBorderless, NSBackingStoreBuffered, false)
    , _root(make<Root>(std::move(preferredSizeDidChange)))
    , _rest(make<Rest>(*_events))
{
    _isEmbedded = true;
    setContentView(_root);
    if (view)
        _root->add(view);
    _host = Host::shared().makeEmbeddedWindow(*_events, parent);
}

EmbeddedWindow::~EmbeddedWindow()
{
    _rest->forgetWindow();
    _root->forgetObserver();
}

void EmbeddedWindow::leaveParent()
{
    const RetainPtr<NSView> view = this->view();
    _root->forgetObserver();
    leaveScreen();
    if (view)
        view->removeFromSuperview();
    _host.reset();
}

NSResponder* EmbeddedWindow::nextResponder() const
{
    return _rest.get();
}

NSView* EmbeddedWindow::view() const
{
    const auto& views = _root->subviews();
    return views.empty() ? nullptr : views.front().get();
}

EmbeddedWindow::Size EmbeddedWindow::preferredSize() const
{
    const NSView* const view = this->view();
    const NSSize intrinsic = view ? view->intrinsicContentSize() : NSZeroSize;
    const auto side = [&](CGFloat natural, CGFloat frame, NSAutoresizingMaskOptions flexible) {
        const bool hasNatural = natural > NSViewNoIntrinsicMetric;
        const bool isFlexible =
            view && ((view->autoresizingMask() & flexible) || (!hasNatural && !(frame > 0)));
        const CGFloat length = std::max(hasNatural ? natural : frame, 0.0);
        return Side{length, hasNatural || !isFlexible ? length : 0, isFlexible};
    };
    const NSSize frame = view ? _root->frameSize() : NSZeroSize;
    return {side(intrinsic.width, frame.width, NSViewWidthSizable),
        side(intrinsic.height, frame.height, NSViewHeightSizable)};
}
