#pragma once

#include <AppKit/NSGeometry.h>

/// A tray that shows all status items in one place of the screen, while it is in scope. One at a time.
class KORVID_EXPORT StatusTray {
public:
    explicit StatusTray(NSRect frame);
    StatusTray(const StatusTray&) = delete;
    StatusTray& operator=(const StatusTray&) = delete;
    ~StatusTray();
};
