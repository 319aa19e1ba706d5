#pragma once

#include "AppKit/Host.h"

#include <QSystemTrayIcon>
#include <QTimer>

/// A status item as an icon in the desktop's tray.
class QtStatusItem final : public HostStatusItem {
public:
    explicit QtStatusItem(HostStatusItemEvents& events);

    void setImage(CGImageRef image) override;
    void setToolTip(const NSString& text) override;
    void setVisible(bool visible) override;
    std::optional<NSRect> frame() const override;

private:
    void lookForChange();

    HostStatusItemEvents& _events;
    QSystemTrayIcon _icon;
    QTimer _timer; ///< a tray does not report that it has come, gone or moved the icon
    bool _isWanted = false;
    std::optional<NSRect> _lastFrame;
};
