#pragma once

#include <Foundation/NSObjCRuntime.h>

class QAccessibleEvent;

/// Stands in for assistive technology: while one is in scope, Qt's notifications about views go to it, and
/// nowhere else. One at a time; main thread only.
class KORVID_EXPORT AccessibilityListener {
public:
    using Handler = void (*)(QAccessibleEvent* event);

    explicit AccessibilityListener(Handler handler);
    AccessibilityListener(const AccessibilityListener&) = delete;
    AccessibilityListener& operator=(const AccessibilityListener&) = delete;
    ~AccessibilityListener();

    /// The handler of the one in scope; null without one.
    static Handler handler();
};
