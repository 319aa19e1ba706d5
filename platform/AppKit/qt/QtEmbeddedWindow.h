#pragma once

#include "QtWindow.h"

class QWidget;

/// A window within a widget that another program has made, which decides on all that it looks like from
/// outside.
class QtEmbeddedWindow final : public QtWindow {
public:
    QtEmbeddedWindow(HostWindowEvents& events, QWidget& parent);

    void setTitle(const NSString&) override { }
    void setContentRect(NSRect) override { }
    void setMinimumContentSize(NSSize) override { }
    NSRect frameForContentRect(NSRect content) const override { return content; }
    void show(bool) override { }
    void hide() override { }
    void close() override { }
    void makeKey() override;
};
