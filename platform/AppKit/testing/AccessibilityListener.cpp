#include "AccessibilityListener.h"

namespace {

AccessibilityListener::Handler currentHandler = nullptr;

} // namespace

AccessibilityListener::AccessibilityListener(Handler handler)
{
    currentHandler = handler;
}

AccessibilityListener::~AccessibilityListener()
{
    currentHandler = nullptr;
}

AccessibilityListener::Handler AccessibilityListener::handler()
{
    return currentHandler;
}
