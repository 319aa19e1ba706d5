#pragma once

#include "AppKit/Host.h"
#include "ColorScheme.h"

#include <QObject>

#include <vector>

class QEventLoop;

/// The window system on Qt Widgets.
class QtHost final : public QObject, public Host {
public:
    /// Makes a QApplication if there is none. Throws NSException when QT_QPA_PLATFORM cannot be satisfied.
    QtHost();

    std::unique_ptr<HostWindow> makeWindow(
        HostWindowEvents& events, NSWindowStyleMask style, NSRect content) override;
    std::unique_ptr<HostWindow> makeEmbeddedWindow(HostWindowEvents& events, void* parent) override;
    std::unique_ptr<HostStatusItem> makeStatusItem(HostStatusItemEvents& events) override;
    std::optional<std::size_t> runAlert(const HostAlert& alert) override;
    bool isActive() const override;
    bool hasDisplay() const override;
    void run() override;
    void stop(std::size_t count) override;
    void stopAll() override;
    bool isDark() const override;
    void setAppearanceObserver(std::function<void()> observer) override;
    std::vector<HostScreen> screens() const override;
    NSRect visibleScreenFrame() const override;
    CGFloat backingScaleFactor() const override;
    double doubleClickInterval() const override;
    NSString clipboardText() const override;
    void setClipboardText(const NSString& text) override;
    NSInteger clipboardChangeCount() const override { return _clipboardChanges; }

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void appearanceMayHaveChanged();

    std::vector<QEventLoop*> _loops; ///< running, innermost last; null is the application's own
    ColorScheme _colorScheme;
    std::function<void()> _appearanceObserver;
    NSInteger _clipboardChanges = 0;
};
