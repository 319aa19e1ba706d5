#pragma once

#include "AppKit/Host.h"

class WindowWidget;

/// A window as a top-level widget.
class QtWindow : public HostWindow {
public:
    QtWindow(HostWindowEvents& events, NSWindowStyleMask style, NSRect content);
    QtWindow(const QtWindow&) = delete;
    QtWindow& operator=(const QtWindow&) = delete;
    ~QtWindow() override;

    void setTitle(const NSString& title) override;
    void setContentRect(NSRect content) override;
    void setMinimumContentSize(NSSize size) override;
    NSRect frameForContentRect(NSRect content) const override;
    CGFloat backingScaleFactor() const override;
    void show(bool makeKey) override;
    void hide() override;
    void close() override;
    bool isVisible() const override;
    bool isKey() const override;
    bool isActive() const override;
    std::optional<bool> isDark() const override;
    void makeKey() override;
    void setCursor(HostCursor cursor) override;
    void setNeedsDisplayInRect(NSRect rect) override;
    void displayIfNeeded() override;
    void accessibilityDidChange(NSView& view, HostAccessibilityChange change) override;

    WindowWidget* widget() const { return _widget; }

protected:
    /// Owns the widget.
    QtWindow(WindowWidget* widget, bool isResizable);

private:
    WindowWidget* _widget;
    const bool _isResizable;
};
