#include "NSWindowEvents.h"

#include <AppKit/NSView.h>
#include <AppKit/NSWindow.h>

#include <algorithm>
#include <concepts>

namespace {

/// The view after `view` in the order of the tree: its first subview, else the next one beside it or beside
/// an ancestor. After the last one, the root.
NSView* following(NSView* view)
{
    if (!view->subviews().empty())
        return view->subviews().front().get();
    for (NSView* superview = view->superview(); superview; superview = view->superview()) {
        const auto& siblings = superview->subviews();
        const auto next = std::find(siblings.begin(), siblings.end(), view) + 1;
        if (next != siblings.end())
            return next->get();
        view = superview;
    }
    return view;
}

NSView* lastDescendant(NSView* view)
{
    while (!view->subviews().empty())
        view = view->subviews().back().get();
    return view;
}

/// The inverse of `following`.
NSView* preceding(NSView* view)
{
    NSView* const superview = view->superview();
    if (!superview)
        return lastDescendant(view);
    const auto& siblings = superview->subviews();
    const auto position = std::find(siblings.begin(), siblings.end(), view);
    return position == siblings.begin() ? superview : lastDescendant(std::prev(position)->get());
}

/// The first view that can become key among those that `step` leads to from `view`; null when it leads back
/// to `view` or in a circle without one.
template <std::invocable<NSView*> Step> NSView* firstValid(NSView* view, Step step)
{
    std::vector<const NSView*> visited{view};
    for (NSView* next = step(view); std::find(visited.begin(), visited.end(), next) == visited.end();
         next = step(next)) {
        if (next->canBecomeKeyView())
            return next;
        visited.push_back(next);
    }
    return nullptr;
}

/// Whether `a` comes before `b` in the order of the tree below `root`. `b` is in that tree.
bool comesBefore(const NSView* a, const NSView* b, NSView* root)
{
    NSView* view = root;
    while (view != a && view != b)
        view = following(view);
    return view == a && a != b;
}

} // namespace

RetainPtr<NSView> NSView::nextKeyView() const
{
    return _nextKeyView.lock();
}

RetainPtr<NSView> NSView::previousKeyView() const
{
    return _previousKeyView.lock();
}

void NSView::setNextKeyView(NSView* next)
{
    if (const RetainPtr<NSView> old = _nextKeyView.lock(); old && old->_previousKeyView.lock() == this)
        old->_previousKeyView = nullptr;
    _nextKeyView = next;
    if (next)
        next->_previousKeyView = this;
}

bool NSView::canBecomeKeyView() const
{
    return _window && acceptsFirstResponder() && !isHiddenOrHasHiddenAncestor();
}

NSView* NSView::nextValidKeyView()
{
    return firstValid(this, [](NSView* view) {
        const RetainPtr<NSView> set = view->nextKeyView();
        return set && set->window() == view->window() ? set.get() : following(view);
    });
}

NSView* NSView::previousValidKeyView()
{
    return firstValid(this, [](NSView* view) {
        const RetainPtr<NSView> set = view->previousKeyView();
        return set && set->window() == view->window() ? set.get() : preceding(view);
    });
}

// The window's part.

void NSWindow::setInitialFirstResponder(NSView* view)
{
    _initialFirstResponder = view;
}

RetainPtr<NSView> NSWindow::initialFirstResponder() const
{
    return _initialFirstResponder.lock();
}

/// The view that is first responder; null while that is the window or another object.
NSView* NSWindow::keyView() const
{
    return dynamic_cast<NSView*>(firstResponder());
}

void NSWindow::selectNextKeyView(NSObject*)
{
    NSView* next = nullptr;
    if (NSView* const view = keyView()) {
        next = view->nextValidKeyView();
    } else {
        const RetainPtr<NSView> start =
            _initialFirstResponder.lock() ? _initialFirstResponder.lock() : _contentView;
        if (start)
            next = start->window() == this && start->canBecomeKeyView() ? start.get()
                                                                        : start->nextValidKeyView();
    }
    if (next)
        makeFirstResponder(next);
}

void NSWindow::selectPreviousKeyView(NSObject*)
{
    NSView* const view = keyView() ? keyView() : contentView();
    NSView* previous = view ? view->previousValidKeyView() : nullptr;
    if (!previous && view && view->canBecomeKeyView())
        previous = view;
    if (previous)
        makeFirstResponder(previous);
}

// For the window system.

bool NSWindow::Events::hasKeyView(bool next)
{
    NSView* const root = _window.contentView();
    NSView* const view = _window.keyView();
    if (!root || !view)
        return root && (root->canBecomeKeyView() || root->nextValidKeyView());
    NSView* const other = next ? view->nextValidKeyView() : view->previousValidKeyView();
    return other && (next ? comesBefore(view, other, root) : comesBefore(other, view, root));
}

bool NSWindow::Events::selectKeyView(bool first)
{
    const RetainPtr<NSWindow> window = &_window;
    window->makeFirstResponder(nullptr);
    if (first)
        window->selectNextKeyView();
    else
        window->selectPreviousKeyView();
    return window->keyView() != nullptr;
}
