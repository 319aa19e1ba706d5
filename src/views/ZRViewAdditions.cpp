#include <KorvidAppKit/ZRAppKitAdditions.h>

#include <AppKit/NSStatusItem.h>
#include <AppKit/NSWindow.h>

namespace ZRAppKitAdditions {

void setSize(NSWindow* window, NSSize size, bool display, bool animate)
{
    if (!window)
        return;
    NSRect frame = window->frame();
    frame.origin.y -= size.height - frame.size.height;
    frame.size = size;
    window->setFrame(frame, display, animate);
}

bool addConstraintsPin4SidesWithPriority(NSView* view, NSLayoutPriority priority)
{
    NSView* const superview = view ? view->superview() : nullptr;
    if (!superview)
        return false;
    view->setTranslatesAutoresizingMaskIntoConstraints(false);
    superview->setTranslatesAutoresizingMaskIntoConstraints(false);
    std::vector<RetainPtr<NSLayoutConstraint>> constraints;
    for (const NSLayoutAttribute attribute :
        {NSLayoutAttributeTop, NSLayoutAttributeRight, NSLayoutAttributeBottom, NSLayoutAttributeLeft}) {
        constraints.push_back(NSLayoutConstraint::constraintWithItem(
            view, attribute, NSLayoutRelationEqual, superview, attribute, 1, 0));
        constraints.back()->setPriority(priority);
    }
    superview->addConstraints(constraints);
    return true;
}

NSRect rectOnScreen(NSStatusItem* item)
{
    NSView* const button = item ? item->button() : nullptr;
    NSWindow* const window = button ? button->window() : nullptr;
    if (!window)
        return NSZeroRect;
    return window->convertRectToScreen(button->convertRectToBacking(button->bounds()));
}

} // namespace ZRAppKitAdditions
